#include "platform/os/clock.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>

#include <chrono>

#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

TEST(ClockOnLinux, CountsTenMillionUnitsASecondFrom1970) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const std::int64_t expected = std::chrono::duration_cast<std::chrono::seconds>(now).count();
  EXPECT_NEAR(static_cast<double>(SystemTime() / 10'000'000), static_cast<double>(expected), 2);
}

TEST(ClockOnLinux, SleepsAtLeastAsLongAsAsked) {
  const auto begin = steady_clock::now();
  Sleep(30);
  EXPECT_GE(steady_clock::now() - begin, milliseconds(30));
  EXPECT_LT(steady_clock::now() - begin, milliseconds(3000));
}

TEST(ClockOnLinux, SleepsOnThroughSignalsAndKeepsTheLastError) {
  struct sigaction count_nothing{};
  struct sigaction before{};
  count_nothing.sa_handler = [](int) {};
  sigaction(SIGALRM, &count_nothing, &before);
  const itimerval every_millisecond{.it_interval = {0, 1000}, .it_value = {0, 1000}};
  setitimer(ITIMER_REAL, &every_millisecond, nullptr);
  SetLastError(1234);
  const auto begin = steady_clock::now();
  Sleep(50);
  const auto slept = steady_clock::now() - begin;
  const std::uint32_t last_error = LastError();
  const itimerval never{};
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &before, nullptr);
  EXPECT_GE(slept, milliseconds(50));
  EXPECT_LT(slept, milliseconds(3000));
  EXPECT_EQ(last_error, 1234u);
}

TEST(ClockOnLinux, ReturnsAtOnceFromNoSleep) {
  const auto begin = steady_clock::now();
  Sleep(0);
  EXPECT_LT(steady_clock::now() - begin, milliseconds(1000));
}

}  // namespace
}  // namespace velmora::os
