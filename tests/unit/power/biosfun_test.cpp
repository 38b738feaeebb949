#include "velmora/biosfun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/allocations.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::testing::CapturedLog;
using velmora::testing::WithEachAllocationFailing;

static_assert(std::is_empty_v<CBiosFun> && !std::is_polymorphic_v<CBiosFun>);

const std::map<stDEVICE_DRIVER_TYPE, unsigned int> kItems{{emDEVICE_WIRELESS, 0x25},
                                                          {emDEVICE_BLUETOOTH, 0x26},
                                                          {emDEVICE_FINGERPRINT, 0x27},
                                                          {emDEVICE_AUDIO, 0x24}};

simulator::Machine MachineOfKind(std::optional<std::uint32_t> kind) {
  auto machine = simulator::BlankMachine();
  machine.cpu.emplace().kind = kind;
  machine.firmware.emplace();
  return machine;
}

/// A machine with an Intel processor whose firmware answers for `item`.
simulator::Machine MachineWithSwitch(std::uint64_t item, std::vector<std::uint8_t> output,
                                     std::uint32_t error = 0) {
  auto machine = MachineOfKind(1);
  machine.firmware = {{.input = item << 16 | 0x0105, .output = {std::move(output)}, .error = error}};
  return machine;
}

struct Switch {
  bool is_read;
  bool on;

  bool operator==(const Switch&) const = default;
};

void PrintTo(const Switch& answer, std::ostream* stream) {
  *stream << (answer.is_read ? "read" : "not read") << ", " << (answer.on ? "on" : "off");
}

constexpr Switch kOn{true, true};
constexpr Switch kOff{true, false};
constexpr Switch kNotRead{false, true};

Switch Ask(stDEVICE_DRIVER_TYPE kind, bool before = false) {
  Switch answer{.is_read = false, .on = before};
  answer.is_read = CBiosFun().GetBiosSwitch(answer.on, kind);
  return answer;
}

Switch AskWireless(std::vector<std::uint8_t> reply) {
  const auto run = simulator::Use(MachineWithSwitch(0x25, std::move(reply)));
  return Ask(emDEVICE_WIRELESS);
}

TEST(BiosFun, AsksTheProcessorFirstAndThenTheFirmware) {
  const auto run = simulator::Use(MachineWithSwitch(0x25, {0, 1}));
  CBiosFun firmware;
  EXPECT_EQ(run.Calls(), 0) << "making the object asks nothing";
  bool on = false;
  EXPECT_TRUE(firmware.GetBiosSwitch(on, emDEVICE_WIRELESS));
  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(0, null)", "HalQueryInformation(0, null, 19, 4)",
                                       "CWMI(ROOT\\WMI)", "GetOutPutUInt(0x250105, 256)"));
}

TEST(BiosFun, AsksForEachDeviceWithItsItem) {
  for (const auto& [kind, item] : kItems) {
    const auto run = simulator::Use(MachineWithSwitch(item, {0, 0}));
    EXPECT_EQ(Ask(kind), kOff) << kind;
    EXPECT_EQ(run.OpenHandles(), 0);
  }
}

TEST(BiosFun, TellsASwitchThatIsOff) { EXPECT_EQ(AskWireless({0, 0}), kOff); }

TEST(BiosFun, TakesEveryStateButZeroForOn) {
  for (const std::vector<std::uint8_t>& reply : {std::vector<std::uint8_t>{0, 1}, {0, 2}, {0, 7}, {0, 255}}) {
    EXPECT_EQ(AskWireless(reply), kOn);
  }
}

TEST(BiosFun, DoesNotReadASwitchWhoseStatusIsNotValidAndSaysOn) {
  EXPECT_EQ(AskWireless({1, 0}), kNotRead);
  EXPECT_EQ(AskWireless({1, 1}), kNotRead);
  EXPECT_EQ(AskWireless({255, 0}), kNotRead);
}

TEST(BiosFun, DoesNotReadBeyondTheSecondByte) {
  std::vector<std::uint8_t> reply(256, 0xFF);
  reply[0] = 0;
  reply[1] = 0;
  EXPECT_EQ(AskWireless(reply), kOff);
}

