/// Which information id is which value of the battery's class.
#include "ostrine/common/battery.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/ostrine/hal.h"

namespace ostrine {
namespace {

/// A machine as a test says it is.
class MadeUpPower : public BatterySystem {
 public:
  std::vector<Battery> Batteries() const override { return batteries; }
  std::optional<bool> IsOnMains() const override { return is_on_mains; }
  std::optional<ChargeThresholds> Thresholds() const override { return thresholds; }
  bool SetThresholds(const ChargeThresholds& wanted) const override {
    set = wanted;
    return takes_thresholds;
  }

  std::vector<Battery> batteries{{.manufacturer = "SANYO",
                                  .name = "7FR5J",
                                  .remaining = 30120,
                                  .full = 43830,
                                  .design = 50000,
                                  .voltage = 11856,
                                  .rate = -8892}};
  std::optional<bool> is_on_mains = false;
  std::optional<ChargeThresholds> thresholds = ChargeThresholds{75, 80};
  bool takes_thresholds = true;
  mutable std::optional<ChargeThresholds> set;
};

class BatteryClass : public testing::Test {
 protected:
  /// The answer into a buffer of 4 bytes.
  std::optional<std::uint32_t> Number(unsigned int id) const {
    std::uint32_t number = 0;
    unsigned int returned = 0;
    Answer answer(&number, sizeof number, &returned);
    if (!AnswerBattery(power_, id, answer)) return std::nullopt;
    EXPECT_EQ(returned, sizeof number);
    return number;
  }
  std::optional<std::string> Text(unsigned int id) const {
    std::array<char, 260> buffer{};
    Answer answer(buffer.data(), buffer.size(), nullptr);
    if (!AnswerBattery(power_, id, answer)) return std::nullopt;
    return buffer.data();
  }
  /// Whether a buffer of `size` bytes is filled for the id of both the rate and the thresholds.
  bool IsAnswered(std::size_t size, std::array<std::uint8_t, 8>& buffer) const {
    Answer answer(buffer.data(), static_cast<unsigned int>(size), nullptr);
    return AnswerBattery(power_, 9, answer);
  }
  bool Set(unsigned int id, std::initializer_list<std::uint8_t> bytes) const {
    const std::vector<std::uint8_t> value(bytes);
    return TakeBatterySetting(power_, id, value);
  }

  MadeUpPower power_;
};

TEST_F(BatteryClass, AnswersEachId) {
  EXPECT_EQ(Number(0), 1u);
  EXPECT_EQ(Text(1), "SANYO");
  EXPECT_EQ(Text(2), "7FR5J");
  EXPECT_EQ(Number(3), 30120u);
  EXPECT_EQ(Number(4), 43830u);
  EXPECT_EQ(Number(5), 50000u);
  EXPECT_EQ(Number(6), 0u);
  EXPECT_EQ(Number(7), 11856u);
  EXPECT_EQ(Number(8), 1234u);
  EXPECT_EQ(Number(9), 8892u);
  EXPECT_EQ(Number(10), 0u);
}

TEST_F(BatteryClass, FailsForEveryOtherId) {
  for (const unsigned int id : {11u, 12u, 13u, 99u, 0xFFFFFFFFu}) EXPECT_EQ(Number(id), std::nullopt) << id;
}

TEST_F(BatteryClass, TellsTheRateFromTheThresholdsByTheBuffersSize) {
  std::array<std::uint8_t, 8> buffer{};
  EXPECT_TRUE(IsAnswered(2, buffer));
  EXPECT_EQ(buffer, (std::array<std::uint8_t, 8>{75, 80}));
  EXPECT_TRUE(IsAnswered(4, buffer));
  EXPECT_EQ(buffer, (std::array<std::uint8_t, 8>{0xBC, 0x22}));
  EXPECT_FALSE(IsAnswered(1, buffer));
  EXPECT_FALSE(IsAnswered(3, buffer));
}

TEST_F(BatteryClass, TellsTheMainsAlsoWithoutABattery) {
  power_.batteries.clear();
  power_.is_on_mains = true;
  EXPECT_EQ(Number(6), 1u);
  EXPECT_EQ(Number(0), std::nullopt);
  power_.is_on_mains.reset();
  EXPECT_EQ(Number(6), std::nullopt);
}

TEST_F(BatteryClass, FailsForATextThatNoBatteryHas) {
  power_.batteries[0].name.clear();
  EXPECT_EQ(Text(2), std::nullopt);
}

TEST_F(BatteryClass, FailsForThresholdsThatTheMachineDoesNotHave) {
  power_.thresholds.reset();
  std::array<std::uint8_t, 8> buffer{};
  EXPECT_FALSE(IsAnswered(2, buffer));
}

TEST_F(BatteryClass, TakesThresholdsByTheIdForSettingThem) {
  EXPECT_TRUE(Set(12, {40, 60}));
  EXPECT_EQ(power_.set, (ChargeThresholds{40, 60}));
  power_.takes_thresholds = false;
  EXPECT_FALSE(Set(12, {40, 60}));
}

TEST_F(BatteryClass, DoesNotEvenTryThresholdsThatAreNotPossible) {
  for (const auto& bytes : {std::initializer_list<std::uint8_t>{60, 40},
                            {50, 50},
                            {0, 101},
                            {255, 255},
                            {0, 0},
                            {40},
                            {40, 60, 0, 0}}) {
    EXPECT_FALSE(Set(12, bytes));
  }
  EXPECT_FALSE(power_.set);
}

TEST_F(BatteryClass, HasNoOtherSetting) {
  for (const unsigned int id : {0u, 6u, 9u, 10u, 11u, 13u, 0xFFFFFFFFu})
    EXPECT_FALSE(Set(id, {40, 60})) << id;
  EXPECT_FALSE(power_.set);
}

TEST(BatteryExports, PrepareTheClassWithoutATableAsOftenAsAsked) {
  EXPECT_NE(HalInit(8, nullptr), 0);
  EXPECT_NE(HalInit(8, nullptr), 0);
}

TEST(BatteryExports, NeverOpenOrCloseABattery) {
  std::array<char, 16> record{};
  EXPECT_EQ(HalOpenDevice(8, record.data()), 0);
  EXPECT_EQ(HalCloseDevice(8, record.data()), 0);
}

TEST(BatteryExports, RefuseImpossibleThresholdsOnAnyMachine) {
  std::array<std::uint8_t, 2> record{80, 75};
  unsigned int returned = 0;
  EXPECT_EQ(HalSetInformation(8, nullptr, 12, record.data(), record.size(), &returned), 0);
  EXPECT_EQ(HalSetInformation(8, nullptr, 12, nullptr, 2, &returned), 0);
  EXPECT_EQ(HalSetInformation(8, nullptr, 12, record.data(), 0, &returned), 0);
}

}  // namespace
}  // namespace ostrine
