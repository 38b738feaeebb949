#include "ostrine/linux/firmware_method.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>

#include "platform/ostrine/wmi.h"
#include "tests/support/linux/fake_machine.h"

namespace ostrine {
namespace {

class FirmwareMethod : public testing::Test {
 protected:
  FirmwareMethod() { test::BuildLaptop(machine_); }

  FirmwareReply Reply(std::uint64_t command) const {
    const FirmwareAnswer answer = AnswerFirmwareMethod(machine_.Path(), command);
    EXPECT_EQ(answer.error, 0u) << std::hex << command;
    return answer.bytes;
  }
  std::uint32_t Error(std::uint64_t command) const {
    return AnswerFirmwareMethod(machine_.Path(), command).error;
  }

  test::FakeMachine machine_;
};

TEST_F(FirmwareMethod, GivesTheSpeedOfAFan) { EXPECT_EQ(Reply(0x0802), (FirmwareReply{0, 0x8A, 0x0C})); }

TEST_F(FirmwareMethod, RefusesTheSpeedOfAFanThatDoesNotAnswer) { EXPECT_EQ(Error(0x10802), 13u); }

TEST_F(FirmwareMethod, HasNoFanBeyondTheLast) { EXPECT_EQ(Error(0x20802), 1168u); }

TEST_F(FirmwareMethod, CountsTemperaturesFromTheProcessorsChip) {
  EXPECT_EQ(Reply(0x0202), (FirmwareReply{0, 0, 61}));
  EXPECT_EQ(Reply(0x10202), (FirmwareReply{0, 0, 61}));
  EXPECT_EQ(Reply(0x20202), (FirmwareReply{0, 0, 28})) << "then the firmware's zone";
  EXPECT_EQ(Reply(0x30202), (FirmwareReply{0, 1, 4})) << "then the others by name";
}

TEST_F(FirmwareMethod, KeepsItsOrderWhenTheKernelNumbersTheChipsOtherwise) {
  std::filesystem::remove(machine_.Path() / "sys/class/hwmon/hwmon7");
  std::filesystem::rename(machine_.Device("platform/coretemp.0/hwmon/hwmon7"),
                          machine_.Device("platform/coretemp.0/hwmon/hwmon99"));
  machine_.Root().Link("sys/class/hwmon/hwmon99", "../../devices/platform/coretemp.0/hwmon/hwmon99");
  EXPECT_EQ(Reply(0x0202), (FirmwareReply{0, 0, 61}));
}

TEST_F(FirmwareMethod, RefusesImpossibleAndFrozenReadings) {
  EXPECT_EQ(Error(0x40202), 13u) << "absolute zero";
  EXPECT_EQ(Error(0x50202), 13u) << "a sensor that calls itself broken";
  machine_.Write("platform/coretemp.0/hwmon/hwmon7", {{"temp1_enable", "0"}, {"temp2_input", "junk\x01"}});
  EXPECT_EQ(Error(0x0202), 13u) << "a sensor that is switched off";
  EXPECT_EQ(Error(0x10202), 13u);
}

TEST_F(FirmwareMethod, DoesNotWakeASleepingDevice) { EXPECT_EQ(Error(0x60202), 21u); }

TEST_F(FirmwareMethod, HasNoSensorBeyondTheLast) {
  EXPECT_EQ(Error(0x70202), 1168u);
  EXPECT_EQ(Error(0xFFFFFFFFFFFF0202), 1168u) << "the number is not cut";
}

TEST_F(FirmwareMethod, NeverAsksADiskForItsTemperature) {
  machine_.AddOfClass("hwmon", "ata1/hwmon/hwmon9", {{"name", "drivetemp"}, {"temp1_input", "30000"}});
  EXPECT_EQ(Error(0x70202), 1168u);
}

TEST_F(FirmwareMethod, GivesVoltagesInMillivolts) {
  EXPECT_EQ(Reply(0x200902), (FirmwareReply{0, 0, 0x2E, 0x50}));
  EXPECT_EQ(Reply(0x210902), (FirmwareReply{0, 0, 0x31, 0x38}));
  EXPECT_EQ(Reply(0x000902), (FirmwareReply{0, 0, 0x4E, 0x20}));
}

TEST_F(FirmwareMethod, GivesCurrentsWithTheirDirection) {
  EXPECT_EQ(Reply(0x300902), (FirmwareReply{0, 1, 0x02, 0xEE})) << "from power and voltage, discharging";
  EXPECT_EQ(Reply(0x310902), (FirmwareReply{0, 0, 0x05, 0xDC})) << "charging, whatever sign the driver gives";
  EXPECT_EQ(Reply(0x100902), (FirmwareReply{0, 0, 0x0C, 0xB2}));
}

TEST_F(FirmwareMethod, HasNoPortOrBatteryBeyondTheLast) {
  EXPECT_EQ(Error(0x010902), 1168u);
  EXPECT_EQ(Error(0x220902), 1168u) << "a mouse's battery is none of the machine's";
  machine_.Write("platform/bat/power_supply/BAT0", {{"present", "0"}});
  EXPECT_EQ(Error(0x210902), 1168u) << "an empty bay is no battery";
}

TEST_F(FirmwareMethod, RefusesImpossibleVoltagesAndCurrents) {
  const std::string battery = "platform/bat/power_supply/BAT0";
  for (const char* const voltage : {"0", "-1", "4294967295000", "9223372036854775807", ""}) {
    machine_.Write(battery, {{"voltage_now", voltage}});
    EXPECT_EQ(Error(0x200902), 13u) << voltage;
  }
  machine_.Write(battery, {{"power_now", "-9223372036854775808"}, {"voltage_now", "1000"}});
  EXPECT_EQ(Error(0x300902), 13u);
  machine_.Write(battery, {{"current_now", "4294967295"}});
  EXPECT_EQ(Error(0x300902), 13u);
}

TEST_F(FirmwareMethod, TellsTheFirmwaresSwitches) {
  EXPECT_EQ(Reply(0x250105), (FirmwareReply{0, 1}));
  EXPECT_EQ(Reply(0x260105), (FirmwareReply{0, 0}));
  EXPECT_EQ(Error(0x270105), 13u) << "a value that is neither on nor off";
  EXPECT_EQ(Error(0x240105), 1168u) << "a setting that this machine has not";
  EXPECT_EQ(Error(0x230105), 50u);
}

TEST_F(FirmwareMethod, DeniesASettingToAUserWithoutRights) {
  machine_.Root().Forbid(
      "sys/devices/virtual/firmware-attributes/maker/attributes/WirelessLANAccess/current_value");
  const test::WithoutRights without_rights;
  EXPECT_EQ(Error(0x250105), 5u);
}

TEST_F(FirmwareMethod, SupportsNoOtherCommand) {
  for (const std::uint64_t command : {0x0u, 0x0101u, 0x400902u, 0xFFFFFFFFu}) EXPECT_EQ(Error(command), 50u);
}

TEST_F(FirmwareMethod, IsReachedThroughItsNamespaceOnly) {
  const test::ActsOn acts_on(machine_);
  std::array<unsigned char, 256> output{};
  EXPECT_TRUE(CWMI(L"root\\wmi").GetOutPutUInt(0x0802, output.data(), output.size()));
  EXPECT_EQ(output[1], 0x8A);
  EXPECT_FALSE(CWMI(L"ROOT\\CIMV2").GetOutPutUInt(0x0802, output.data(), output.size()));
  EXPECT_EQ(errno, 0x10000 + 50);
}

TEST_F(FirmwareMethod, WritesNoMoreThanTheCallersRoom) {
  const test::ActsOn acts_on(machine_);
  CWMI wmi(L"ROOT\\WMI");
  std::array<unsigned char, 4> output{0xEE, 0xEE, 0xEE, 0xEE};
  EXPECT_TRUE(wmi.GetOutPutUInt(0x0802, output.data(), 2));
  EXPECT_EQ(output, (std::array<unsigned char, 4>{0, 0x8A, 0xEE, 0xEE}));
  EXPECT_TRUE(wmi.GetOutPutUInt(0x0802, nullptr, 0));
  EXPECT_FALSE(wmi.GetOutPutUInt(0x0802, nullptr, 256));
  EXPECT_EQ(errno, 0x10000 + 87);
}

TEST(NoFirmwareMethod, LeavesTheOutputAloneAndSaysWhy) {
  const test::FakeMachine machine;
  const test::ActsOn acts_on(machine);
  std::array<unsigned char, 4> output{0xEE, 0xEE, 0xEE, 0xEE};
  EXPECT_FALSE(CWMI(L"ROOT\\WMI").GetOutPutUInt(0x0202, output.data(), output.size()));
  EXPECT_EQ(errno, 0x10000 + 1168);
  EXPECT_EQ(output[0], 0xEE);
}

}  // namespace
}  // namespace ostrine
