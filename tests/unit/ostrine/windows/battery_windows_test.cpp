// The system's battery interface, answered by a driver of the test's own, and thresholds by a made-up
// firmware's method.
#include <gtest/gtest.h>
#include <objbase.h>
#include <windows.h>

#include <setupapi.h>

#include <array>
#include <optional>
#include <string>

#include "ostrine/common/battery.h"
#include "ostrine/windows/battery_query.h"
#include "platform/ostrine/hal.h"
#include "tests/support/windows/fake_wmi.h"

namespace ostrine {
namespace {

using namespace windows_support;

constexpr const wchar_t* kService = L"VelmoraFakeBattery";
constexpr GUID kBatteryClass{0x72631e54, 0x78a4, 0x11d0, {0xbc, 0xf7, 0x00, 0xaa, 0x00, 0xb7, 0xb3, 0x2a}};
constexpr const wchar_t* kInstance = L"ROOT\\VELMORABATTERY\\0000";

std::wstring DriverPath() {
  std::array<wchar_t, MAX_PATH> name{};
  GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
  const std::wstring path = name.data();
  return L"\\??\\" + path.substr(0, path.rfind(L'\\') + 1) + L"fake_battery.sys";
}

class ServiceHandle {
 public:
  explicit ServiceHandle(SC_HANDLE handle) : handle_(handle) {}
  ServiceHandle(const ServiceHandle&) = delete;
  ServiceHandle& operator=(const ServiceHandle&) = delete;
  ~ServiceHandle() {
    if (handle_ != nullptr) CloseServiceHandle(handle_);
  }
  SC_HANDLE Get() const { return handle_; }

 private:
  SC_HANDLE handle_;
};

/// Loads the driver for the tests of this suite.
class BatteryInterface : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    const ServiceHandle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    Remove(manager.Get());  // what a test that was ended has left
    const ServiceHandle driver(CreateServiceW(
        manager.Get(), kService, kService, SERVICE_ALL_ACCESS, SERVICE_KERNEL_DRIVER, SERVICE_DEMAND_START,
        SERVICE_ERROR_NORMAL, DriverPath().c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
    ASSERT_NE(driver.Get(), nullptr) << GetLastError();
    ASSERT_TRUE(StartServiceW(driver.Get(), 0, nullptr)) << GetLastError();
  }
  static void TearDownTestSuite() {
    const ServiceHandle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    Remove(manager.Get());
  }

  /// What the driver's battery with this number answers.
  static std::optional<Battery> Ask(int number) {
    const BatteryHandle battery(L"\\\\.\\VelmoraBattery" + std::to_wstring(number));
    EXPECT_TRUE(battery.IsOpen()) << number << ": " << GetLastError();
    return AskBattery(battery.Get());
  }

 private:
  static void Remove(SC_HANDLE manager) {
    const ServiceHandle driver(OpenServiceW(manager, kService, SERVICE_ALL_ACCESS));
    if (driver.Get() == nullptr) return;
    SERVICE_STATUS status{};
    ControlService(driver.Get(), SERVICE_CONTROL_STOP, &status);
    DeleteService(driver.Get());
  }
};

const Battery kGood{.manufacturer = "SANYO",
                    .name = "7FR5J",
                    .remaining = 30120,
                    .full = 43830,
                    .design = 50000,
                    .voltage = 11856,
                    .rate = -8892};

/// Enters the driver's first battery as a present interface.
class InstalledInterface {
 public:
  InstalledInterface() : set_(SetupDiCreateDeviceInfoList(&kBatteryClass, nullptr)) {
    SP_DEVICE_INTERFACE_DATA entered{};
    entered.cbSize = sizeof entered;
    data_.cbSize = sizeof data_;
    EXPECT_TRUE(SetupDiCreateDeviceInfoW(set_, kInstance, &kBatteryClass, nullptr, nullptr, 0, &data_))
        << GetLastError();
    EXPECT_TRUE(SetupDiRegisterDeviceInfo(set_, &data_, 0, nullptr, nullptr, nullptr)) << GetLastError();
    EXPECT_TRUE(SetupDiCreateDeviceInterfaceW(set_, &data_, &kBatteryClass, nullptr, 0, &entered))
        << GetLastError();
    // The system enters an interface as present when its driver says so, which this one's does not.
    const std::wstring key = L"System\\CurrentControlSet\\Control\\DeviceClasses\\" + kClassText +
                             L"\\##?#ROOT#" + L"VELMORABATTERY#0000#" + kClassText + L"\\#\\Control";
    const DWORD linked = 1;
    EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"Linked", REG_DWORD, &linked, sizeof linked),
              ERROR_SUCCESS);
  }
  InstalledInterface(const InstalledInterface&) = delete;
  InstalledInterface& operator=(const InstalledInterface&) = delete;
  ~InstalledInterface() {
    EXPECT_TRUE(SetupDiRemoveDevice(set_, &data_)) << GetLastError();
    SetupDiDestroyDeviceInfoList(set_);
    const std::wstring key = L"System\\CurrentControlSet\\Control\\DeviceClasses\\" + kClassText;
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, key.c_str());
  }

 private:
  const std::wstring kClassText = L"{72631e54-78a4-11d0-bcf7-00aa00b7b32a}";
  HDEVINFO set_;
  SP_DEVINFO_DATA data_{};
};

