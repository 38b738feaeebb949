/// The registry keys that callers ask for, of the system whose file tree begins at a root folder; the root is
/// "/" but in tests.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/os/registry.h"

namespace velmora::os {

/// RegOpenKeyExW on `root`. There is one class key, that of network cards, with a key "0000", "0001"... for
/// each card in the order of the kernel's numbers. Its values are:
///
///     ComponentId          text      the card's numbers, as every of its hardware IDs begins
///     DeviceInstanceID     text      by which the hardware-abstraction library knows the card
///     *PhysicalMediaType   number    9 wireless, 14 wired, 8 mobile broadband
///
/// A value that is not known of a card is not there.
std::uint32_t OpenRegistryKey(const std::filesystem::path& root, RegistryKey parent, const wchar_t* path,
                              RegistryKey& key);

/// The number of the card whose key `path` is; nothing for any other path. Pure.
std::optional<unsigned int> CardNumberOf(std::wstring_view path) noexcept;

}  // namespace velmora::os
