#include "ostrine/common/firmware_reply.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace ostrine {
namespace {

constexpr std::int64_t kLeastReading = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kGreatestReading = std::numeric_limits<std::int64_t>::max();

TEST(FirmwareCommand, NamesItsFunctionInTheLowBitsAndItsSelectorAboveThem) {
  const auto command = SplitCommand(0x210902);
  EXPECT_EQ(command.function, FirmwareFunction::kElectric);
  EXPECT_EQ(command.selector, 0x21u);
}

TEST(FirmwareCommand, KeepsASelectorOfMoreThanSixteenBits) {
  EXPECT_EQ(SplitCommand(0xFEDC'BA98'7654'0202).selector, 0xFEDC'BA98'7654u);
}

TEST(ElectricChannel, IsToldByTheNibblesOfItsSelector) {
  const auto channel = SplitChannel(0x31);
  ASSERT_TRUE(channel);
  EXPECT_TRUE(channel->is_battery);
  EXPECT_TRUE(channel->is_current);
  EXPECT_EQ(channel->number, 1);
  const auto port = SplitChannel(0x00);
  ASSERT_TRUE(port);
  EXPECT_FALSE(port->is_battery);
  EXPECT_FALSE(port->is_current);
  EXPECT_EQ(port->number, 0);
}

TEST(ElectricChannel, IsNoneForASelectorOutsideTheFourQuantities) {
  EXPECT_FALSE(SplitChannel(0x40));
  EXPECT_FALSE(SplitChannel(kGreatestReading));
}

TEST(FanReply, HasTheSpeedLowByteFirst) {
  EXPECT_EQ(FanReply(4660), (FirmwareReply{0, 0x34, 0x12}));
  EXPECT_EQ(FanReply(0), (FirmwareReply{}));
}

TEST(FanReply, IsNoneForASpeedThatNoFanHas) {
  for (const std::int64_t speed :
       {std::int64_t{-1}, std::int64_t{30001}, std::int64_t{0xFFFF}, kLeastReading, kGreatestReading}) {
    EXPECT_FALSE(FanReply(speed)) << speed;
  }
  EXPECT_TRUE(FanReply(30000));
}

TEST(TemperatureReply, HasASignAndAMagnitude) {
  EXPECT_EQ(TemperatureReply(61'000), (FirmwareReply{0, 0, 61}));
  EXPECT_EQ(TemperatureReply(-40'000), (FirmwareReply{0, 1, 40}));
  EXPECT_EQ(TemperatureReply(0), (FirmwareReply{}));
}

TEST(TemperatureReply, IsRoundedToWholeDegrees) {
  EXPECT_EQ(TemperatureReply(61'499), (FirmwareReply{0, 0, 61}));
  EXPECT_EQ(TemperatureReply(61'500), (FirmwareReply{0, 0, 62}));
  EXPECT_EQ(TemperatureReply(-1'500), (FirmwareReply{0, 1, 2}));
  EXPECT_EQ(TemperatureReply(-499), (FirmwareReply{})) << "zero has no sign";
}

TEST(TemperatureReply, IsNoneForWhatARunningMachineCannotHave) {
  for (const std::int64_t reading : {std::int64_t{-273'150}, std::int64_t{-128'000}, std::int64_t{-55'001},
                                     std::int64_t{125'001}, std::int64_t{127'000}, std::int64_t{128'000},
                                     std::int64_t{255'000}, kLeastReading, kGreatestReading}) {
    EXPECT_FALSE(TemperatureReply(reading)) << reading;
  }
}

TEST(ElectricReply, HasASignAndAMagnitudeHighByteFirst) {
  EXPECT_EQ(ElectricReply(4660), (FirmwareReply{0, 0, 0x12, 0x34}));
  EXPECT_EQ(ElectricReply(-750), (FirmwareReply{0, 1, 0x02, 0xEE}));
}

TEST(ElectricReply, IsNoneForAMagnitudeThatDoesNotFit) {
  EXPECT_EQ(ElectricReply(0xFFFF), (FirmwareReply{0, 0, 0xFF, 0xFF}));
  for (const std::int64_t reading :
       {std::int64_t{0x10000}, std::int64_t{-0x10000}, kLeastReading, kGreatestReading}) {
    EXPECT_FALSE(ElectricReply(reading)) << reading;
  }
}

TEST(SwitchReply, TellsOnFromOff) {
  EXPECT_EQ(SwitchReply(true), (FirmwareReply{0, 1}));
  EXPECT_EQ(SwitchReply(false), (FirmwareReply{0, 0}));
}

}  // namespace
}  // namespace ostrine
