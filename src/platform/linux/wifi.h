/// Native Wi-Fi of the system whose file tree begins at a root folder; the root is "/" but in tests.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/linux/netlink.h"
#include "platform/os/wifi.h"

namespace velmora::os {

/// WlanOpenHandle over the kernel's nl80211 family, which `generic` leads to. Nobody needs a privilege to
/// look; switching the radio takes the right to write to /dev/rfkill, which whoever sits at the machine has.
///
/// A kernel without that family has no Wi-Fi hardware: the error is 1062, as it is without the service.
std::uint32_t OpenWifi(const std::filesystem::path& root, std::unique_ptr<Netlink> generic, Handle& client);

}  // namespace velmora::os
