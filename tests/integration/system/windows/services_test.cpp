/// Services and processes of this system: a service and a program of the tests' own.
#include "velmora/services.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <winsvc.h>

#include <string>

#include "tests/support/logging/captured_log.h"

namespace {

using testing::ElementsAre;
using velmora::testing::CapturedLog;

constexpr wchar_t kName[] = L"VelmoraTestService";

std::wstring Beside(const wchar_t* name) {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.rfind(L'\\') + 1) + name;
}

class OwnService : public testing::Test {
 protected:
  void SetUp() override {
    Remove();
    const SC_HANDLE manager = ::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service =
        ::CreateServiceW(manager, kName, kName, SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS,
                         SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE, Beside(L"test_service.exe").c_str(),
                         nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_NE(service, nullptr) << GetLastError();
    ::CloseServiceHandle(service);
    ::CloseServiceHandle(manager);
  }
  void TearDown() override { Remove(); }

  /// Waits until the service is in `state`, ten seconds at most.
  static void Await(const wchar_t* state) {
    for (int i = 0; i < 200 && GetServiceState(kName) != state; ++i) Sleep(50);
    EXPECT_EQ(GetServiceState(kName), state);
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
};

TEST_F(OwnService, IsFoundStartedAndStopped) {
  EXPECT_TRUE(IsServiceExist(kName));
  EXPECT_FALSE(IsServiceExist(L"VELMORATESTSERVICE"));
  EXPECT_FALSE(IsServiceExist(L"VelmoraNoSuchService"));
  EXPECT_EQ(GetServiceState(kName), L"Stopped");
  EXPECT_FALSE(IsServiceRunning(kName));

  EXPECT_TRUE(StartServiceByName(kName));
  Await(L"Running");
  EXPECT_TRUE(IsServiceRunning(kName));
  EXPECT_TRUE(StartServiceByName(kName)) << "it runs already";

  StopServiceByName(kName);
  Await(L"Stopped");
}

TEST_F(OwnService, IsNotTakenForOneThatIsMissing) {
  const CapturedLog log;
  EXPECT_FALSE(StartServiceByName(L"VelmoraNoSuchService"));
  StopServiceByName(L"VelmoraNoSuchService");
  EXPECT_EQ(GetServiceState(L"VelmoraNoSuchService"), L"");
  EXPECT_EQ(GetServiceState(L"it's"), L"");
  EXPECT_THAT(log.Texts(), ElementsAre("StartServiceByName: bRet=0, LastError=1060StartServiceByName"));
}

/// Starts the test service's program as a plain one that waits; the caller closes the handle.
HANDLE StartProgram() {
  std::wstring command_line = L"test_service wait";
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  EXPECT_TRUE(::CreateProcessW(Beside(L"test_service.exe").c_str(), command_line.data(), nullptr, nullptr,
                               FALSE, 0, nullptr, nullptr, &startup, &started));
  ::CloseHandle(started.hThread);
  return started.hProcess;
}

TEST(OwnProcesses, AreFoundByTheirNameAndEndedOneAtATime) {
  const HANDLE processes[] = {StartProgram(), StartProgram()};
  EXPECT_TRUE(IsProcessRunning(L"test_service.exe"));
  EXPECT_TRUE(IsProcessRunning(L"TEST_service.exe"));
  EXPECT_FALSE(IsProcessRunning(L"test_servic_.exe"));
  EXPECT_FALSE(KillProcByName(L"zz' OR Name LIKE '%"));
  EXPECT_TRUE(KillProcByName(L"test_service.exe"));
  EXPECT_LT(WaitForMultipleObjects(2, processes, FALSE, 10'000), WAIT_OBJECT_0 + 2);
  EXPECT_EQ(WaitForMultipleObjects(2, processes, TRUE, 0), DWORD{WAIT_TIMEOUT}) << "the other one stays";
  for (int i = 0; i < 100 && KillProcByName(L"test_service.exe"); ++i) Sleep(50);
  EXPECT_EQ(WaitForMultipleObjects(2, processes, TRUE, 10'000), DWORD{WAIT_OBJECT_0});
  EXPECT_FALSE(IsProcessRunning(L"test_service.exe"));
  for (const HANDLE process : processes) ::CloseHandle(process);
}

}  // namespace