TEST_F(BatteryInterface, GivesEverythingOfABattery) { EXPECT_EQ(Ask(0), kGood); }

TEST_F(BatteryInterface, HasNoBatteryInAnEmptyBay) { EXPECT_EQ(Ask(1), std::nullopt); }

TEST_F(BatteryInterface, MakesNoNumberOfItsMarkers) {
  const auto battery = Ask(2);
  ASSERT_TRUE(battery);
  for (unsigned int id = 0; id <= 12; ++id) {
    EXPECT_EQ(CombinedNumber({&*battery, 1}, static_cast<BatteryNumber>(id)), std::nullopt) << id;
  }
}

TEST_F(BatteryInterface, HasNoBatteryWhoseRecordIsCutShort) { EXPECT_EQ(Ask(3), std::nullopt); }

TEST_F(BatteryInterface, KnowsOnlyTheCapacitiesOfABatteryThatTellsNoMore) {
  EXPECT_EQ(Ask(4), (Battery{.full = 43830, .design = 50000}));
}

TEST_F(BatteryInterface, IsNotOpenWithoutADriver) {
  const BatteryHandle battery(L"\\\\.\\VelmoraBattery99");
  EXPECT_FALSE(battery.IsOpen());
  EXPECT_EQ(AskBattery(battery.Get()), std::nullopt);
}

TEST_F(BatteryInterface, IsFoundByItsClassAndAnswersItsIds) {
  const auto before = BatteryPaths().size();
  const InstalledInterface entered;
  EXPECT_EQ(BatteryPaths().size(), before + 1);
  if (before != 0) return;  // a machine with batteries of its own: they count too
  const auto number = [](unsigned int id) {
    std::uint32_t value = 0;
    unsigned int returned = 0;
    return HalQueryInformation(8, nullptr, id, &value, sizeof value, &returned) != 0 ? value : 0;
  };
  EXPECT_EQ(number(0), 1u);
  EXPECT_EQ(number(3), 30120u);
  EXPECT_EQ(number(4), 43830u);
  EXPECT_EQ(number(5), 50000u);
  EXPECT_EQ(number(7), 11856u);
  EXPECT_EQ(number(8), 1234u);
  EXPECT_EQ(number(9), 8892u);
  std::array<char, 260> name{};
  unsigned int returned = 0;
  EXPECT_NE(HalQueryInformation(8, nullptr, 2, name.data(), name.size(), &returned), 0);
  EXPECT_STREQ(name.data(), "7FR5J");
}

TEST(BatteryWindows, AgreesWithTheSystemAboutTheMains) {
  SYSTEM_POWER_STATUS status{};
  ASSERT_TRUE(GetSystemPowerStatus(&status));
  std::uint32_t line = 7;
  unsigned int returned = 0;
  const int result = HalQueryInformation(8, nullptr, 6, &line, sizeof line, &returned);
  EXPECT_EQ(result != 0, status.ACLineStatus <= 1);
  EXPECT_EQ(result != 0 ? line : status.ACLineStatus, status.ACLineStatus);
}

