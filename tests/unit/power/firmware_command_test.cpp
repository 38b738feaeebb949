/// Command words, and every reply that a firmware can give.
#include "power/firmware_command.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>

namespace {

using namespace velmora::firmware;

Reply ReplyOf(unsigned int status, unsigned int first, unsigned int second, unsigned int third) {
  Reply reply{};
  reply[0] = static_cast<unsigned char>(status);
  reply[1] = static_cast<unsigned char>(first);
  reply[2] = static_cast<unsigned char>(second);
  reply[3] = static_cast<unsigned char>(third);
  return reply;
}

TEST(FirmwareCommand, HasItsFunctionInTheLowBitsAndItsSelectorAbove) {
  EXPECT_EQ(SwitchCommand(0x25), 0x250105u);
  EXPECT_EQ(SwitchCommand(0xFF), 0xFF0105u);
  EXPECT_EQ(FanCommand(0), 0x0802u);
  EXPECT_EQ(FanCommand(1), 0x10802u);
  EXPECT_EQ(TemperatureCommand(0x10000), 0x100000202u);
  EXPECT_EQ(ChannelCommand(Channel::kBatteryCurrent1), 0x310902u);
}

TEST(FirmwareReply, HasTheTwoByteOrdersOfFansAndChannels) {
  for (unsigned int high = 0; high < 256; ++high) {
    for (unsigned int low = 0; low < 256; ++low) {
      ASSERT_EQ(DecodeFanSpeed(ReplyOf(0, low, high, 0xAA)), high * 256 + low);
      ASSERT_EQ(DecodeVoltageOrCurrent(ReplyOf(0, 0, high, low)), static_cast<int>(high * 256 + low));
      ASSERT_EQ(DecodeVoltageOrCurrent(ReplyOf(0, 1, high, low)), -static_cast<int>(high * 256 + low));
    }
  }
}

TEST(FirmwareReply, HasNoValueUnlessItsStatusIsZero) {
  for (unsigned int status = 1; status < 256; ++status) {
    for (const unsigned int sign : {0u, 1u, 2u, 255u}) {
      const Reply reply = ReplyOf(status, sign, 0x12, 0x34);
      ASSERT_FALSE(IsValid(reply));
      ASSERT_EQ(DecodeFanSpeed(reply), 0u);
      ASSERT_EQ(DecodeTemperature(reply), 0);
      ASSERT_EQ(DecodeVoltageOrCurrent(reply), 0);
    }
  }
}

TEST(FirmwareReply, IsBelowZeroWithASignOfExactlyOne) {
  for (unsigned int sign = 0; sign < 256; ++sign) {
    for (unsigned int magnitude = 0; magnitude < 256; ++magnitude) {
      const int value = static_cast<int>(magnitude);
      ASSERT_EQ(DecodeTemperature(ReplyOf(0, sign, magnitude, 0xFF)), sign == 1 ? -value : value);
    }
  }
}

TEST(FirmwareReply, IsDecodedFromItsFirstFourBytesAlone) {
  std::mt19937 random(1);
  for (int i = 0; i < 20'000; ++i) {
    Reply reply;
    for (auto& byte : reply) byte = static_cast<unsigned char>(random());
    if (i % 2 == 0) reply[0] = 0;
    Reply front{};
    for (std::size_t byte = 0; byte < 4; ++byte) front[byte] = reply[byte];
    ASSERT_EQ(DecodeFanSpeed(reply), DecodeFanSpeed(front));
    ASSERT_EQ(DecodeTemperature(reply), DecodeTemperature(front));
    ASSERT_EQ(DecodeVoltageOrCurrent(reply), DecodeVoltageOrCurrent(front));
    ASSERT_EQ(DecodeSwitch(reply), DecodeSwitch(front));
  }
}

}  // namespace
