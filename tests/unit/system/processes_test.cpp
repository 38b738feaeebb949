/// Finding and ending processes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "simulator/run.h"
#include "tests/support/simulator/allocations.h"
#include "velmora/services.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsFalse;
using testing::SizeIs;

simulator::Machine MachineWithProcesses(std::vector<simulator::Process> processes) {
  auto machine = simulator::BlankMachine();
  machine.processes = std::move(processes);
  return machine;
}

TEST(KillProcByName, EndsTheFirstOfSeveralAndLeavesTheOthers) {
  auto run = simulator::Use(MachineWithProcesses({{.process_id = 4, .caption = "System"},
                                                  {.process_id = 40, .caption = "dump.exe"},
                                                  {.process_id = 44, .caption = "dump.exe"}}));
  EXPECT_TRUE(KillProcByName(L"dump.exe"));
  EXPECT_THAT(
      run.Trace(),
      ElementsAre("CWMI(ROOT\\CIMV2)",
                  "SelectUInt(SELECT ProcessId FROM Win32_Process WHERE Caption='dump.exe', ProcessId)",
                  "OpenProcess(0x1, 0, 40)", "TerminateProcess(0)", "CloseHandle()"));
  ASSERT_THAT(*run.machine().processes, SizeIs(2));
  EXPECT_EQ(run.machine().processes->at(1).process_id, 44U);
}

TEST(KillProcByName, IsTrueAlsoWhenTheProcessDoesNotEnd) {
  auto run =
      simulator::Use(MachineWithProcesses({{.process_id = 40, .caption = "dump.exe", .end_error = 5}}));
  EXPECT_TRUE(KillProcByName(L"dump.exe"));
  EXPECT_THAT(*run.machine().processes, SizeIs(1));
  EXPECT_EQ(run.OpenHandles(), 0);
}

TEST(KillProcByName, IsFalseWithoutSuchAProcessAndWithoutTheRight) {
  auto run =
      simulator::Use(MachineWithProcesses({{.process_id = 40, .caption = "guarded.exe", .open_error = 5},
                                           {.process_id = 0, .caption = "System Idle Process"}}));
  EXPECT_FALSE(KillProcByName(L"dump.exe"));
  EXPECT_FALSE(KillProcByName(L"System Idle Process"));
  EXPECT_EQ(run.Calls("OpenProcess"), 0);
  EXPECT_FALSE(KillProcByName(L"guarded.exe"));
  EXPECT_EQ(run.Calls("TerminateProcess"), 0);
}

TEST(KillProcByName, IsFalseForAProcessThatEndsBeforeItIsOpened) {
  auto run = simulator::Use(MachineWithProcesses({{.process_id = 40, .caption = "dump.exe"}}));
  run.BeforeCall(2, [](simulator::Machine& now) { now.processes->clear(); });
  EXPECT_FALSE(KillProcByName(L"dump.exe"));
  EXPECT_EQ(run.Calls("TerminateProcess"), 0);
}

TEST(KillProcByName, IsFalseForAProcessWhoseNumberIsAnothersBeforeItIsOpened) {
  auto run = simulator::Use(MachineWithProcesses({{.process_id = 40, .caption = "dump.exe"}}));
  run.BeforeCall(2, [](simulator::Machine& now) { now.processes->front().caption = "session.exe"; });
  EXPECT_FALSE(KillProcByName(L"dump.exe"));
  EXPECT_EQ(run.Calls("TerminateProcess"), 0);
  EXPECT_EQ(run.OpenHandles(), 0);
}

TEST(KillProcByName, AsksNothingAndEndsNothingForANameThatWouldChangeTheQuery) {
  auto run = simulator::Use(
      MachineWithProcesses({{.process_id = 40, .caption = "it's.exe"}, {.process_id = 44, .caption = "zz"}}));
  for (const std::wstring name : {L"it's.exe", L"zz' OR Name LIKE '%", L"zz\\", L"'"}) {
    EXPECT_FALSE(KillProcByName(name));
    EXPECT_FALSE(IsProcessRunning(name));
  }
  EXPECT_FALSE(KillProcByName(L"%"));
  EXPECT_FALSE(KillProcByName(L""));
  EXPECT_EQ(run.Calls("CWMI"), 2) << "for the two names that can be asked";
  EXPECT_THAT(*run.machine().processes, SizeIs(2));
}

TEST(IsProcessRunning, IsTrueForAProcessOfThatCaptionInEitherLetterCase) {
  const auto run = simulator::Use(MachineWithProcesses({{.process_id = 40, .caption = "Dump.exe"}}));
  EXPECT_TRUE(IsProcessRunning(L"Dump.exe"));
  EXPECT_TRUE(IsProcessRunning(L"dump.EXE"));
  EXPECT_FALSE(IsProcessRunning(L"dump"));
  EXPECT_EQ(run.Trace()[1], "SelectStr(SELECT Caption FROM Win32_Process WHERE Caption='Dump.exe', Caption)");
}

TEST(IsProcUnsecappExist, IsTrueForTheOneInTheSystemsFolderOnly) {
  const auto exists = [](const char* path) {
    const auto run = simulator::Use(
        MachineWithProcesses({{.process_id = 40, .caption = "unsecapp.exe", .executable_path = path}}));
    return IsProc_unsecapp_Exist();
  };
  EXPECT_TRUE(exists("C:\\Windows\\system32\\wbem\\unsecapp.exe"));
  EXPECT_FALSE(exists("C:\\WINDOWS\\system32\\wbem\\unsecapp.exe"));
  EXPECT_FALSE(exists("C:\\Windows\\System32\\wbem\\unsecapp.exe"));
  EXPECT_FALSE(exists("C:\\Temp\\unsecapp.exe"));
  EXPECT_FALSE(exists(""));
}

TEST(IsProcUnsecappExist, LooksAtTheFirstOfThatName) {
  const auto run = simulator::Use(MachineWithProcesses(
      {{.process_id = 40, .caption = "unsecapp.exe", .executable_path = "C:\\Temp\\unsecapp.exe"},
       {.process_id = 44,
        .caption = "unsecapp.exe",
        .executable_path = "C:\\Windows\\system32\\wbem\\unsecapp.exe"}}));
  EXPECT_FALSE(IsProc_unsecapp_Exist());
  EXPECT_THAT(run.Trace(),
              ElementsAre("CWMI(ROOT\\CIMV2)",
                          "SelectStr(SELECT ExecutablePath FROM Win32_Process WHERE Caption='unsecapp.exe', "
                          "ExecutablePath)"));
}

TEST(Processes, AreNotThereWhenMemoryRunsOut) {
  const auto run = simulator::Use(MachineWithProcesses({{.process_id = 40, .caption = "x"}}));
  // So short a name is handed over without an allocation of the caller's own.
  const auto results = velmora::testing::WithEachAllocationFailing([] { return IsProcessRunning(L"x"); });
  EXPECT_TRUE(results.back());
  EXPECT_THAT(std::vector<bool>(results.begin(), results.end() - 1), Each(IsFalse()));
}

}  // namespace
