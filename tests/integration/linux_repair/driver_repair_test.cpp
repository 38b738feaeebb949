/// The repair of drivers from the exported class down to the files of a made-up machine: what is written,
/// what is read back, and that nothing else is touched.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <map>
#include <thread>

#include "platform/linux/hardware_root.h"
#include "tests/support/linux/fake_machine.h"
#include "velmora/bluetooth.h"
#include "velmora/devicedriver.h"

namespace {

std::string hardware_root = "/no machine is made up";

}  // namespace

namespace velmora::os {

const char* HardwareRoot() noexcept { return hardware_root.c_str(); }

}  // namespace velmora::os

namespace {

using ostrine::test::ContentOf;
using ostrine::test::FakeMachine;
using ostrine::test::WithoutRights;
namespace fs = std::filesystem;

constexpr auto kWireless = L"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01";
constexpr auto kRadio = L"USB\\VID_8087&PID_0033&REV_0000";
constexpr auto kPlace = "pci0000:00/0000:00:14.3";
constexpr auto kUsbDriver = "sys/bus/usb/drivers/usb";

/// Does what the kernel does when it is told to.
class Kernel {
 public:
  explicit Kernel(std::function<void()> react)
      : thread_([this, react = std::move(react)] {
          while (!stop_) {
            react();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
          }
        }) {}
  Kernel(const Kernel&) = delete;
  Kernel& operator=(const Kernel&) = delete;
  ~Kernel() {
    stop_ = true;
    thread_.join();
  }

 private:
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

class DriverRepairOnLinux : public testing::Test {
 protected:
  DriverRepairOnLinux() {
    ostrine::test::BuildLaptop(machine_);
    hardware_root = machine_.Path().string();
    machine_.WriteFile("sys/bus/pci/rescan", "");
    machine_.WriteFile("sys/bus/pci/drivers_probe", "");
    machine_.WriteFile("sys/bus/usb/drivers_probe", "");
    machine_.WriteFile(std::string(kUsbDriver) + "/unbind", "");
    for (const auto& entry : fs::directory_iterator(machine_.Path() / "sys/bus/pci/devices"))
      machine_.WriteFile(("sys/devices" / Place(entry.path()) / "remove").string(), "");
  }
  ~DriverRepairOnLinux() override { hardware_root = "/no machine is made up"; }

  /// Where a device of the bus stands, from sys/devices.
  fs::path Place(const fs::path& link) const {
    return fs::canonical(link).lexically_relative(fs::canonical(machine_.Path() / "sys/devices"));
  }

  /// Every file below the root with its content, but for the device that is meant.
  std::map<std::string, std::string> Others() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(machine_.Path())) {
      const std::string name = entry.path().lexically_relative(machine_.Path()).string();
      if (name.find("0000:00:14.3") != std::string::npos) continue;
      files[name] = entry.is_symlink()        ? fs::read_symlink(entry.path()).string()
                    : entry.is_regular_file() ? ContentOf(entry.path())
                                              : "folder";
    }
    return files;
  }

  FakeMachine machine_;
  ostrine::test::ActsOn acts_on_{machine_};
  CDeviceDriver drivers_;
};

TEST_F(DriverRepairOnLinux, RemovesThePciFunctionThatIsNamedAndNoOther) {
  const auto others = Others();
  const fs::path device = machine_.Device(kPlace);
  const Kernel kernel([&] {
    if (ContentOf(device / "remove") != "1") return;
    fs::remove(machine_.Path() / "sys/bus/pci/devices/0000:00:14.3");
    fs::remove_all(device);
  });
  ASSERT_EQ(drivers_.GetDeviceDriverErrorCode(kWireless, emDEVICE_WIRELESS), 0U);
  EXPECT_EQ(drivers_.UnInstallDeviceDriver(kWireless, emDEVICE_WIRELESS), 0U);
  EXPECT_EQ(drivers_.GetDeviceDriverErrorCode(kWireless, emDEVICE_WIRELESS), 45U) << "it is gone";
  EXPECT_EQ(Others(), others);
}

TEST_F(DriverRepairOnLinux, BringsThePciFunctionBackByARescanOfTheBus) {
  fs::remove(machine_.Path() / "sys/bus/pci/devices/0000:00:14.3");
  fs::remove_all(machine_.Device(kPlace));
  {
    std::atomic<bool> is_back = false;
    const Kernel kernel([&] {
      if (is_back || ContentOf(machine_.Path() / "sys/bus/pci/rescan") != "1") return;
      machine_.Add(
          "pci", kPlace,
          {{"modalias", "pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00"}, {"revision", "0x01"}});
      machine_.Bind("pci", kPlace, "iwlwifi", "iwlwifi");
      is_back = true;
    });
    drivers_.ScanForHardwareChange();
    while (!is_back) std::this_thread::yield();
  }
  EXPECT_EQ(drivers_.GetDeviceDriverErrorCode(kWireless, emDEVICE_WIRELESS), 0U);
}

TEST_F(DriverRepairOnLinux, IsRefusedWithTheSystemsErrorWithoutTheRight) {
  machine_.Root().Forbid("sys/devices/pci0000:00/0000:00:14.3/remove");
  const auto others = Others();
  const WithoutRights without_rights;
  EXPECT_EQ(drivers_.UnInstallDeviceDriver(kWireless, emDEVICE_WIRELESS), 5U);
  EXPECT_EQ(drivers_.ResetDeviceDriver(kWireless, emDEVICE_WIRELESS), 5U) << "and nothing is waited for";
  EXPECT_EQ(drivers_.GetDeviceDriverErrorCode(kWireless, emDEVICE_WIRELESS), 0U) << "it works as before";
  EXPECT_EQ(Others(), others);
}

