/// The internet settings of the system whose file tree begins at a root folder; the root is "/" but in tests.
#pragma once

#include <filesystem>

#include "platform/linux/netlink.h"
#include "platform/linux/proxy_settings.h"
#include "platform/os/internet_settings.h"

namespace velmora::os {

/// InternetQueryOptionW with `settings`. The answer to option 38 is the record of 24 bytes with the texts
/// behind it, in UTF-16; other options fail with 50.
bool AnswerProxyQuery(const ProxySettings& settings, std::uint32_t option, void* buffer, std::uint32_t& size);

/// InternetGetConnectedState by what `netlink` and `settings` tell. Mobile broadband counts as a local
/// network, as it does under Windows.
int AnswerConnectedState(const std::filesystem::path& root, Netlink& netlink, const ProxySettings& settings,
                         std::uint32_t& flags);

}  // namespace velmora::os
