/// What Velmora requires of the operating system to send a control request to a device.
#pragma once

#include <cstdint>

#include "platform/os/handle.h"

namespace velmora::os {

/// Opens the device or file `name`. InvalidHandle with the last error on failure: 2 there is none, 5 not
/// permitted. The handle is closed with CloseHandle.
Handle CreateFileW(const wchar_t* name, std::uint32_t access, std::uint32_t share_mode,
                   std::uint32_t disposition, std::uint32_t flags);

/// Sends request `code` with `input_size` bytes of input and room for `output_size` bytes of output. False
/// with the last error on failure; `returned_size` may be null when nothing is wanted back.
bool DeviceIoControl(Handle device, std::uint32_t code, const void* input, std::uint32_t input_size,
                     void* output, std::uint32_t output_size, std::uint32_t* returned_size);

}  // namespace velmora::os
