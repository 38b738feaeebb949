/// The radio reset as the system carries it to a driver, which is made up.
#include <windows.h>

#include <gtest/gtest.h>
#include <winsvc.h>

#include <string>

#include "velmora/bluetooth.h"

namespace {

constexpr wchar_t kName[] = L"VelmoraResetDriver";

std::wstring DriverFile() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.rfind(L'\\') + 1) + L"reset_driver.sys";
}

/// The made-up driver, loaded while the object lives.
class ResetDriver {
 public:
  ResetDriver() : manager_(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)) {
    Remove(OpenServiceW(manager_, kName, SERVICE_ALL_ACCESS));  // what an aborted run has left
    service_ = CreateServiceW(manager_, kName, kName, SERVICE_ALL_ACCESS, SERVICE_KERNEL_DRIVER,
                              SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE, DriverFile().c_str(), nullptr,
                              nullptr, nullptr, nullptr, nullptr);
    EXPECT_NE(service_, nullptr) << GetLastError();
    EXPECT_TRUE(StartServiceW(service_, 0, nullptr)) << GetLastError();
  }
  ResetDriver(const ResetDriver&) = delete;
  ResetDriver& operator=(const ResetDriver&) = delete;
  ~ResetDriver() {
    Remove(service_);
    CloseServiceHandle(manager_);
  }

 private:
  static void Remove(SC_HANDLE service) {
    if (service == nullptr) return;
    SERVICE_STATUS status{};
    ControlService(service, SERVICE_CONTROL_STOP, &status);
    DeleteService(service);
    CloseServiceHandle(service);
  }

  SC_HANDLE manager_;
  SC_HANDLE service_ = nullptr;
};

unsigned long Reset(const char* address) {
  unsigned long error = 77;
  CBluetooth().RepairBtByReHard(address, error);
  return error;
}

TEST(RadioReset, HasNoDriverOnASystemWithoutOne) {
  EXPECT_EQ(Reset("1A2B"), DWORD{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(Reset(""), 0u);
}

TEST(RadioReset, CarriesTheAddressToTheDriver) {
  const ResetDriver driver;
  EXPECT_EQ(Reset("1A2B"), 0u);
  EXPECT_EQ(Reset("DEAD"), DWORD{ERROR_DEVICE_NOT_CONNECTED}) << "the driver's own error";
  EXPECT_EQ(Reset("0xdead:00"), DWORD{ERROR_DEVICE_NOT_CONNECTED});
  EXPECT_EQ(Reset("1DEAD"), 0u);
}

}  // namespace
