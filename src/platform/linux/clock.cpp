#include "platform/os/clock.h"

#include <cerrno>
#include <ctime>

namespace velmora::os {
namespace {

constexpr std::int64_t kUnitsPerSecond = 10'000'000;
constexpr long kNanosecondsPerUnit = 100;
constexpr long kNanosecondsPerSecond = 1'000'000'000;

}  // namespace

std::int64_t SystemTime() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<std::int64_t>(now.tv_sec) * kUnitsPerSecond + now.tv_nsec / kNanosecondsPerUnit;
}

void Sleep(std::uint32_t milliseconds) {
  timespec end{};
  clock_gettime(CLOCK_MONOTONIC, &end);
  end.tv_sec += milliseconds / 1000;
  end.tv_nsec += static_cast<long>(milliseconds % 1000) * 1'000'000;
  if (end.tv_nsec >= kNanosecondsPerSecond) {
    end.tv_nsec -= kNanosecondsPerSecond;
    ++end.tv_sec;
  }
  // The end is a point in time, so that a signal on the way neither shortens nor lengthens the pause.
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
  }
}

}  // namespace velmora::os
