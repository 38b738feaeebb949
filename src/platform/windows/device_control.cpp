#include "platform/os/device_control.h"

#include <windows.h>

namespace velmora::os {

Handle CreateFileW(const wchar_t* name, std::uint32_t access, std::uint32_t share_mode,
                   std::uint32_t disposition, std::uint32_t flags) {
  return ::CreateFileW(name, access, share_mode, nullptr, disposition, flags, nullptr);
}

bool DeviceIoControl(Handle device, std::uint32_t code, const void* input, std::uint32_t input_size,
                     void* output, std::uint32_t output_size, std::uint32_t* returned_size) {
  DWORD returned = 0;  // the system wants a place for it, wanted or not
  const BOOL done = ::DeviceIoControl(device, code, const_cast<void*>(input), input_size, output, output_size,
                                      &returned, nullptr);
  if (returned_size != nullptr) *returned_size = returned;
  return done != FALSE;
}

}  // namespace velmora::os
