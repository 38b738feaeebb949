#include "platform/os/registry.h"

#include <windows.h>

namespace velmora::os {

static_assert(kKeyRead == KEY_READ);

std::uint32_t RegOpenKeyExW(RegistryKey root, const wchar_t* path, std::uint32_t options,
                            std::uint32_t access, RegistryKey& key) {
  HKEY opened = nullptr;
  const LSTATUS result = ::RegOpenKeyExW(static_cast<HKEY>(root), path, options, access, &opened);
  if (result == ERROR_SUCCESS) key = opened;
  return static_cast<std::uint32_t>(result);
}

std::uint32_t RegQueryValueExW(RegistryKey key, const wchar_t* name, std::uint32_t* type, void* data,
                               std::uint32_t& size) {
  DWORD stored_type = REG_NONE;
  DWORD stored_size = size;
  const LSTATUS result = ::RegQueryValueExW(static_cast<HKEY>(key), name, nullptr, &stored_type,
                                            static_cast<BYTE*>(data), &stored_size);
  if (result == ERROR_SUCCESS || result == ERROR_MORE_DATA) {
    size = stored_size;
    if (type != nullptr) *type = stored_type;
  }
  return static_cast<std::uint32_t>(result);
}

std::uint32_t RegCloseKey(RegistryKey key) {
  return static_cast<std::uint32_t>(::RegCloseKey(static_cast<HKEY>(key)));
}

}  // namespace velmora::os
