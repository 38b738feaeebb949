#include "platform/os/last_error.h"

#include <windows.h>

namespace velmora::os {

std::uint32_t LastError() noexcept { return ::GetLastError(); }
void SetLastError(std::uint32_t error) noexcept { ::SetLastError(error); }

}  // namespace velmora::os
