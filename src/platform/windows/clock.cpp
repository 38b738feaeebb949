#include "platform/os/clock.h"

#include <windows.h>

namespace velmora::os {

std::int64_t SystemTime() {
  constexpr std::int64_t kFrom1601To1970 = 116'444'736'000'000'000;
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  return static_cast<std::int64_t>((std::uint64_t{now.dwHighDateTime} << 32) | now.dwLowDateTime) -
         kFrom1601To1970;
}

void Sleep(std::uint32_t milliseconds) { ::Sleep(milliseconds); }

}  // namespace velmora::os