/// A machine whose firmware has the method. Its thresholds stand in `start` and `stop`.
class ThresholdFirmware : public testing::Test {
 protected:
  ThresholdFirmware() {
    wmi_.emplace();
    wmi_->has_firmware = true;
    wmi_->tables[L"VelmoraFirmware"] = {{{L"__RELPATH", TextProperty(L"VelmoraFirmware=@")}}};
    wmi_->firmware = [this](const std::wstring& input) {
      return FakeRow{{L"OutData", BytesProperty(Reply(std::stoull(input)))}};
    };
  }
  ~ThresholdFirmware() override {
    EXPECT_EQ(wmi_->connections, 0);
    wmi_.reset();
    CoUninitialize();
  }

  std::vector<std::uint8_t> Reply(unsigned long long word) {
    words_.push_back(word);
    if (word == 0x0A02) return {status_, start_, stop_};
    if ((word & 0xFFFF) != 0x0A03) return {1};
    if (refuses_) return {1};
    if (!ignores_) {
      start_ = static_cast<std::uint8_t>(word >> 16);
      stop_ = static_cast<std::uint8_t>(word >> 24);
    }
    return {0};
  }
  static std::optional<std::array<std::uint8_t, 2>> Read() {
    std::array<std::uint8_t, 2> record{};
    unsigned int returned = 0;
    if (HalQueryInformation(8, nullptr, 9, record.data(), record.size(), &returned) == 0) return std::nullopt;
    return record;
  }
  static bool Set(std::uint8_t start, std::uint8_t stop) {
    std::array<std::uint8_t, 2> record{start, stop};
    unsigned int returned = 0;
    return HalSetInformation(8, nullptr, 12, record.data(), record.size(), &returned) != 0;
  }

  const HRESULT entered_ = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  std::optional<FakeWmi> wmi_;
  std::vector<unsigned long long> words_;
  std::uint8_t status_ = 0;
  std::uint8_t start_ = 75;
  std::uint8_t stop_ = 80;
  bool refuses_ = false;
  bool ignores_ = false;
};

using Record = std::array<std::uint8_t, 2>;

TEST_F(ThresholdFirmware, GivesTheStartAndThenTheStop) {
  EXPECT_EQ(Read(), (Record{75, 80}));
  EXPECT_EQ(words_, (std::vector<unsigned long long>{0x0A02}));
}

TEST_F(ThresholdFirmware, IsSetAndReadBack) {
  EXPECT_TRUE(Set(40, 60));
  EXPECT_EQ(words_, (std::vector<unsigned long long>{0x0A02, 0x3C280A03, 0x0A02}));
  EXPECT_EQ(Read(), (Record{40, 60}));
}

TEST_F(ThresholdFirmware, IsNotAskedForThresholdsThatAreNotPossible) {
  EXPECT_FALSE(Set(60, 40));
  EXPECT_FALSE(Set(60, 101));
  EXPECT_TRUE(words_.empty());
}

TEST_F(ThresholdFirmware, FailsWhenItRefusesAndKeepsTheOldOnes) {
  refuses_ = true;
  EXPECT_FALSE(Set(40, 60));
  EXPECT_EQ(Read(), (Record{75, 80}));
}

TEST_F(ThresholdFirmware, FailsWhenItSaysYesAndDoesNothing) {
  ignores_ = true;
  EXPECT_FALSE(Set(40, 60));
  EXPECT_EQ(Read(), (Record{75, 80}));
}

TEST_F(ThresholdFirmware, FailsWhereItHasNoThresholds) {
  status_ = 1;
  EXPECT_EQ(Read(), std::nullopt);
  EXPECT_FALSE(Set(40, 60));
  status_ = 0;
  start_ = 0;
  stop_ = 0;
  EXPECT_EQ(Read(), std::nullopt);
}

TEST_F(ThresholdFirmware, IsMissedOnMachinesWithoutTheMethod) {
  wmi_->has_firmware = false;
  wmi_->tables.clear();
  EXPECT_EQ(Read(), std::nullopt);
  EXPECT_FALSE(Set(40, 60));
}

}  // namespace
}  // namespace ostrine
