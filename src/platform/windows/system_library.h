/// A library of the system that need not be there: editions without Wi-Fi or Bluetooth lack theirs. It is
/// looked for in the system's folder only, never beside the program.
#pragma once

#include <windows.h>

#include <utility>

namespace velmora::os {

class SystemLibrary {
 public:
  /// Loads `name`; afterwards the library may be absent, and the last error tells why.
  explicit SystemLibrary(const wchar_t* name) noexcept
      : module_(LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {}
  SystemLibrary(SystemLibrary&& other) noexcept : module_(std::exchange(other.module_, nullptr)) {}
  SystemLibrary& operator=(SystemLibrary&&) = delete;
  ~SystemLibrary() {
    if (module_ == nullptr) return;
    const DWORD error = GetLastError();
    FreeLibrary(module_);
    SetLastError(error);
  }

  /// The function `name`; null, with the last error, when the library or the function is absent.
  template <class Function>
  Function* Find(const char* name) const noexcept {
    if (module_ == nullptr) return nullptr;
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }

 private:
  HMODULE module_;
};

}  // namespace velmora::os
