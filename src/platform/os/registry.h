/// What Velmora requires of the registry. Every call returns 0 on success, else its error.
#pragma once

#include <cstdint>

namespace velmora::os {

using RegistryKey = void*;

/// The predefined root HKEY_LOCAL_MACHINE.
inline RegistryKey LocalMachine() {
  return reinterpret_cast<RegistryKey>(static_cast<long long>(0xFFFFFFFF80000002ULL));
}
inline constexpr std::uint32_t kKeyRead = 0x20019;  ///< KEY_READ

/// Opens the key `path` below `root` with the rights `access`; 2 when there is none, 5 when not permitted.
/// `key` is written on success only.
std::uint32_t RegOpenKeyExW(RegistryKey root, const wchar_t* path, std::uint32_t options,
                            std::uint32_t access, RegistryKey& key);

/// Reads the value `name` as it is stored: text is UTF-16 and need not end in a zero, numbers are
/// little-endian. `size` is the room at `data` in bytes and becomes the size of the value; 234, and the data
/// left alone, when that is more than the room; 2 when there is no such value. `type` may be null.
std::uint32_t RegQueryValueExW(RegistryKey key, const wchar_t* name, std::uint32_t* type, void* data,
                               std::uint32_t& size);

std::uint32_t RegCloseKey(RegistryKey key);

}  // namespace velmora::os
