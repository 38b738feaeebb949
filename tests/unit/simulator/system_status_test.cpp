#include "platform/os/system_status.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/os/clock.h"
#include "platform/os/last_error.h"
#include "platform/ostrine/stringproc.h"
#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using testing::ElementsAre;

TEST(SimulatedPower, FailsAsOftenAsTheMachineSays) {
  auto machine = simulator::BlankMachine();
  machine.power = {.fails_next = 2, .ac_line_status = 1, .battery_life_percent = 77};
  const auto run = simulator::Use(machine);
  PowerStatus status{};
  EXPECT_FALSE(GetSystemPowerStatus(status));
  EXPECT_FALSE(GetSystemPowerStatus(status));
  EXPECT_EQ(status.battery_life_percent, 0u);
  EXPECT_TRUE(GetSystemPowerStatus(status));
  EXPECT_EQ(status.battery_life_percent, 77u);
  EXPECT_EQ(status.ac_line_status, 1u);
}

TEST(SimulatedPower, GoesWrongAsATestWishes) {
  auto run = simulator::Use(simulator::EmptyMachine());
  PowerStatus status{};
  run.Inject(Fault::kFail, 0, true);
  EXPECT_FALSE(GetSystemPowerStatus(status));
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_TRUE(GetSystemPowerStatus(status));
  EXPECT_EQ(status.battery_life_percent, 0u);
}

TEST(SimulatedMemoryStatus, DemandsItsLength) {
  auto machine = simulator::BlankMachine();
  machine.memory_status = {.load_percent = 42, .total_physical = 16'000'000'000};
  auto run = simulator::Use(machine);
  MemoryStatus status{};
  EXPECT_FALSE(GlobalMemoryStatusEx(status));
  EXPECT_EQ(LastError(), 87u);
  status.length = sizeof status;
  EXPECT_TRUE(GlobalMemoryStatusEx(status));
  EXPECT_EQ(status.memory_load, 42u);
  EXPECT_EQ(status.total_physical, 16'000'000'000u);
  run.machine().memory_status->error = 31;
  EXPECT_FALSE(GlobalMemoryStatusEx(status));
}

TEST(SimulatedClock, IsAdvancedBySleepingAndByNothingElse) {
  auto machine = simulator::BlankMachine();
  machine.clock = {.now = 1'000'000};
  const auto run = simulator::Use(machine);
  EXPECT_EQ(SystemTime(), 1'000'000);
  Sleep(2'000);
  EXPECT_EQ(SystemTime(), 1'000'000 + 20'000'000);
  EXPECT_THAT(run.Trace(), ElementsAre("SystemTime()", "Sleep(2000)", "SystemTime()"));
}

TEST(SimulatedClock, ThatIsNotScriptedIsReportedButMayBeSleptOn) {
  const velmora::testing::CapturedProblems captured;
  const auto run = simulator::Use(simulator::BlankMachine());
  Sleep(100);
  SystemTime();
  EXPECT_THAT(captured.Problems(),
              ElementsAre("SystemTime was called, but the machine has no script for the clock"));
}

TEST(SimulatedStringProc, WidensUtf8) {
  auto run = simulator::Use(simulator::BlankMachine());
  EXPECT_EQ(StringProc::StringToWString("B\xC3\xBCro"), L"B\x00FCro");
  run.Inject(Fault::kFail, 0, true);
  EXPECT_EQ(StringProc::StringToWString("abc"), L"");
  run.Inject(Fault::kUnterminated, 0, true);
  EXPECT_GT(StringProc::StringToWString("abc").size(), 65'536u);
}

}  // namespace
