#include "platform/os/internet_settings.h"

#include <windows.h>

#include <wininet.h>

namespace velmora::os {

bool InternetQueryOptionW(std::uint32_t option, void* buffer, std::uint32_t& size) {
  DWORD bytes = size;
  const BOOL done = ::InternetQueryOptionW(nullptr, option, buffer, &bytes);
  size = bytes;
  return done != FALSE;
}

int InternetGetConnectedState(std::uint32_t& flags, std::uint32_t reserved) {
  DWORD state = flags;
  const BOOL connected = ::InternetGetConnectedState(&state, reserved);
  flags = state;
  return connected;
}

}  // namespace velmora::os
