#include "platform/os/service_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using simulator::Service;
using testing::ElementsAre;
using velmora::testing::CapturedProblems;

constexpr std::uint32_t kAllRights = 0x34;

simulator::Machine MachineWithService(const Service& service) {
  auto machine = simulator::BlankMachine();
  machine.services = {service};
  return machine;
}

/// The service "Spooler" opened with `access` over a manager.
struct Opened {
  explicit Opened(std::uint32_t access = kAllRights)
      : manager(OpenSCManagerW(nullptr, nullptr, 0x20000000)),
        service(OpenServiceW(manager, L"spooler", access)) {}
  ~Opened() {
    if (service != nullptr) CloseServiceHandle(service);
    CloseServiceHandle(manager);
  }
  ServiceHandle manager;
  ServiceHandle service;
  ServiceStatus status{};
};

TEST(SimulatedServices, StartAndStop) {
  auto run = simulator::Use(MachineWithService({.name = "Spooler"}));
  {
    Opened opened;
    EXPECT_TRUE(StartServiceW(opened.service, 0, nullptr));
    EXPECT_TRUE(QueryServiceStatus(opened.service, opened.status));
    EXPECT_EQ(opened.status.current_state, 4u);
    EXPECT_FALSE(StartServiceW(opened.service, 0, nullptr));
    EXPECT_EQ(LastError(), 1056u);
    EXPECT_TRUE(ControlService(opened.service, 1, opened.status));
    EXPECT_EQ(opened.status.current_state, 1u);
    EXPECT_FALSE(ControlService(opened.service, 1, opened.status));
    EXPECT_EQ(LastError(), 1062u);
  }
  EXPECT_THAT(run.Trace(), ElementsAre("OpenSCManagerW(null, null, 0x20000000)",
                                       "OpenServiceW(spooler, 0x34)", "StartServiceW(0, null)",
                                       "QueryServiceStatus()", "StartServiceW(0, null)", "ControlService(1)",
                                       "ControlService(1)", "CloseServiceHandle()", "CloseServiceHandle()"));
}

TEST(SimulatedServices, GoWhereTheMachineSays) {
  const auto run = simulator::Use(
      MachineWithService({.name = "Spooler", .state = 4, .state_after_start = 2, .state_after_stop = 3}));
  Opened opened;
  EXPECT_TRUE(ControlService(opened.service, 1, opened.status));
  EXPECT_EQ(opened.status.current_state, 3u);
  EXPECT_TRUE(StartServiceW(opened.service, 0, nullptr));
  EXPECT_TRUE(QueryServiceStatus(opened.service, opened.status));
  EXPECT_EQ(opened.status.current_state, 2u);
}

TEST(SimulatedServices, FailWithTheScriptedErrors) {
  const auto run = simulator::Use(MachineWithService(
      {.name = "Spooler", .state = 7, .query_error = 31, .start_error = 1058, .stop_error = 1051}));
  Opened opened;
  EXPECT_FALSE(QueryServiceStatus(opened.service, opened.status));
  EXPECT_EQ(LastError(), 31u);
  EXPECT_FALSE(StartServiceW(opened.service, 0, nullptr));
  EXPECT_EQ(LastError(), 1058u);
  EXPECT_FALSE(ControlService(opened.service, 1, opened.status));
  EXPECT_EQ(LastError(), 1051u);
  EXPECT_EQ(opened.status.current_state, 7u) << "a refused stop tells the state, too";
}

TEST(SimulatedServices, AreNotOpenedWhenAbsentOrDenied) {
  auto machine = MachineWithService({.name = "Other"});
  machine.services->push_back({.name = "Denied", .open_error = 5});
  const auto run = simulator::Use(machine);
  const ServiceHandle manager = OpenSCManagerW(nullptr, nullptr, 0);
  EXPECT_EQ(OpenServiceW(manager, L"Spooler", kAllRights), nullptr);
  EXPECT_EQ(LastError(), 1060u);
  EXPECT_EQ(OpenServiceW(manager, L"Denied", kAllRights), nullptr);
  EXPECT_EQ(LastError(), 5u);
  CloseServiceHandle(manager);
}

TEST(SimulatedServices, DemandTheRightForEachRequest) {
  const auto run = simulator::Use(MachineWithService({.name = "Spooler", .state = 4}));
  Opened opened(0x4);
  EXPECT_TRUE(QueryServiceStatus(opened.service, opened.status));
  EXPECT_FALSE(ControlService(opened.service, 1, opened.status));
  EXPECT_EQ(LastError(), kErrorAccessDenied);
  EXPECT_FALSE(StartServiceW(opened.service, 0, nullptr));
}

TEST(SimulatedServices, ReportHandlesThatAreMisused) {
  const CapturedProblems captured;
  {
    const auto run = simulator::Use(MachineWithService({.name = "Spooler"}));
    const ServiceHandle manager = OpenSCManagerW(nullptr, nullptr, 0);
    ServiceStatus status{};
    EXPECT_FALSE(QueryServiceStatus(manager, status));
    EXPECT_TRUE(CloseServiceHandle(manager));
    EXPECT_FALSE(CloseServiceHandle(manager));
    EXPECT_EQ(OpenServiceW(manager, L"Spooler", 4), nullptr);
    OpenSCManagerW(nullptr, nullptr, 0);
  }
  EXPECT_THAT(captured.Problems(),
              ElementsAre("QueryServiceStatus was given a handle that is not open",
                          "CloseServiceHandle was given a handle that is not open",
                          "OpenServiceW was given a handle that is not open", "handles left open: 1"));
}

TEST(SimulatedServices, GoWrongAsATestWishes) {
  auto run = simulator::Use(MachineWithService({.name = "Spooler", .state = 4}));
  Opened opened;
  run.Inject(Fault::kFail, 0, true);
  EXPECT_FALSE(QueryServiceStatus(opened.service, opened.status));
  EXPECT_EQ(OpenSCManagerW(nullptr, nullptr, 0), nullptr);
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_TRUE(QueryServiceStatus(opened.service, opened.status));
  EXPECT_EQ(opened.status.current_state, 0u);
  EXPECT_TRUE(ControlService(opened.service, 1, opened.status));
  EXPECT_EQ(run.machine().services->front().state, 4u);
  run.Inject(Fault::kThrow, 0, true);
  EXPECT_THROW(StartServiceW(opened.service, 0, nullptr), simulator::InjectedFault);
}

TEST(SimulatedServices, CloseTheirHandlesAlsoWhenClosingFails) {
  auto run = simulator::Use(MachineWithService({.name = "Spooler"}));
  const ServiceHandle manager = OpenSCManagerW(nullptr, nullptr, 0);
  run.Inject(Fault::kThrow, 0, true);
  EXPECT_FALSE(CloseServiceHandle(manager)) << "a closing call does not throw";
  EXPECT_EQ(run.OpenHandles(), 0);
}

}  // namespace
