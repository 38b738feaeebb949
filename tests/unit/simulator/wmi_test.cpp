#include "platform/ostrine/wmi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "simulator/wmi_tables.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::testing::CapturedProblems;

const std::wstring kCaptionQuery = L"SELECT Caption FROM Win32_Process WHERE Caption='a.exe'";

simulator::Machine MachineWithProcess() {
  auto machine = simulator::BlankMachine();
  machine.processes = {{.process_id = 12, .caption = "a.exe"}};
  return machine;
}

TEST(SimulatedWmi, ListsProcessesAsTheyAreNow) {
  auto run = simulator::Use(MachineWithProcess());
  CWMI wmi(L"root\\cimv2");
  EXPECT_EQ(wmi.SelectStr(kCaptionQuery, L"Caption"), L"a.exe");
  run.machine().processes->clear();
  EXPECT_EQ(wmi.SelectStr(kCaptionQuery, L"Caption"), L"");
}

TEST(SimulatedWmi, PutsScriptedRowsBehindThoseOfTheProcesses) {
  auto machine = MachineWithProcess();
  machine.wmi.emplace().classes["Win32_Process"] = {{{"Caption", "b.exe"}}};
  const auto run = simulator::Use(machine);
  CWMI wmi(L"ROOT\\CIMV2");
  EXPECT_EQ(wmi.SelectStr(L"SELECT Caption FROM Win32_Process", L"Caption"), L"a.exe");
  EXPECT_EQ(wmi.SelectStr(L"SELECT Caption FROM Win32_Process WHERE ProcessId IS NULL", L"Caption"),
            L"b.exe");
}

TEST(SimulatedWmi, IsTracedWithItsTexts) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  {
    CWMI wmi(L"ROOT\\CIMV2");
    wmi.SelectStr(kCaptionQuery, L"Caption");
    wmi.SelectUInt(L"SELECT ProcessId FROM Win32_Process", L"ProcessId");
    std::array<unsigned char, 256> output{};
    wmi.GetOutPutUInt(0x250105, output.data(), 256);
  }
  EXPECT_THAT(run.Trace(), ElementsAre("CWMI(ROOT\\CIMV2)",
                                       "SelectStr(SELECT Caption FROM Win32_Process WHERE "
                                       "Caption='a.exe', Caption)",
                                       "SelectUInt(SELECT ProcessId FROM Win32_Process, ProcessId)",
                                       "GetOutPutUInt(0x250105, 256)"));
}

TEST(SimulatedWmi, AnswersNothingWhereTheServiceIsBroken) {
  auto machine = MachineWithProcess();
  machine.wmi = {.broken = true};
  const auto run = simulator::Use(machine);
  EXPECT_EQ(CWMI(L"ROOT\\CIMV2").SelectStr(kCaptionQuery, L"Caption"), L"");
}

TEST(SimulatedWmi, ReportsAClassThatIsNotScripted) {
  const CapturedProblems captured;
  const auto run = simulator::Use(MachineWithProcess());
  CWMI wmi(L"ROOT\\CIMV2");
  wmi.SelectStr(L"SELECT State FROM Win32_Service", L"State");
  EXPECT_THAT(captured.Problems(),
              ElementsAre("SelectStr was called, but the machine has no script for WMI class Win32_Service"));
}

TEST(SimulatedWmi, GivesOutputAndErrorsOfTheFirmware) {
  auto machine = simulator::BlankMachine();
  machine.firmware = {{.input = 1, .output = {{7, 8}}}, {.input = 2, .error = 1359}};
  const auto run = simulator::Use(machine);
  CWMI wmi(L"ROOT\\WMI");
  std::array<unsigned char, 4> output{};
  EXPECT_TRUE(wmi.GetOutPutUInt(1, output.data(), output.size()));
  EXPECT_THAT(output, ElementsAre(7, 8, 0, 0));
  EXPECT_FALSE(wmi.GetOutPutUInt(2, output.data(), output.size()));
  EXPECT_EQ(velmora::os::LastError(), 1359u);
  EXPECT_FALSE(wmi.GetOutPutUInt(3, output.data(), output.size()));
  EXPECT_EQ(velmora::os::LastError(), velmora::os::kErrorNotSupported);
}

TEST(SimulatedWmi, GoesWrongAsATestWishes) {
  auto machine = MachineWithProcess();
  machine.firmware.emplace();
  auto run = simulator::Use(machine);
  CWMI wmi(L"ROOT\\WMI");
  std::array<unsigned char, 4> output{};
  const auto ask = [&] { return wmi.GetOutPutUInt(1, output.data(), output.size()); };

  run.Inject(Fault::kFail, 0, true);
  EXPECT_FALSE(ask());
  EXPECT_EQ(CWMI(L"ROOT\\CIMV2").SelectStr(kCaptionQuery, L"Caption"), L"");
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_TRUE(ask());
  EXPECT_THAT(output, ElementsAre(0, 0, 0, 0));
  run.Inject(Fault::kUnterminated, 0, true);
  EXPECT_TRUE(ask());
  EXPECT_THAT(output, ElementsAre('A', 'A', 'A', 'A'));
  EXPECT_EQ(wmi.SelectUInt(L"", L""), 0xFFFFFFFFu);
  EXPECT_GT(wmi.SelectStr(L"", L"").size(), 65'536u);
  run.Inject(Fault::kThrow, 0, true);
  EXPECT_THROW(CWMI(L"ROOT\\CIMV2"), simulator::InjectedFault);
}

TEST(SimulatedWmi, CountsAConnectionThatIsNeverReleasedAsAnOpenHandle) {
  const CapturedProblems captured;
  {
    const auto run = simulator::Use(simulator::EmptyMachine());
    alignas(CWMI) static std::array<unsigned char, sizeof(CWMI)>
        bytes;  // stays, and what it holds is no leak
    auto* never_destroyed = new (bytes.data()) CWMI(L"ROOT\\WMI");
    (void)never_destroyed;
    EXPECT_GT(run.OpenHandles(), 0);
  }
  EXPECT_THAT(captured.Problems(), ElementsAre("handles left open: 2"));
}

TEST(SimulatedWmi, ReportsAConnectionThatIsReleasedTooOften) {
  const CapturedProblems captured;
  const auto run = simulator::Use(simulator::EmptyMachine());
  {
    CWMI wmi(L"ROOT\\WMI");
    ConnectionPart* part = nullptr;
    std::memcpy(&part, &wmi, sizeof part);
    part->Release();
  }
  EXPECT_THAT(captured.Problems(), ElementsAre("a connection was released too often"));
}

}  // namespace
