#include "platform/os/processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/os/last_error.h"
#include "platform/ostrine/wmi.h"
#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using testing::ElementsAre;

simulator::Machine MachineWithTwoProcesses() {
  auto machine = simulator::BlankMachine();
  machine.processes = {{.process_id = 12, .caption = "a.exe"}, {.process_id = 16, .caption = "a.exe"}};
  return machine;
}

TEST(SimulatedProcesses, AreEndedThroughAHandle) {
  auto run = simulator::Use(MachineWithTwoProcesses());
  const Handle process = OpenProcess(1, false, 12, L"a.exe");
  ASSERT_NE(process, nullptr);
  EXPECT_TRUE(TerminateProcess(process, 0));
  EXPECT_FALSE(TerminateProcess(process, 0)) << "it is gone";
  EXPECT_TRUE(CloseHandle(process));
  ASSERT_EQ(run.machine().processes->size(), 1u);
  EXPECT_EQ(run.machine().processes->front().process_id, 16u);
  EXPECT_THAT(run.Trace(), ElementsAre("OpenProcess(0x1, 0, 12)", "TerminateProcess(0)",
                                       "TerminateProcess(0)", "CloseHandle()"));
}

TEST(SimulatedProcesses, AreNotOpenedWhenAbsentOrDenied) {
  auto machine = MachineWithTwoProcesses();
  machine.processes->front().open_error = 5;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(OpenProcess(1, false, 12, L"a.exe"), nullptr);
  EXPECT_EQ(LastError(), 5u);
  EXPECT_EQ(OpenProcess(1, false, 13, L"a.exe"), nullptr);
  EXPECT_EQ(LastError(), 87u);
  EXPECT_EQ(OpenProcess(1, false, 16, L"b.exe"), nullptr) << "the number is another's";
  EXPECT_EQ(LastError(), 87u);
}

TEST(SimulatedProcesses, StayWhenTheyRefuseOrTheRightIsMissing) {
  auto machine = MachineWithTwoProcesses();
  machine.processes->front().end_error = 5;
  auto run = simulator::Use(machine);
  const Handle refusing = OpenProcess(1, false, 12, L"a.exe");
  const Handle without_right = OpenProcess(0x400, false, 16, L"a.exe");
  EXPECT_FALSE(TerminateProcess(refusing, 0));
  EXPECT_FALSE(TerminateProcess(without_right, 0));
  EXPECT_EQ(LastError(), kErrorAccessDenied);
  CloseHandle(refusing);
  CloseHandle(without_right);
  EXPECT_EQ(run.machine().processes->size(), 2u);
}

TEST(SimulatedProcesses, AreStartedFromProgramFiles) {
  auto machine = MachineWithTwoProcesses();
  machine.files = {{.path = "C:\\run.exe", .program = true},
                   {.path = "C:\\text.txt"},
                   {.path = "C:\\denied.exe", .program = true, .start_error = 5}};
  auto run = simulator::Use(machine);
  const StartupInfo startup{.size = sizeof startup};
  ProcessInformation information{};
  EXPECT_FALSE(CreateProcessW(L"C:\\text.txt", nullptr, false, 0, startup, information));
  EXPECT_EQ(LastError(), 193u);
  EXPECT_FALSE(CreateProcessW(L"C:\\none.exe", nullptr, false, 0, startup, information));
  EXPECT_EQ(LastError(), 2u);
  EXPECT_FALSE(CreateProcessW(L"C:\\denied.exe", nullptr, false, 0, startup, information));
  EXPECT_EQ(LastError(), 5u);
  EXPECT_EQ(information.process, nullptr);

  ASSERT_TRUE(CreateProcessW(L"c:\\RUN.exe", nullptr, false, 0x08000000, startup, information));
  EXPECT_EQ(run.Trace().back(), "CreateProcessW(c:\\RUN.exe, null, 0, 0x8000000, 104)");
  EXPECT_EQ(run.OpenHandles(), 2);
  EXPECT_TRUE(CloseHandle(information.process));
  EXPECT_TRUE(CloseHandle(information.thread));
  EXPECT_EQ(run.machine().processes->back().caption, "RUN.exe");
  EXPECT_EQ(run.machine().processes->back().process_id, information.process_id);
}

TEST(SimulatedProcesses, GoWrongAsATestWishes) {
  auto run = simulator::Use(MachineWithTwoProcesses());
  ProcessInformation information{};
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_TRUE(CreateProcessW(L"C:\\run.exe", nullptr, false, 0, {}, information));
  EXPECT_EQ(information.process, nullptr) << "success without handles";
  SetLastError(77);
  EXPECT_EQ(OpenProcess(1, false, 12, L"a.exe"), nullptr);
  EXPECT_EQ(LastError(), 77u);
  run.Inject(Fault::kThrow, 0, true);
  EXPECT_THROW(OpenProcess(1, false, 12, L"a.exe"), simulator::InjectedFault);
}

TEST(SimulatedProcesses, GiveTheInputHandleWhichNobodyCloses) {
  auto run = simulator::Use(MachineWithTwoProcesses());
  EXPECT_NE(GetStdHandle(0xFFFFFFF6), nullptr);
  EXPECT_EQ(run.OpenHandles(), 0);
  run.Inject(Fault::kFail, 0, true);
  EXPECT_EQ(GetStdHandle(0xFFFFFFF6), nullptr);
}

TEST(SimulatedHandles, AreClosedByTheirOwnFunctionOnly) {
  const velmora::testing::CapturedProblems captured;
  const auto run = simulator::Use(MachineWithTwoProcesses());
  EXPECT_FALSE(CloseHandle(reinterpret_cast<Handle>(0x42)));
  EXPECT_EQ(LastError(), kErrorInvalidHandle);
  EXPECT_THAT(captured.Problems(), ElementsAre("CloseHandle was given a handle that is not open"));
}

}  // namespace
