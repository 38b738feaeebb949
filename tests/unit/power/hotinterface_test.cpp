#include "velmora/hotinterface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/allocations.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::testing::CapturedLog;
using velmora::testing::WithEachAllocationFailing;

static_assert(std::is_empty_v<CHotInterface> && !std::is_polymorphic_v<CHotInterface>);

/// A machine whose firmware answers one word.
simulator::Machine MachineAnswering(std::uint64_t input, std::vector<std::uint8_t> output) {
  auto machine = simulator::BlankMachine();
  machine.firmware = {{.input = input, .output = {std::move(output)}}};
  return machine;
}

using Reading = int (CHotInterface::*)();

struct MeasuredChannel {
  const char* name;
  Reading read;
  std::uint64_t word;
};

const std::vector<MeasuredChannel> kChannels{
    {"GetVoltage_USB0", &CHotInterface::GetVoltage_USB0, 0x000902},
    {"GetVoltage_USB1", &CHotInterface::GetVoltage_USB1, 0x010902},
    {"GetCurrent_USB0", &CHotInterface::GetCurrent_USB0, 0x100902},
    {"GetCurrent_USB1", &CHotInterface::GetCurrent_USB1, 0x110902},
    {"GetVoltage_Battery0", &CHotInterface::GetVoltage_Battery0, 0x200902},
    {"GetVoltage_Battery1", &CHotInterface::GetVoltage_Battery1, 0x210902},
    {"GetCurrent_Battery0", &CHotInterface::GetCurrent_Battery0, 0x300902},
    {"GetCurrent_Battery1", &CHotInterface::GetCurrent_Battery1, 0x310902},
};

int Temperature(std::vector<std::uint8_t> reply) {
  const auto run = simulator::Use(MachineAnswering(0x0202, std::move(reply)));
  return CHotInterface().GetSensorTemperature(0);
}

unsigned int Fan0(std::vector<std::uint8_t> reply) {
  const auto run = simulator::Use(MachineAnswering(0x0802, std::move(reply)));
  return CHotInterface().GetFan0Speed();
}

TEST(HotInterface, AsksForEachFanWithItsWord) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  CHotInterface sensors;
  EXPECT_EQ(run.Calls(), 0) << "making the object asks nothing";
  sensors.GetFan0Speed();
  sensors.GetFan1Speed();
  EXPECT_THAT(run.Trace(), ElementsAre("CWMI(ROOT\\WMI)", "GetOutPutUInt(0x802, 256)", "CWMI(ROOT\\WMI)",
                                       "GetOutPutUInt(0x10802, 256)"));
  EXPECT_EQ(run.OpenHandles(), 0) << "each connection is released again";
}

TEST(HotInterface, GivesAFansSpeedLowByteFirst) {
  EXPECT_EQ(Fan0({0, 0x34, 0x12}), 4660u);
  EXPECT_EQ(Fan0({0, 0xFF, 0xFF}), 65535u);
  EXPECT_EQ(Fan0({0, 0, 0, 0xFF, 0xFF}), 0u) << "the fourth byte is not read";
  const auto run = simulator::Use(MachineAnswering(0x10802, {0, 0x34, 0x12}));
  EXPECT_EQ(CHotInterface().GetFan1Speed(), 4660u);
}

TEST(HotInterface, GivesNoSpeedOfAFanWhoseStatusIsNotValid) {
  EXPECT_EQ(Fan0({1, 0x34, 0x12}), 0u);
  EXPECT_EQ(Fan0({0xFF, 0x34, 0x12}), 0u);
}

TEST(HotInterface, HasNoSignInAFansReply) { EXPECT_EQ(Fan0({0, 1, 0}), 1u); }

TEST(HotInterface, GivesATemperatureWithItsSign) {
  EXPECT_EQ(Temperature({0, 0, 40}), 40);
  EXPECT_EQ(Temperature({0, 1, 40}), -40);
  EXPECT_EQ(Temperature({0, 2, 40}), 40) << "only 1 is the sign";
  EXPECT_EQ(Temperature({0, 0xFF, 40}), 40);
  EXPECT_EQ(Temperature({0, 0, 255}), 255) << "the magnitude has no sign of its own";
  EXPECT_EQ(Temperature({0, 1, 255}), -255);
  EXPECT_EQ(Temperature({0, 0, 40, 99}), 40) << "the fourth byte is not read";
}

TEST(HotInterface, GivesZeroForATemperatureWhoseStatusIsNotValidWhateverItsSign) {
  EXPECT_EQ(Temperature({1, 0, 40}), 0);
  EXPECT_EQ(Temperature({1, 1, 40}), 0);
}

TEST(HotInterface, ShiftsASensorsNumberIntoTheWordWithoutMaskingIt) {
  const auto word_of = [](std::uint64_t sensor) {
    const auto run = simulator::Use(simulator::EmptyMachine());
    CHotInterface().GetSensorTemperature(sensor);
    return run.Trace().back();
  };
  EXPECT_EQ(word_of(0), "GetOutPutUInt(0x202, 256)");
  EXPECT_EQ(word_of(3), "GetOutPutUInt(0x30202, 256)");
  EXPECT_EQ(word_of(0xFFFF), "GetOutPutUInt(0xFFFF0202, 256)");
  EXPECT_EQ(word_of(0x10000), "GetOutPutUInt(0x100000202, 256)");
  EXPECT_EQ(word_of(0x123456789ABC), "GetOutPutUInt(0x123456789ABC0202, 256)");
  EXPECT_EQ(word_of(0xFFFFFFFFFFFF), "GetOutPutUInt(0xFFFFFFFFFFFF0202, 256)");
  EXPECT_EQ(word_of(0xABCD000000000001), "GetOutPutUInt(0x10202, 256)") << "what leaves at the top is gone";
  EXPECT_EQ(word_of(~std::uint64_t{0}), "GetOutPutUInt(0xFFFFFFFFFFFF0202, 256)");
}

