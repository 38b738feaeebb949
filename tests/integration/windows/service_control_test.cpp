#include "platform/os/service_control.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <winsvc.h>

#include <string>

#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

constexpr wchar_t kName[] = L"VelmoraTestService";
constexpr std::uint32_t kStopped = 1;
constexpr std::uint32_t kRunning = 4;

/// The test service's program stands beside this one.
std::wstring ProgramOfTheService() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.rfind(L'\\') + 1) + L"test_service.exe";
}

class ServiceControl : public testing::Test {
 protected:
  void SetUp() override {
    Remove();
    const SC_HANDLE manager = ::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    ASSERT_NE(manager, nullptr);
    const SC_HANDLE service = ::CreateServiceW(
        manager, kName, kName, SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START,
        SERVICE_ERROR_IGNORE, ProgramOfTheService().c_str(), nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_NE(service, nullptr) << GetLastError();
    ::CloseServiceHandle(service);
    ::CloseServiceHandle(manager);
    manager_ = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    service_ = OpenServiceW(manager_, L"VELMORATESTSERVICE", SERVICE_ALL_ACCESS);
    ASSERT_NE(service_, nullptr) << LastError();
  }
  void TearDown() override {
    if (service_ != nullptr) {
      EXPECT_TRUE(CloseServiceHandle(service_));
    }
    EXPECT_TRUE(CloseServiceHandle(manager_));
    Remove();
  }

  /// Waits until the service has `state`, ten seconds at most.
  void Await(std::uint32_t state) {
    ServiceStatus status{};
    for (int i = 0; i < 200 && status.current_state != state; ++i) {
      if (i != 0) Sleep(50);
      ASSERT_TRUE(QueryServiceStatus(service_, status)) << LastError();
    }
    EXPECT_EQ(status.current_state, state);
  }

  static void Remove() {
    const SC_HANDLE manager = ::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    if (const SC_HANDLE service = ::OpenServiceW(manager, kName, SERVICE_ALL_ACCESS)) {
      SERVICE_STATUS status{};
      ::ControlService(service, SERVICE_CONTROL_STOP, &status);
      ::DeleteService(service);
      ::CloseServiceHandle(service);
    }
    ::CloseServiceHandle(manager);
  }

  ServiceHandle manager_ = nullptr;
  ServiceHandle service_ = nullptr;
};

TEST_F(ServiceControl, StartsAndStopsAService) {
  Await(kStopped);
  ASSERT_TRUE(StartServiceW(service_, 0, nullptr)) << LastError();
  Await(kRunning);
  EXPECT_FALSE(StartServiceW(service_, 0, nullptr));
  EXPECT_EQ(LastError(), 1056u);

  ServiceStatus status{};
  ASSERT_TRUE(ControlService(service_, 1, status)) << LastError();
  EXPECT_NE(status.current_state, kRunning);
  Await(kStopped);
  EXPECT_FALSE(ControlService(service_, 1, status));
  EXPECT_EQ(LastError(), 1062u);
}

TEST_F(ServiceControl, DoesNotStartADisabledService) {
  ASSERT_TRUE(::ChangeServiceConfigW(static_cast<SC_HANDLE>(service_), SERVICE_NO_CHANGE, SERVICE_DISABLED,
                                     SERVICE_NO_CHANGE, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                     nullptr));
  EXPECT_FALSE(StartServiceW(service_, 0, nullptr));
  EXPECT_EQ(LastError(), 1058u);
}

TEST_F(ServiceControl, FindsNoServiceThatIsMissing) {
  EXPECT_EQ(OpenServiceW(manager_, L"VelmoraNoSuchService", SERVICE_QUERY_STATUS), nullptr);
  EXPECT_EQ(LastError(), 1060u);
}

}  // namespace
}  // namespace velmora::os