TEST_F(DriverRepairOnLinux, TouchesNothingForADeviceOfAnotherClassOrOneThatIsNotThere) {
  const auto others = Others();
  EXPECT_EQ(drivers_.UnInstallDeviceDriver(kWireless, emDEVICE_DISPLAY), 0xE000020BU);
  EXPECT_EQ(drivers_.UnInstallDeviceDriver(L"PCI\\VEN_FFFF&DEV_FFFF", emDEVICE_WIRELESS), 0xE000020BU);
  EXPECT_EQ(ContentOf(machine_.Device(kPlace) / "remove"), "");
  EXPECT_EQ(Others(), others);
}

TEST_F(DriverRepairOnLinux, TakesAUsbRadioFromItsDriverAndOffersItAgain) {
  const fs::path radio = machine_.Device("pci0000:00/0000:00:14.0/usb1/1-10");
  {
    const Kernel kernel([&] {
      if (ContentOf(machine_.Path() / kUsbDriver / "unbind") == "1-10") fs::remove(radio / "driver");
    });
    EXPECT_EQ(drivers_.UnInstallDeviceDriver(kRadio, emDEVICE_BLUETOOTH), 0U);
  }
  EXPECT_EQ(drivers_.GetDeviceDriverErrorCode(kRadio, emDEVICE_BLUETOOTH), 45U);
  // The others without a driver, so that the file holds what was offered last.
  for (const char* const other : {"1-2:1.0", "1-5:1.0"})
    fs::remove(machine_.Path() / "sys/bus/usb/devices" / other);
  drivers_.ScanForHardwareChange();
  EXPECT_EQ(ContentOf(machine_.Path() / "sys/bus/usb/drivers_probe"), "1-10");
}

/// The radio has gone from the bus, and a hub fails.
class LostRadioOnLinux : public DriverRepairOnLinux {
 protected:
  LostRadioOnLinux() {
    fs::create_directory(Away(""));
    for (const char* const part : {"1-10", "1-10:1.0", "1-10:1.1"}) fs::rename(Entry(part), Away(part));
    for (const char* const other : {"1-2:1.0", "1-5:1.0"}) fs::remove(Entry(other));
    fs::create_directory(hub_ / "power");
    std::ofstream(hub_ / "power/runtime_status") << "error\n";
  }
  fs::path Entry(const std::string& name) const { return machine_.Path() / "sys/bus/usb/devices" / name; }
  fs::path Away(const std::string& name) const { return machine_.Path() / "sys/bus/usb/away" / name; }

  /// Takes the hub from its driver when it is told to.
  void Unbind() const {
    if (ContentOf(machine_.Path() / kUsbDriver / "unbind") == "1-1") fs::remove(hub_ / "driver");
  }
  bool IsHubOffered() const { return ContentOf(machine_.Path() / "sys/bus/usb/drivers_probe") == "1-1"; }

  const fs::path hub_ = machine_.Device("pci0000:00/0000:00:14.0/usb1/1-1");
  CBluetooth bluetooth_;
};

TEST_F(LostRadioOnLinux, ComesBackWhenTheFailingUsbDeviceIsOfferedToTheDriversAgain) {
  ASSERT_EQ(bluetooth_.GetHardwareID(), L"");
  ASSERT_EQ(bluetooth_.IsInUSBClass(), 1);
  const Kernel kernel([&] {
    Unbind();
    if (IsHubOffered() && fs::is_symlink(Away("1-10"))) fs::rename(Away("1-10"), Entry("1-10"));
  });
  EXPECT_EQ(bluetooth_.RepairInUSBDriver(), 0U);
  EXPECT_NE(bluetooth_.GetHardwareID(), L"");
}

TEST_F(LostRadioOnLinux, StaysLostWhereTheKernelFindsNothing) {
  {
    const Kernel kernel([&] { Unbind(); });
    EXPECT_EQ(bluetooth_.RepairInUSBDriver(), 0U) << "the hub has gone";
  }
  EXPECT_TRUE(IsHubOffered());
  EXPECT_EQ(bluetooth_.GetHardwareID(), L"");
}

TEST_F(LostRadioOnLinux, StaysLostWithoutTheRightToRepair) {
  machine_.Root().Forbid(std::string(kUsbDriver) + "/unbind");
  const WithoutRights without_rights;
  EXPECT_EQ(bluetooth_.RepairInUSBDriver(), 5U);
  EXPECT_EQ(bluetooth_.GetHardwareID(), L"");
}

TEST_F(DriverRepairOnLinux, ListsAmongTheFailingWhatHasLostItsDriver) {
  ASSERT_EQ(CDeviceDriver().GetErrDeviceDriverCount(), 5);
  fs::remove(machine_.Device(kPlace) / "driver");
  CDeviceDriver fresh;
  ASSERT_EQ(fresh.GetErrDeviceDriverCount(), 6);
  const auto info = fresh.GetErrDriverInfoByIndex(0);
  EXPECT_EQ(info.strDeviceID, "PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01\\0000:00:14.3");
  EXPECT_EQ(info.uErrorCode, 28U);
}

}  // namespace
