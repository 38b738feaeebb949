#include "velmora/services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/allocations.h"

namespace {

using simulator::Fault;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmora::testing::CapturedLog;

constexpr std::uint32_t kStopped = 1;
constexpr std::uint32_t kStartPending = 2;
constexpr std::uint32_t kStopPending = 3;
constexpr std::uint32_t kRunning = 4;
constexpr std::int64_t kMillisecond = 10'000;

simulator::Machine MachineWithServices(std::vector<simulator::Service> services) {
  auto machine = simulator::BlankMachine();
  machine.services = std::move(services);
  machine.clock.emplace();
  return machine;
}

simulator::Machine MachineWithSpooler(std::uint32_t state) {
  return MachineWithServices({{.name = "Spooler", .state = state}});
}

std::uint32_t StateOfTheFirst(simulator::Run& run) { return run.machine().services->front().state; }

/// Milliseconds that have gone by on the machine.
std::int64_t Waited(simulator::Run& run) { return run.machine().clock->now / kMillisecond; }

std::vector<std::string> Repeated(const std::string& text, int times) {
  return std::vector<std::string>(static_cast<std::size_t>(times), text);
}

TEST(GetServiceState, IsTheStateInTheSystemsOwnWords) {
  const auto run = simulator::Use(MachineWithServices({{.name = "a", .state = 1},
                                                       {.name = "b", .state = 2},
                                                       {.name = "c", .state = 3},
                                                       {.name = "d", .state = 4},
                                                       {.name = "e", .state = 7}}));
  EXPECT_EQ(GetServiceState(L"a"), L"Stopped");
  EXPECT_EQ(GetServiceState(L"b"), L"Start Pending");
  EXPECT_EQ(GetServiceState(L"c"), L"Stop Pending");
  EXPECT_EQ(GetServiceState(L"d"), L"Running");
  EXPECT_EQ(GetServiceState(L"e"), L"Paused");
  EXPECT_EQ(GetServiceState(L"nosuch"), L"");
  EXPECT_EQ(GetServiceState(L""), L"");
}

TEST(GetServiceState, AsksOneQueryOverAConnectionOfItsOwn) {
  const auto run = simulator::Use(MachineWithSpooler(kRunning));
  GetServiceState(L"Spooler");
  EXPECT_THAT(run.Trace(),
              ElementsAre("CWMI(ROOT\\CIMV2)",
                          "SelectStr(SELECT State FROM Win32_Service WHERE Name='Spooler', State)"));
}

TEST(IsServiceRunning, IsTrueForTheStateRunningOnly) {
  for (const std::uint32_t state : {0U, 1U, 2U, 3U, 5U, 6U, 7U}) {
    const auto run = simulator::Use(MachineWithSpooler(state));
    EXPECT_FALSE(IsServiceRunning(L"Spooler")) << state;
  }
  const auto run = simulator::Use(MachineWithSpooler(kRunning));
  EXPECT_TRUE(IsServiceRunning(L"Spooler"));
  EXPECT_FALSE(IsServiceRunning(L"nosuch"));
  EXPECT_EQ(run.Trace()[1], "SelectStr(SELECT State FROM Win32_Service WHERE Name='Spooler', State)");
}

TEST(IsServiceRunning, IsFalseForTheWordInOtherLetterCase) {
  for (const char* const word : {"running", "RUNNING", "Running ", "Runnin"}) {
    auto machine = MachineWithServices({});
    machine.wmi = {.classes = {{"Win32_Service", {{{"Name", "Spooler"}, {"State", word}}}}}};
    const auto run = simulator::Use(machine);
    EXPECT_FALSE(IsServiceRunning(L"Spooler")) << word;
    EXPECT_NE(GetServiceState(L"Spooler"), L"");
  }
}

TEST(IsServiceExist, WantsTheNameInTheLettersThatTheServiceHas) {
  const auto run = simulator::Use(MachineWithSpooler(kStopped));
  EXPECT_TRUE(IsServiceExist(L"Spooler"));
  EXPECT_FALSE(IsServiceExist(L"spooler")) << "the system finds it, under another name";
  EXPECT_FALSE(IsServiceExist(L"Spool"));
  EXPECT_FALSE(IsServiceExist(L""));
  EXPECT_EQ(run.Trace()[1], "SelectStr(SELECT Name FROM Win32_Service WHERE Name='Spooler', Name)");
}

TEST(IsServiceExist, LogsWhatWasAskedAndFound) {
  const auto run = simulator::Use(MachineWithSpooler(kStopped));
  const CapturedLog log;
  IsServiceExist(L"Spooler");
  IsServiceExist(L"SPOOLER");
  IsServiceExist(L"n\u00F6");
  IsServiceExist(L"it's");
  EXPECT_THAT(log.Texts(),
              ElementsAre("IsServiceExist: strService=Spooler, wszName=Spooler,bRet=1IsServiceExist",
                          "IsServiceExist: strService=SPOOLER, wszName=Spooler,bRet=0IsServiceExist",
                          "IsServiceExist: strService=n\u00F6, wszName=,bRet=0IsServiceExist",
                          "IsServiceExist: strService=it's, wszName=,bRet=0IsServiceExist"));
  EXPECT_EQ(log.Lines()[0].level, "DEBUG");
}

TEST(GetWpnUserServiceExName, IsTheFirstNameThatBeginsSoAndGoesOn) {
  const auto run = simulator::Use(MachineWithServices({{.name = "WpnUserService"},
                                                       {.name = "WpnService"},
                                                       {.name = "WpnUserService_1a2b3"},
                                                       {.name = "WpnUserService_4c5d"}}));
  EXPECT_EQ(GetWpnUserServiceExName(), L"WpnUserService_1a2b3");
  EXPECT_THAT(
      run.Trace(),
      ElementsAre("CWMI(ROOT\\CIMV2)",
                  "SelectStr(SELECT Name FROM Win32_Service Where name like 'WpnUserService_%', Name)"));
}

TEST(GetWpnUserServiceExName, LogsItsAnswerAlsoTheEmptyOne) {
  const CapturedLog log;
  {
    const auto run = simulator::Use(MachineWithServices({{.name = "WpnUserService_1a2b3"}}));
    GetWpnUserServiceExName();
  }
  const auto run = simulator::Use(MachineWithServices({}));
  EXPECT_EQ(GetWpnUserServiceExName(), L"");
  EXPECT_THAT(log.Texts(), ElementsAre("GetWpnUserServiceExName: wszServiceName=WpnUserService_1a2b3",
                                       "GetWpnUserServiceExName: wszServiceName="));
}

TEST(Services, LogFromTheSourceThatHostsKnow) {
  const auto run = simulator::Use(MachineWithSpooler(kRunning));
  const CapturedLog log;
  IsServiceExist(L"Spooler");
  GetWpnUserServiceExName();
  StartServiceByName(L"Spooler");
  ASSERT_THAT(log.Lines(), SizeIs(3));
  for (const auto& line : log.Lines()) {
    EXPECT_THAT(line.file, testing::EndsWith("/devicedriver.cpp"));
    EXPECT_GT(line.line, 0);
  }
  EXPECT_EQ(log.Lines()[2].function, "StartServiceByName");
}

TEST(Services, AskNothingForANameThatWouldChangeTheQuery) {
  const auto run = simulator::Use(MachineWithServices({{.name = "Spooler", .state = kRunning}}));
  for (const std::wstring name :
       {L"it's", L"'", L"zz' OR Name LIKE '%", L"Spooler\\", L"a\\\\\\", L"Spooler'"}) {
    EXPECT_EQ(GetServiceState(name), L"");
    EXPECT_FALSE(IsServiceRunning(name));
    EXPECT_FALSE(IsServiceExist(name));
  }
  EXPECT_EQ(GetServiceState(std::wstring(L"Spooler\0", 8)), L"");
  EXPECT_THAT(run.Trace(), IsEmpty());
}

TEST(Services, AreNotStartedOrStoppedByATextOfWhichTheSystemWouldReadOnlyTheBeginning) {
  const std::wstring name(L"Spooler\0x", 9);
  for (const std::uint32_t state : {kStopped, kRunning}) {
    auto run = simulator::Use(MachineWithSpooler(state));
    EXPECT_FALSE(StartServiceByName(name));
    EXPECT_EQ(velmora::os::LastError(), 123u);
    StopServiceByName(name);
    EXPECT_THAT(run.Trace(), IsEmpty());
    EXPECT_EQ(StateOfTheFirst(run), state);
  }
}

TEST(Services, KeepTheSignsOfPatternsWithinTheirQuotes) {
  const auto run = simulator::Use(MachineWithSpooler(kRunning));
  EXPECT_EQ(GetServiceState(L"Spoole_"), L"");
  EXPECT_EQ(GetServiceState(L"%"), L"");
  EXPECT_EQ(GetServiceState(std::wstring(65536, L'x')), L"");
  EXPECT_EQ(run.Trace()[1], "SelectStr(SELECT State FROM Win32_Service WHERE Name='Spoole_', State)");
}

TEST(Services, AreNotThereWhenTheSystemAnswersNothing) {
  auto machine = MachineWithSpooler(kRunning);
  machine.wmi = {.broken = true};
  const auto run = simulator::Use(machine);
  EXPECT_EQ(GetServiceState(L"Spooler"), L"");
  EXPECT_FALSE(IsServiceRunning(L"Spooler"));
  EXPECT_FALSE(IsServiceExist(L"Spooler"));
  EXPECT_EQ(GetWpnUserServiceExName(), L"");
}

TEST(StopServiceByName, AsksTheServiceToStopAndWaitsTwoSecondsWithoutLookingAgain) {
  auto machine = MachineWithSpooler(kRunning);
  machine.services->front().state_after_stop = kStopPending;
  auto run = simulator::Use(machine);
  StopServiceByName(L"Spooler");

  std::vector<std::string> expected{"OpenSCManagerW(null, null, 0x20000000)", "OpenServiceW(Spooler, 0x34)",
                                    "QueryServiceStatus()", "ControlService(1)"};
  const auto waits = Repeated("Sleep(100)", 20);
  expected.insert(expected.end(), waits.begin(), waits.end());
  expected.insert(expected.end(), {"CloseServiceHandle()", "CloseServiceHandle()"});
  EXPECT_EQ(run.Trace(), expected);
  EXPECT_EQ(Waited(run), 2000);
  EXPECT_EQ(StateOfTheFirst(run), kStopPending);
}

TEST(StopServiceByName, WaitsAlsoWhenTheServiceStopsMeanwhile) {
  auto machine = MachineWithSpooler(kRunning);
  machine.services->front().state_after_stop = kStopPending;
  auto run = simulator::Use(machine);
  run.BeforeCall(6, [](simulator::Machine& now) { now.services->front().state = kStopped; });
  StopServiceByName(L"Spooler");
  EXPECT_EQ(Waited(run), 2000);
}

TEST(StopServiceByName, DoesNotWaitWhenTheServiceReportsItselfStoppedAtOnce) {
  auto run = simulator::Use(MachineWithSpooler(kRunning));
  StopServiceByName(L"Spooler");
  EXPECT_EQ(Waited(run), 0);
  EXPECT_EQ(StateOfTheFirst(run), kStopped);
}

TEST(StopServiceByName, LeavesAServiceAloneThatDoesNotRun) {
  for (const std::uint32_t state : {kStopped, kStartPending, kStopPending, std::uint32_t{7}}) {
    auto run = simulator::Use(MachineWithSpooler(state));
    StopServiceByName(L"Spooler");
    EXPECT_EQ(run.Calls("ControlService"), 0) << state;
    EXPECT_EQ(Waited(run), 0);
    EXPECT_EQ(StateOfTheFirst(run), state);
  }
}

TEST(StopServiceByName, ReturnsAtOnceWhenAStepFails) {
  {
    auto run = simulator::Use(MachineWithSpooler(kRunning));
    StopServiceByName(L"nosuch");
    EXPECT_THAT(run.Trace(), ElementsAre("OpenSCManagerW(null, null, 0x20000000)",
                                         "OpenServiceW(nosuch, 0x34)", "CloseServiceHandle()"));
  }
  {
    auto run = simulator::Use(MachineWithSpooler(kRunning));
    run.Inject(Fault::kFail, 0);
    StopServiceByName(L"Spooler");
    EXPECT_THAT(run.Trace(), SizeIs(1));
  }
  for (const char* const step : {"query", "stop"}) {
    auto machine = MachineWithSpooler(kRunning);
    auto& service = machine.services->front();
    (step == std::string("query") ? service.query_error : service.stop_error) = 5;
    auto run = simulator::Use(machine);
    StopServiceByName(L"Spooler");
    EXPECT_EQ(Waited(run), 0) << step;
    EXPECT_EQ(StateOfTheFirst(run), kRunning) << step;
  }
}

TEST(StopServiceByName, LogsNothing) {
  const auto run = simulator::Use(MachineWithSpooler(kRunning));
  const CapturedLog log;
  StopServiceByName(L"Spooler");
  EXPECT_THAT(log.Texts(), IsEmpty());
}

TEST(StartServiceByName, AsksTheServiceToStartAndWaitsTwoSecondsWithoutLookingAgain) {
  auto run = simulator::Use(MachineWithSpooler(kStopped));
  EXPECT_TRUE(StartServiceByName(L"Spooler"));

  std::vector<std::string> expected{"OpenSCManagerW(null, null, 0x20000000)", "OpenServiceW(Spooler, 0x34)",
                                    "QueryServiceStatus()", "StartServiceW(0, null)"};
  const auto waits = Repeated("Sleep(100)", 20);
  expected.insert(expected.end(), waits.begin(), waits.end());
  expected.insert(expected.end(), {"CloseServiceHandle()", "CloseServiceHandle()"});
  EXPECT_EQ(run.Trace(), expected);
  EXPECT_EQ(Waited(run), 2000);
  EXPECT_EQ(StateOfTheFirst(run), kRunning);
}

TEST(StartServiceByName, IsTrueAtOnceForAServiceThatRuns) {
  auto run = simulator::Use(MachineWithSpooler(kRunning));
  EXPECT_TRUE(StartServiceByName(L"Spooler"));
  EXPECT_EQ(run.Calls("StartServiceW"), 0);
  EXPECT_EQ(Waited(run), 0);
}

TEST(StartServiceByName, IsTrueForAnAcceptedStartAlsoWhenTheServiceThenFails) {
  auto machine = MachineWithSpooler(kStopped);
  machine.services->front().state_after_start = kStopped;
  auto run = simulator::Use(machine);
  EXPECT_TRUE(StartServiceByName(L"Spooler"));
  EXPECT_EQ(Waited(run), 2000);
  EXPECT_EQ(StateOfTheFirst(run), kStopped);
}

TEST(StartServiceByName, LogsItsResultAndTheErrorOfTheStepThatFailed) {
  const CapturedLog log;
  const auto start = [](const simulator::Service& service, const wchar_t* name) {
    auto run = simulator::Use(MachineWithServices({service}));
    velmora::os::SetLastError(77);
    const bool result = StartServiceByName(name);
    EXPECT_LE(Waited(run), result ? 2000 : 0);
    return result;
  };
  EXPECT_TRUE(start({.name = "Spooler", .state = kRunning}, L"Spooler"));
  EXPECT_TRUE(start({.name = "Spooler"}, L"Spooler"));
  EXPECT_FALSE(start({.name = "Spooler"}, L"nosuch"));
  EXPECT_FALSE(start({.name = "Spooler", .open_error = 5}, L"Spooler"));
  EXPECT_FALSE(start({.name = "Spooler", .query_error = 6}, L"Spooler"));
  EXPECT_FALSE(start({.name = "Spooler", .start_error = 1058}, L"Spooler"));
  {
    auto run = simulator::Use(MachineWithSpooler(kStopped));
    run.Inject(Fault::kFail, 0);
    EXPECT_FALSE(StartServiceByName(L"Spooler"));
  }
  EXPECT_THAT(log.Texts(), ElementsAre("StartServiceByName: bRet=1, LastError=0StartServiceByName",
                                       "StartServiceByName: bRet=1, LastError=0StartServiceByName",
                                       "StartServiceByName: bRet=0, LastError=1060StartServiceByName",
                                       "StartServiceByName: bRet=0, LastError=5StartServiceByName",
                                       "StartServiceByName: bRet=0, LastError=6StartServiceByName",
                                       "StartServiceByName: bRet=0, LastError=1058StartServiceByName",
                                       "StartServiceByName: bRet=0, LastError=31StartServiceByName"));
}

TEST(StartServiceByName, ClosesTheManagerBeforeTheService) {
  auto run = simulator::Use(MachineWithSpooler(kRunning));
  run.Inject(Fault::kFail, 3);  // closing the first handle, which is closed all the same
  EXPECT_TRUE(StartServiceByName(L"Spooler"));
  EXPECT_EQ(run.Calls("CloseServiceHandle"), 2);
  EXPECT_EQ(run.OpenHandles(), 0);
}

TEST(Services, GiveTheirFailureValuesWhenMemoryRunsOut) {
  const auto run = simulator::Use(MachineWithSpooler(kRunning));
  const std::wstring name = L"Spooler";
  const auto states = velmora::testing::WithEachAllocationFailing([&] { return GetServiceState(name); });
  EXPECT_EQ(states.back(), L"Running");
  EXPECT_THAT(std::vector(states.begin(), states.end() - 1), Each(std::wstring()));
}

}  // namespace
