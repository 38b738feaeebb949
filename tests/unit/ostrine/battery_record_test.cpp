#include "ostrine/common/battery_record.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace ostrine {
namespace {

using Record = std::vector<std::uint8_t>;

constexpr std::uint32_t kSystemBattery = 0x80000000;
constexpr std::uint32_t kRelative = 0x40000000;
constexpr std::uint32_t kShortTerm = 0x20000000;
constexpr std::uint32_t kUnknown = 0xFFFFFFFF;

void Append(Record& bytes, std::uint32_t number) {
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}

/// Capabilities, technology and reserved bytes, chemistry, design, full, two alerts, bias, cycles.
Record Information(std::uint32_t capabilities, std::uint32_t design, std::uint32_t full) {
  Record bytes;
  for (const std::uint32_t number : {capabilities, 1u, 0x6E6F694Cu, design, full, 2500u, 500u, 0u, 137u}) {
    Append(bytes, number);
  }
  return bytes;
}

Record Status(std::uint32_t state, std::uint32_t remaining, std::uint32_t voltage, std::uint32_t rate) {
  Record bytes;
  for (const std::uint32_t number : {state, remaining, voltage, rate}) Append(bytes, number);
  return bytes;
}

const Record kInformation = Information(kSystemBattery, 50000, 43830);
constexpr auto kMinus8892 = static_cast<std::uint32_t>(-8892);

std::optional<std::int32_t> RateOf(std::uint32_t state, std::uint32_t rate) {
  return BatteryOfRecords(kInformation, Status(state, 1, 1, rate))->rate;
}

TEST(BatteryRecord, GivesTheNumbersOfTheBattery) {
  const auto battery = BatteryOfRecords(kInformation, Status(2, 30120, 11856, kMinus8892));
  ASSERT_TRUE(battery);
  EXPECT_EQ(*battery,
            (Battery{.remaining = 30120, .full = 43830, .design = 50000, .voltage = 11856, .rate = -8892}));
}

TEST(BatteryRecord, IsOfAtLeastThirtySixBytes) {
  Record bytes = kInformation;
  EXPECT_EQ(bytes.size(), kBatteryInformationSize);
  bytes.push_back(0xEE);
  EXPECT_TRUE(BatteryOfRecords(bytes, {}));
  bytes.resize(kBatteryInformationSize - 1);
  EXPECT_FALSE(BatteryOfRecords(bytes, {}));
  EXPECT_FALSE(BatteryOfRecords({}, {}));
}

TEST(BatteryRecord, LeavesUnknownWhatAStatusThatIsCutShortWouldTell) {
  auto status = Status(2, 30120, 11856, kMinus8892);
  status.pop_back();
  const auto battery = BatteryOfRecords(kInformation, status);
  ASSERT_TRUE(battery);
  EXPECT_EQ(*battery, (Battery{.full = 43830, .design = 50000}));
}

TEST(BatteryRecord, IsNoneOfAnotherDevicesBattery) {
  EXPECT_FALSE(BatteryOfRecords(Information(0, 50000, 43830), Status(2, 1, 1, 1)));
}

TEST(BatteryRecord, IsNoneOfASupplyThatBridgesPowerFailures) {
  EXPECT_FALSE(BatteryOfRecords(Information(kSystemBattery | kShortTerm, 50000, 43830), {}));
}

TEST(BatteryRecord, GivesNoEnergiesOfABatteryThatCountsInPercent) {
  const auto battery =
      BatteryOfRecords(Information(kSystemBattery | kRelative, 100, 100), Status(2, 87, 11856, 5));
  ASSERT_TRUE(battery);
  EXPECT_EQ(*battery, (Battery{.voltage = 11856}));
}

TEST(BatteryRecord, TakesTheDirectionOfTheRateFromTheState) {
  EXPECT_EQ(RateOf(2, kMinus8892), -8892);
  EXPECT_EQ(RateOf(2, 8892), -8892);
  EXPECT_EQ(RateOf(1 | 4, 8892), 8892);
  EXPECT_EQ(RateOf(1 | 4, kMinus8892), 8892);
  EXPECT_EQ(RateOf(1, 8892), 0) << "on mains, and the battery says that it does nothing";
  EXPECT_EQ(RateOf(0, kMinus8892), -8892);
  EXPECT_EQ(RateOf(2 | 4, 8892), 8892) << "a state that contradicts itself";
  EXPECT_EQ(RateOf(8 | 2, 8892), -8892) << "critical besides";
}

TEST(BatteryRecord, MakesNoNumberOfTheMarkers) {
  EXPECT_EQ(RateOf(2, 0x80000000), std::nullopt);
  EXPECT_EQ(RateOf(1, 0x80000000), std::nullopt);
  const auto battery = BatteryOfRecords(Information(kSystemBattery, kUnknown, kUnknown),
                                        Status(2, kUnknown, kUnknown, 0x80000000));
  ASSERT_TRUE(battery);
  for (unsigned int id = 0; id <= 12; ++id) {
    EXPECT_EQ(CombinedNumber({&*battery, 1}, static_cast<BatteryNumber>(id)), std::nullopt) << id;
  }
}

TEST(BatteryRecordProperty, AnyBytesGiveNumbersThatTheyHoldOrNone) {
  std::mt19937 random(3);
  for (int i = 0; i < 20'000; ++i) {
    Record information(random() % 40);
    Record status(random() % 20);
    for (auto& byte : information) byte = static_cast<std::uint8_t>(random());
    for (auto& byte : status) byte = static_cast<std::uint8_t>(random());
    const auto battery = BatteryOfRecords(information, status);
    if (!battery) continue;
    ASSERT_GE(information.size(), kBatteryInformationSize);
    ASSERT_EQ(battery->voltage.has_value(), status.size() >= kBatteryStatusSize);
    ASSERT_NE(battery->rate, INT32_MIN);
    const auto loss = CombinedNumber({&*battery, 1}, BatteryNumber::kLoss);
    ASSERT_LE(loss.value_or(0), 10000u);
  }
}

}  // namespace
}  // namespace ostrine
