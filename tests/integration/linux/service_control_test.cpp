#include "platform/os/service_control.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <optional>

#include "platform/os/last_error.h"
#include "tests/integration/linux/mock_bus.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kExecute = 0x20000000;
constexpr std::uint32_t kQueryStartStop = 0x34;

class ServiceControl : public testing::Test {
 protected:
  void AddUnit(const char* name, const char* active_state, const char* load_state = "loaded") {
    systemd_.Call(test::kMockControl, "AddMockUnit", {name, load_state, active_state});
  }
  ServiceHandle Open(const wchar_t* name, std::uint32_t access = kQueryStartStop) {
    manager_ = OpenSCManagerW(nullptr, nullptr, kExecute);
    EXPECT_NE(manager_, nullptr);
    service_ = OpenServiceW(manager_, name, access);
    return service_;
  }
  std::uint32_t StateOf(const wchar_t* name) {
    ServiceStatus status{};
    EXPECT_TRUE(QueryServiceStatus(Open(name), status));
    Close();
    return status.current_state;
  }
  void Close() {
    for (ServiceHandle* handle : {&service_, &manager_}) {
      EXPECT_TRUE(*handle == nullptr || CloseServiceHandle(*handle));
      *handle = nullptr;
    }
  }
  void TearDown() override { Close(); }

  test::PrivateBus bus_;
  test::MockService systemd_{VELMORA_TEST_FILES "/systemd_mock.py", "org.freedesktop.systemd1",
                             "/org/freedesktop/systemd1"};
  ServiceHandle manager_ = nullptr;
  ServiceHandle service_ = nullptr;
};

TEST_F(ServiceControl, TellsTheStateOfAServiceByItsNumber) {
  AddUnit("up.service", "active");
  AddUnit("down.service", "inactive");
  AddUnit("broken.service", "failed");
  AddUnit("rising.service", "activating");
  AddUnit("falling.service", "deactivating");
  AddUnit("fresh.service", "reloading");
  AddUnit("cold.service", "active");
  systemd_.Call(test::kMockControl, "SetText", {"cold.service", "FreezerState", "frozen"});

  EXPECT_EQ(StateOf(L"up"), 4u);
  EXPECT_EQ(StateOf(L"down"), 1u);
  EXPECT_EQ(StateOf(L"broken"), 1u);
  EXPECT_EQ(StateOf(L"rising"), 2u);
  EXPECT_EQ(StateOf(L"falling"), 3u);
  EXPECT_EQ(StateOf(L"fresh"), 4u);
  EXPECT_EQ(StateOf(L"cold"), 7u);
}

TEST_F(ServiceControl, SaysThatAFailedServicesProcessEnded) {
  AddUnit("broken.service", "failed");
  ServiceStatus status{};
  ASSERT_TRUE(QueryServiceStatus(Open(L"broken"), status));
  EXPECT_EQ(status.win32_exit_code, 1067u);
  EXPECT_EQ(status.controls_accepted, 0u);
}

TEST_F(ServiceControl, TakesANameWithoutTheUnitsEnding) {
  AddUnit("ssh.service", "active");
  EXPECT_EQ(StateOf(L"ssh"), 4u);
  Close();
  EXPECT_EQ(Open(L"ssh.service"), nullptr);
  EXPECT_EQ(LastError(), 1060u);
}

TEST_F(ServiceControl, FindsAServiceWithoutRegardToLetterCase) {
  systemd_.Call(test::kMockControl, "AddUnitFile", {"NetworkManager.service"});
  AddUnit("Loaded-Only.service", "active");
  EXPECT_EQ(StateOf(L"networkmanager"), 1u);
  EXPECT_EQ(StateOf(L"NETWORKMANAGER"), 1u);
  EXPECT_EQ(StateOf(L"loaded-only"), 4u);
}

TEST_F(ServiceControl, KnowsNoServiceThatIsNotThere) {
  for (const wchar_t* name : {L"nothing", L"two words", L"it's", L"\u00E9t\u00E9", L"socket.socket"}) {
    EXPECT_EQ(Open(name), nullptr) << name;
    EXPECT_EQ(LastError(), 1060u) << name;
    Close();
  }
}

TEST_F(ServiceControl, RefusesNamesThatNoServiceCanHave) {
  const std::wstring longest(256, L'a');
  EXPECT_EQ(Open(longest.c_str()), nullptr);
  EXPECT_EQ(LastError(), 1060u);
  Close();
  const std::wstring too_long(257, L'a');
  for (const wchar_t* name : {L"", L"a/b", too_long.c_str(), static_cast<const wchar_t*>(nullptr)}) {
    EXPECT_EQ(Open(name), nullptr);
    EXPECT_EQ(LastError(), 123u);
    Close();
  }
}

