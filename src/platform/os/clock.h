/// What Velmora requires of the operating system about time.
#pragma once

#include <cstdint>

namespace velmora::os {

/// The system clock in units of 100 nanoseconds since 1970-01-01 00:00 UTC.
std::int64_t SystemTime();

/// Blocks the calling thread for `milliseconds`.
void Sleep(std::uint32_t milliseconds);

}  // namespace velmora::os