TEST(BiosFun, SupportsNoOtherKindOfDevice) {
  const auto run = simulator::Use(MachineOfKind(1));
  for (const std::uint32_t number : {2u, 4u, 6u, 7u, 8u, 9u, 10u, 0x100u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Ask(static_cast<stDEVICE_DRIVER_TYPE>(number)), kNotRead) << number;
  }
  EXPECT_EQ(run.Calls("CWMI"), 0) << "the firmware is not asked";
}

TEST(BiosFun, WorksOnBothSupportedKindsOfProcessor) {
  for (const std::uint32_t kind : {1u, 2u}) {
    auto machine = MachineWithSwitch(0x25, {0, 0});
    machine.cpu->kind = kind;
    const auto run = simulator::Use(machine);
    EXPECT_EQ(Ask(emDEVICE_WIRELESS), kOff);
  }
}

TEST(BiosFun, OnAnyOtherProcessorReadsAndLogsNothingForEveryDevice) {
  const CapturedLog log;
  for (const std::optional<std::uint32_t> kind :
       {std::optional<std::uint32_t>(0), {3}, {4}, {0x101}, {0xFFFFFFFF}, {}}) {
    const auto run = simulator::Use(MachineOfKind(kind));
    for (std::uint32_t device = 0; device <= 10; ++device) {
      EXPECT_EQ(Ask(static_cast<stDEVICE_DRIVER_TYPE>(device)), kNotRead) << device;
    }
    EXPECT_EQ(run.Calls("CWMI"), 0);
  }
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(BiosFun, SaysOnInEveryFailureWhateverStoodThereBefore) {
  for (const bool before : {false, true}) {
    {
      const auto run = simulator::Use(MachineOfKind(3));
      EXPECT_EQ(Ask(emDEVICE_WIRELESS, before), kNotRead) << "another processor";
    }
    const auto run = simulator::Use(MachineWithSwitch(0x25, {0, 0}, 31));
    EXPECT_EQ(Ask(emDEVICE_KEYBOARD, before), kNotRead) << "another device";
    EXPECT_EQ(Ask(emDEVICE_WIRELESS, before), kNotRead) << "a failed call";
    EXPECT_EQ(Ask(emDEVICE_AUDIO, before), kNotRead) << "a switch that the firmware has not";
  }
}

TEST(BiosFun, DoesNotReadASwitchWhenAnythingFailsOrThrows) {
  for (const Fault fault : {Fault::kFail, Fault::kThrow}) {
    for (const int call : {1, 2, 3}) {  // the processor's kind, the connection, the firmware
      auto run = simulator::Use(MachineWithSwitch(0x25, {0, 0}));
      run.Inject(fault, call);
      EXPECT_EQ(Ask(emDEVICE_WIRELESS), kNotRead) << call;
      EXPECT_EQ(run.OpenHandles(), 0);
    }
  }
}

TEST(BiosFun, KeepsNothingBetweenCalls) {
  auto run = simulator::Use(MachineWithSwitch(0x25, {0, 0}));
  CBiosFun firmware;
  bool on = false;
  EXPECT_TRUE(firmware.GetBiosSwitch(on, emDEVICE_WIRELESS));
  EXPECT_FALSE(on);
  run.machine().firmware->at(0).output = {{0, 1}};
  EXPECT_TRUE(firmware.GetBiosSwitch(on, emDEVICE_WIRELESS));
  EXPECT_TRUE(on);
}

TEST(BiosFun, SurvivesMemoryThatRunsOut) {
  const auto run = simulator::Use(MachineWithSwitch(0x25, {0, 0}));
  const auto results = WithEachAllocationFailing([] { return Ask(emDEVICE_WIRELESS); });
  for (const Switch& answer : results) EXPECT_TRUE(answer == kOff || answer == kNotRead);
  EXPECT_EQ(results.back(), kOff);
}

TEST(BiosFunLog, TellsTheStepsOfASwitchThatWasRead) {
  const CapturedLog log;
  const auto run = simulator::Use(MachineWithSwitch(0x25, {0, 7}));
  velmora::os::SetLastError(183);
  Ask(emDEVICE_WIRELESS);
  EXPECT_THAT(log.Texts(), ElementsAre("enmType=0,byItemcode=37, bRet=1(CBiosFun::GetItemCodeByDeviceType)",
                                       "pOUT bit0=0,bit17, err=183(CBiosFun::GetBiosSwitch)",
                                       "enmType=0,byItemcode=37(CBiosFun::GetBiosSwitch)"));
}

TEST(BiosFunLog, TellsTheReplyAlsoWhenItsStatusIsNotValid) {
  const CapturedLog log;
  const auto run = simulator::Use(MachineWithSwitch(0x24, {255, 254}));
  velmora::os::SetLastError(0);
  Ask(emDEVICE_AUDIO);
  EXPECT_THAT(log.Texts(), ElementsAre("enmType=5,byItemcode=36, bRet=1(CBiosFun::GetItemCodeByDeviceType)",
                                       "pOUT bit0=255,bit1254, err=0(CBiosFun::GetBiosSwitch)",
                                       "enmType=5,byItemcode=36(CBiosFun::GetBiosSwitch)"));
}

TEST(BiosFunLog, TellsWhyTheFirmwareDidNotAnswer) {
  const CapturedLog log;
  const auto run = simulator::Use(MachineWithSwitch(0x26, {}, 1359));
  Ask(emDEVICE_BLUETOOTH);
  EXPECT_THAT(log.Texts(), ElementsAre("enmType=1,byItemcode=38, bRet=1(CBiosFun::GetItemCodeByDeviceType)",
                                       "GetOutPutUInt Fail, err=1359(CBiosFun::GetBiosSwitch)",
                                       "enmType=1,byItemcode=38(CBiosFun::GetBiosSwitch)"));
}

TEST(BiosFunLog, TellsADeviceThatIsNotSupported) {
  const auto run = simulator::Use(MachineOfKind(2));
  for (const std::uint32_t number : {2u, 4u, 6u, 7u, 8u, 9u, 0xFFFFFFFFu}) {
    const CapturedLog log;
    Ask(static_cast<stDEVICE_DRIVER_TYPE>(number));
    const std::string kind = "enmType=" + std::to_string(number) + ",byItemcode=0";
    EXPECT_THAT(log.Texts(), ElementsAre(kind + ", bRet=0(CBiosFun::GetItemCodeByDeviceType)",
                                         "device not support(CBiosFun::GetBiosSwitch)",
                                         kind + "(CBiosFun::GetBiosSwitch)"));
  }
}

TEST(BiosFunLog, NamesTheOperationAsThePlaceOfEveryLine) {
  const CapturedLog log;
  const auto run = simulator::Use(MachineWithSwitch(0x25, {0, 1}));
  Ask(emDEVICE_WIRELESS);   // read
  Ask(emDEVICE_BLUETOOTH);  // fails
  Ask(emDEVICE_DISPLAY);    // not supported
  EXPECT_EQ(log.Lines().size(), 9u);
  for (const auto& line : log.Lines()) {
    EXPECT_EQ(line.level, "DEBUG");
    EXPECT_EQ(line.function, "CBiosFun::GetBiosSwitch") << line.text;
    EXPECT_EQ(line.file, "src/power/biosfun.cpp");
  }
}

TEST(BiosFunLog, IsEmptyWhereDebugIsDisabled) {
  CapturedLog log;
  log.DisableDebug();
  const auto run = simulator::Use(MachineWithSwitch(0x25, {0, 0}));
  EXPECT_EQ(Ask(emDEVICE_WIRELESS), kOff);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(BiosFunLog, MayThrowWithoutHarm) {
  CapturedLog log;
  log.MakeAppenderThrow();
  const auto run = simulator::Use(MachineWithSwitch(0x25, {0, 0}));
  EXPECT_EQ(Ask(emDEVICE_WIRELESS), kOff);
}

}  // namespace