TEST_F(ServiceControl, StartsAStoppedService) {
  AddUnit("ssh.service", "inactive");
  EXPECT_TRUE(StartServiceW(Open(L"ssh"), 0, nullptr));
  EXPECT_EQ(systemd_.Call(test::kMockControl, "Requests"), "start ssh.service");
  Close();
  EXPECT_EQ(StateOf(L"ssh"), 4u);
}

TEST_F(ServiceControl, StartsTheServiceThatIsMeantByAnotherLetterCase) {
  systemd_.Call(test::kMockControl, "AddUnitFile", {"NetworkManager.service"});
  EXPECT_TRUE(StartServiceW(Open(L"networkmanager"), 0, nullptr));
  EXPECT_EQ(systemd_.Call(test::kMockControl, "Requests"), "start NetworkManager.service");
}

TEST_F(ServiceControl, DoesNotStartWhatIsNotStopped) {
  AddUnit("up.service", "active");
  AddUnit("rising.service", "activating");
  AddUnit("falling.service", "deactivating");
  for (const wchar_t* name : {L"up", L"rising", L"falling"}) {
    EXPECT_FALSE(StartServiceW(Open(name), 0, nullptr));
    EXPECT_EQ(LastError(), 1056u);
    Close();
  }
  EXPECT_EQ(systemd_.Call(test::kMockControl, "Requests"), "");
}

TEST_F(ServiceControl, DoesNotStartADisabledService) {
  AddUnit("ssh.service", "inactive", "masked");
  EXPECT_FALSE(StartServiceW(Open(L"ssh"), 0, nullptr));
  EXPECT_EQ(LastError(), 1058u);
}

TEST_F(ServiceControl, SaysWhyTheSystemRefusedToStart) {
  AddUnit("ssh.service", "inactive");
  const struct {
    const char* error;
    std::uint32_t number;
  } cases[] = {{"org.freedesktop.DBus.Error.AccessDenied", 5},
               {"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired", 5},
               {"org.freedesktop.systemd1.UnitMasked", 1058},
               {"org.freedesktop.systemd1.NoSuchUnit", 1060},
               {"org.freedesktop.DBus.Error.NoReply", 1053},
               {"org.freedesktop.systemd1.LoadFailed", 31}};
  for (const auto& [error, number] : cases) {
    systemd_.Call(test::kMockControl, "Refuse", {error});
    EXPECT_FALSE(StartServiceW(Open(L"ssh"), 0, nullptr)) << error;
    EXPECT_EQ(LastError(), number) << error;
    Close();
  }
}

TEST_F(ServiceControl, TakesNoArgumentsForAService) {
  AddUnit("ssh.service", "inactive");
  const wchar_t* arguments[] = {L"-d"};
  EXPECT_FALSE(StartServiceW(Open(L"ssh"), 1, arguments));
  EXPECT_EQ(LastError(), 87u);
}

TEST_F(ServiceControl, StopsARunningServiceAndTellsWhatCameOfIt) {
  AddUnit("ssh.service", "active");
  ServiceStatus status{};
  EXPECT_TRUE(ControlService(Open(L"ssh"), 1, status));
  EXPECT_EQ(status.current_state, 1u);
  EXPECT_EQ(systemd_.Call(test::kMockControl, "Requests"), "stop ssh.service");
}

TEST_F(ServiceControl, DoesNotStopWhatDoesNotRun) {
  AddUnit("down.service", "inactive");
  AddUnit("rising.service", "activating");
  ServiceStatus status{};
  EXPECT_FALSE(ControlService(Open(L"down"), 1, status));
  EXPECT_EQ(LastError(), 1062u);
  EXPECT_EQ(status.current_state, 1u);
  Close();
  EXPECT_FALSE(ControlService(Open(L"rising"), 1, status));
  EXPECT_EQ(LastError(), 1061u);
  EXPECT_EQ(status.current_state, 2u);
  EXPECT_EQ(systemd_.Call(test::kMockControl, "Requests"), "");
}

TEST_F(ServiceControl, DoesNotStopAServiceThatAnotherRunningOneNeeds) {
  AddUnit("base.service", "active");
  AddUnit("upper.service", "active");
  systemd_.Call(test::kMockControl, "SetRequiredBy", {"base.service", "upper.service"});
  ServiceStatus status{};
  EXPECT_FALSE(ControlService(Open(L"base"), 1, status));
  EXPECT_EQ(LastError(), 1051u);

  systemd_.Call(test::kMockControl, "SetText", {"upper.service", "ActiveState", "inactive"});
  EXPECT_TRUE(ControlService(service_, 1, status));
}

