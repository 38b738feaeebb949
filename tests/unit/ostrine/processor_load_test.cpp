#include "ostrine/common/processor_load.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <limits>
#include <optional>
#include <thread>
#include <vector>

namespace ostrine {
namespace {

constexpr std::uint64_t kGreatest = std::numeric_limits<std::uint64_t>::max();

TEST(ProcessorLoad, IsTheBusyShareOfTheTimeBetweenTwoReadings) {
  EXPECT_EQ(LoadPercent({.busy = 100, .total = 1000}, {.busy = 150, .total = 1200}), 25u);
  EXPECT_EQ(LoadPercent({.busy = 100, .total = 1000}, {.busy = 100, .total = 1200}), 0u);
  EXPECT_EQ(LoadPercent({.busy = 100, .total = 1000}, {.busy = 300, .total = 1200}), 100u);
}

TEST(ProcessorLoad, IsRounded) {
  EXPECT_EQ(LoadPercent({}, {.busy = 4, .total = 1000}), 0u);
  EXPECT_EQ(LoadPercent({}, {.busy = 5, .total = 1000}), 1u);
  EXPECT_EQ(LoadPercent({}, {.busy = 994, .total = 1000}), 99u);
  EXPECT_EQ(LoadPercent({}, {.busy = 995, .total = 1000}), 100u);
}

TEST(ProcessorLoad, HasNoValueWithoutTime) {
  EXPECT_EQ(LoadPercent({}, {}), std::nullopt);
  EXPECT_EQ(LoadPercent({.busy = 1, .total = 1000}, {.busy = 2, .total = 1000}), std::nullopt);
  EXPECT_EQ(LoadPercent({.busy = 1, .total = 1000}, {.busy = 2, .total = 999}), std::nullopt);
}

TEST(ProcessorLoad, StaysWithinItsRangeWhateverTheSystemCounts) {
  EXPECT_EQ(LoadPercent({.busy = 500, .total = 1000}, {.busy = 400, .total = 1100}), 0u);
  EXPECT_EQ(LoadPercent({.busy = 500, .total = 1000}, {.busy = 900, .total = 1100}), 100u);
  EXPECT_EQ(LoadPercent({}, {.busy = kGreatest, .total = kGreatest}), 100u);
  EXPECT_EQ(LoadPercent({}, {.busy = kGreatest, .total = 1}), 100u);
}

TEST(ProcessorLoad, CountsFromTheSystemsStartAtTheFirstQuestion) {
  LoadHistory history;
  EXPECT_EQ(history.Ask({.busy = 300, .total = 1000}), 30u);
}

TEST(ProcessorLoad, CountsFromTheLastQuestionAfterwards) {
  LoadHistory history;
  history.Ask({.busy = 300, .total = 1000});
  EXPECT_EQ(history.Ask({.busy = 390, .total = 1100}), 90u);
  EXPECT_EQ(history.Ask({.busy = 390, .total = 1200}), 0u);
  EXPECT_EQ(history.Ask({.busy = 440, .total = 1300}), 50u);
}

TEST(ProcessorLoad, RepeatsItsAnswerWhileTheSystemsClockStandsStill) {
  LoadHistory history;
  EXPECT_EQ(history.Ask({.busy = 300, .total = 1000}), 30u);
  EXPECT_EQ(history.Ask({.busy = 300, .total = 1000}), 30u);
  EXPECT_EQ(history.Ask({.busy = 390, .total = 1100}), 90u);
  EXPECT_EQ(history.Ask({.busy = 391, .total = 1100}), 90u);
  EXPECT_EQ(history.Ask({.busy = 380, .total = 1090}), 90u);
}

TEST(ProcessorLoad, GoesOnAfterTheSystemsClockWentBack) {
  LoadHistory history;
  EXPECT_EQ(history.Ask({.busy = 300, .total = 1000}), 30u);
  EXPECT_EQ(history.Ask({.busy = 10, .total = 100}), 30u);
  EXPECT_EQ(history.Ask({.busy = 85, .total = 200}), 75u);
}

TEST(ProcessorLoad, IsNotKnownOnASystemThatCountsNoTime) {
  LoadHistory history;
  EXPECT_EQ(history.Ask({}), std::nullopt);
  EXPECT_EQ(history.Ask({.busy = 1, .total = 2}), 50u);
}

TEST(ProcessorLoad, StaysWithinItsRangeForManyThreadsAtOnce) {
  LoadHistory history;
  std::atomic<std::uint64_t> clock = 0;
  std::atomic<int> answers = 0;
  std::atomic<int> bad = 0;
  const auto ask = [&] {
    for (int i = 0; i < 20000; ++i) {
      const std::uint64_t now = ++clock;
      const auto percent = history.Ask({.busy = now / 2, .total = now});
      if (percent) ++answers;
      if (percent && *percent > 100) ++bad;
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(ask);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(answers, 4 * 20000);
  EXPECT_EQ(bad, 0);
}

TEST(ProcessorLoad, IsOneHistoryForTheProcess) {
  EXPECT_EQ(&LoadHistoryOfProcess(), &LoadHistoryOfProcess());
}

}  // namespace
}  // namespace ostrine
