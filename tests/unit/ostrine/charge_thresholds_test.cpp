#include "ostrine/common/charge_thresholds.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace ostrine {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(ChargeThresholds, ArePossibleWithTheStartBelowTheStopAndTheStopUpToAHundred) {
  for (unsigned int start = 0; start < 256; ++start) {
    for (unsigned int stop = 0; stop < 256; ++stop) {
      const ChargeThresholds thresholds{static_cast<std::uint8_t>(start), static_cast<std::uint8_t>(stop)};
      const bool is_possible = start <= 99 && stop >= 1 && stop <= 100 && start < stop;
      ASSERT_EQ(IsPossible(thresholds), is_possible) << start << " " << stop;
      const auto parsed = ParseThresholdRecord(ToRecord(thresholds));
      ASSERT_EQ(parsed.has_value(), is_possible);
      ASSERT_EQ(parsed.value_or(thresholds), thresholds);
    }
  }
}

TEST(ChargeThresholds, HaveTheStartInTheFirstByteOfTheRecord) {
  EXPECT_EQ(ToRecord({75, 80}), (std::array<std::uint8_t, 2>{75, 80}));
  EXPECT_EQ(ParseThresholdRecord(Bytes{75, 80}), (ChargeThresholds{75, 80}));
}

TEST(ChargeThresholds, AreNoRecordOfAnotherSize) {
  for (const Bytes& bytes : {Bytes{}, Bytes{75}, Bytes{75, 80, 0}, Bytes{75, 80, 0, 0}}) {
    EXPECT_EQ(ParseThresholdRecord(bytes), std::nullopt);
  }
}

TEST(ChargeThresholds, AreWrittenInAnOrderInWhichTheStartNeverStandsAboveTheStop) {
  for (std::uint8_t old_start = 0; old_start < 100; old_start += 9) {
    for (std::uint8_t old_stop = old_start + 1; old_stop <= 100; old_stop += 7) {
      for (std::uint8_t start = 0; start < 100; start += 9) {
        for (std::uint8_t stop = start + 1; stop <= 100; stop += 7) {
          const bool start_first = IsStartWrittenFirst({old_start, old_stop}, {start, stop});
          const ChargeThresholds between =
              start_first ? ChargeThresholds{start, old_stop} : ChargeThresholds{old_start, stop};
          ASSERT_TRUE(IsPossible(between))
              << +old_start << " " << +old_stop << " to " << +start << " " << +stop;
        }
      }
    }
  }
}

TEST(ChargeThresholds, HaveWordsOfTheFirmwaresMethod) {
  EXPECT_EQ(kReadThresholdsWord, 0x0A02u);
  EXPECT_EQ(SetThresholdsWord({75, 80}), 0x504B0A03u);
  EXPECT_EQ(SetThresholdsWord({0, 100}), 0x64000A03u);
}

TEST(ChargeThresholds, AreReadFromAFirmwaresReply) {
  Bytes reply(256, 0xEE);
  reply[0] = 0;
  reply[1] = 75;
  reply[2] = 80;
  EXPECT_EQ(ParseThresholdReply(reply), (ChargeThresholds{75, 80}));
  reply[0] = 1;
  EXPECT_EQ(ParseThresholdReply(reply), std::nullopt) << "a status that is not valid";
  EXPECT_EQ(ParseThresholdReply(Bytes{0, 80, 75}), std::nullopt);
  EXPECT_EQ(ParseThresholdReply(Bytes{0, 0, 0}), std::nullopt) << "what a firmware without thresholds says";
  EXPECT_EQ(ParseThresholdReply(Bytes{0, 75}), std::nullopt) << "cut short";
  EXPECT_EQ(ParseThresholdReply(Bytes{}), std::nullopt);
}

}  // namespace
}  // namespace ostrine