TEST_F(ServiceControl, DoesNotStopAServiceThatOnlyOthersMayStop) {
  AddUnit("dbus.service", "active");
  systemd_.Call(test::kMockControl, "ForbidStop", {"dbus.service"});
  ServiceStatus status{};
  EXPECT_FALSE(ControlService(Open(L"dbus"), 1, status));
  EXPECT_EQ(LastError(), 1052u);
}

TEST_F(ServiceControl, KnowsNoControlsButStoppingAndAsking) {
  AddUnit("ssh.service", "active");
  ServiceStatus status{};
  EXPECT_FALSE(ControlService(Open(L"ssh", 0xFFFF), 2, status));
  EXPECT_EQ(LastError(), 1052u);
  EXPECT_TRUE(ControlService(service_, 4, status));
  EXPECT_EQ(status.current_state, 4u);
}

TEST_F(ServiceControl, GivesAHandleOnlyTheRightsThatWereAskedFor) {
  AddUnit("ssh.service", "active");
  ServiceStatus status{};
  ASSERT_NE(Open(L"ssh", 0x10), nullptr);
  EXPECT_FALSE(QueryServiceStatus(service_, status));
  EXPECT_EQ(LastError(), 5u);
  EXPECT_FALSE(ControlService(service_, 1, status));
  EXPECT_EQ(LastError(), 5u);
  Close();
  ASSERT_NE(Open(L"ssh", 0x4), nullptr);
  EXPECT_FALSE(StartServiceW(service_, 0, nullptr));
  EXPECT_EQ(LastError(), 5u);
}

TEST_F(ServiceControl, LetsTheManagerBeClosedBeforeTheService) {
  AddUnit("ssh.service", "active");
  Open(L"ssh");
  EXPECT_TRUE(CloseServiceHandle(std::exchange(manager_, nullptr)));
  ServiceStatus status{};
  EXPECT_TRUE(QueryServiceStatus(service_, status));
}

TEST_F(ServiceControl, TellsTheKindsOfHandlesApart) {
  AddUnit("ssh.service", "active");
  Open(L"ssh");
  ServiceStatus status{};
  EXPECT_FALSE(QueryServiceStatus(manager_, status));
  EXPECT_EQ(LastError(), 6u);
  EXPECT_EQ(OpenServiceW(service_, L"ssh", 4), nullptr);
  EXPECT_EQ(LastError(), 6u);
  EXPECT_FALSE(CloseServiceHandle(nullptr));
  EXPECT_EQ(LastError(), 6u);
}

TEST_F(ServiceControl, ServesThisMachineAndItsActiveDatabaseOnly) {
  EXPECT_EQ(OpenSCManagerW(L"elsewhere", nullptr, kExecute), nullptr);
  EXPECT_EQ(LastError(), 1722u);
  EXPECT_EQ(OpenSCManagerW(nullptr, L"Another", kExecute), nullptr);
  EXPECT_EQ(LastError(), 1065u);
  manager_ = OpenSCManagerW(nullptr, L"servicesactive", kExecute);
  EXPECT_NE(manager_, nullptr);
}

TEST_F(ServiceControl, FailsWhenTheBusGoesAway) {
  AddUnit("ssh.service", "active");
  Open(L"ssh");
  bus_.Stop();
  ServiceStatus status{};
  EXPECT_FALSE(QueryServiceStatus(service_, status));
  EXPECT_NE(LastError(), 0u);
}

TEST(ServiceControlWithoutManager, SaysThatNoManagerCanBeReached) {
  const test::Variable nowhere("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus");
  EXPECT_EQ(OpenSCManagerW(nullptr, nullptr, kExecute), nullptr);
  EXPECT_EQ(LastError(), 1722u);
}

TEST(ServiceControlWithoutManager, SaysSoOnABusWithoutAServiceManager) {
  const test::PrivateBus bus;
  EXPECT_EQ(OpenSCManagerW(nullptr, nullptr, kExecute), nullptr);
  EXPECT_EQ(LastError(), 1722u);
}

TEST(ServiceControlWithoutManager, DoesNotWaitForABusThatNeverAnswers) {
  const test::PrivateBus bus;
  kill(bus.Id(), SIGSTOP);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(OpenSCManagerW(nullptr, nullptr, kExecute), nullptr);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(8));
  EXPECT_EQ(LastError(), 1722u);
}

}  // namespace
}  // namespace velmora::os