TEST(HotInterface, AsksForEachChannelWithItsWord) {
  for (const MeasuredChannel& channel : kChannels) {
    const auto run = simulator::Use(MachineAnswering(channel.word, {0, 0, 0x12, 0x34}));
    CHotInterface sensors;
    EXPECT_EQ((sensors.*channel.read)(), 4660) << channel.name;
    EXPECT_EQ(run.Calls("CWMI"), 1);
    EXPECT_EQ(run.Calls("GetOutPutUInt"), 1);
  }
}

TEST(HotInterface, GivesVoltagesAndCurrentsHighByteFirstWithTheirSign) {
  for (const MeasuredChannel& channel : kChannels) {
    const auto value_of = [&](std::vector<std::uint8_t> reply) {
      const auto run = simulator::Use(MachineAnswering(channel.word, std::move(reply)));
      CHotInterface sensors;
      return (sensors.*channel.read)();
    };
    EXPECT_EQ(value_of({0, 1, 0x12, 0x34}), -4660) << channel.name;
    EXPECT_EQ(value_of({0, 0, 0xFF, 0xFF}), 65535) << channel.name;
    EXPECT_EQ(value_of({0, 1, 0xFF, 0xFF}), -65535) << channel.name;
    EXPECT_EQ(value_of({0, 2, 0, 7}), 7) << channel.name;
    EXPECT_EQ(value_of({3, 0, 0x12, 0x34}), 0) << channel.name;
    EXPECT_EQ(value_of({3, 1, 0x12, 0x34}), 0) << channel.name;
  }
}

TEST(HotInterface, ReadsAnAnswerThatIsTooShortAsZeros) {
  EXPECT_EQ(Fan0({0, 7}), 7u);
  EXPECT_EQ(Fan0({}), 0u);
  EXPECT_EQ(Temperature({0}), 0);
}

TEST(HotInterface, ReadsNoMoreOfAnAnswerThanItsBufferHolds) {
  std::vector<std::uint8_t> long_reply(100'000, 0xFF);
  long_reply[0] = 0;
  EXPECT_EQ(Fan0(long_reply), 65535u);
}

TEST(HotInterface, GivesZeroWhenTheFirmwareFails) {
  auto machine = simulator::BlankMachine();
  for (const std::uint64_t word : {0x0802u, 0x10802u, 0x0202u}) {
    machine.firmware.emplace().push_back({.input = word, .output = {{0, 1, 40, 40}}, .error = 31});
  }
  const auto run = simulator::Use(machine);
  CHotInterface sensors;
  EXPECT_EQ(sensors.GetFan0Speed(), 0u);
  EXPECT_EQ(sensors.GetFan1Speed(), 0u);
  EXPECT_EQ(sensors.GetSensorTemperature(0), 0);
  for (const MeasuredChannel& channel : kChannels) EXPECT_EQ((sensors.*channel.read)(), 0) << channel.name;
}

TEST(HotInterface, GivesZeroWhenAnythingThrowsAndReleasesTheConnection) {
  for (const int call : {0, 1}) {
    auto run = simulator::Use(MachineAnswering(0x0802, {0, 0x34, 0x12}));
    run.Inject(Fault::kThrow, call);
    EXPECT_EQ(CHotInterface().GetFan0Speed(), 0u);
    EXPECT_EQ(run.OpenHandles(), 0);
  }
}

TEST(HotInterface, GivesZeroWhenTheConnectionFails) {
  auto machine = MachineAnswering(0x0802, {0, 0x34, 0x12});
  machine.wmi.emplace().broken = true;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(CHotInterface().GetFan0Speed(), 0u);
}

TEST(HotInterface, KeepsNothingBetweenCalls) {
  auto run = simulator::Use(MachineAnswering(0x0802, {0, 0x34, 0x12}));
  CHotInterface sensors;
  sensors.GetFan0Speed();
  run.machine().firmware->clear();
  EXPECT_EQ(sensors.GetFan0Speed(), 0u);
}

TEST(HotInterface, LogsNothing) {
  const CapturedLog log;
  const auto run = simulator::Use(simulator::EmptyMachine());
  CHotInterface sensors;
  sensors.GetFan0Speed();
  sensors.GetSensorTemperature(1);
  sensors.GetCurrent_Battery1();
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(HotInterface, GivesZeroWhenMemoryRunsOut) {
  const auto run = simulator::Use(MachineAnswering(0x0802, {0, 0x34, 0x12}));
  const auto results = WithEachAllocationFailing([] { return CHotInterface().GetFan0Speed(); });
  for (const unsigned int speed : results) EXPECT_TRUE(speed == 0 || speed == 4660);
  EXPECT_EQ(results.back(), 4660u);
}

}  // namespace
