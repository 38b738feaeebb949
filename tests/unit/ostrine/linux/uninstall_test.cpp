#include "ostrine/linux/uninstall.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <thread>

#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "tests/support/linux/fake_machine.h"

namespace ostrine {
namespace {

using std::chrono::milliseconds;

/// Does what the kernel does once `file` has been written.
class FakeKernel {
 public:
  FakeKernel(std::filesystem::path file, std::function<void()> react)
      : thread_([this, file = std::move(file), react = std::move(react)] {
          while (!stop_) {
            if (!test::ContentOf(file).empty()) return react();
            std::this_thread::sleep_for(milliseconds(1));
          }
        }) {}
  ~FakeKernel() {
    stop_ = true;
    thread_.join();
  }

 private:
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

class Uninstalling : public testing::Test {
 protected:
  Uninstalling() {
    test::BuildLaptop(machine_);
    machine_.WriteFile(kFunction + "/remove", "");
    machine_.WriteFile("sys/bus/usb/drivers/usb/unbind", "");
  }
  Device Find(Device::Bus bus, std::string_view address) const {
    for (Device& device : ListDevices(machine_.Path())) {
      if (device.bus == bus && device.address == address) return device;
    }
    ADD_FAILURE() << "no such device: " << address;
    return {};
  }

  static inline const std::string kFunction = "sys/devices/pci0000:00/0000:00:14.3";
  static inline const std::string kRadio = "sys/devices/pci0000:00/0000:00:14.0/usb1/1-10";
  test::FakeMachine machine_;
};

TEST_F(Uninstalling, TakesAPciFunctionFromItsBus) {
  const Device device = Find(Device::Bus::kPci, "0000:00:14.3");
  const auto file = machine_.Path() / kFunction / "remove";
  std::string written;
  const FakeKernel kernel(file, [&] {
    written = test::ContentOf(file);
    std::filesystem::remove_all(machine_.Path() / kFunction);
  });
  EXPECT_EQ(RemoveDevice(device), 0u);
  EXPECT_EQ(written, "1");
  EXPECT_EQ(RemoveDevice(device), 0xE000020Bu) << "it is gone by now";
}

TEST_F(Uninstalling, TakesAUsbDeviceFromItsDriver) {
  const Device device = Find(Device::Bus::kUsb, "1-10");
  const auto file = machine_.Path() / "sys/bus/usb/drivers/usb/unbind";
  std::string written;
  {
    const FakeKernel kernel(file, [&] {
      written = test::ContentOf(file);
      std::filesystem::remove(machine_.Path() / kRadio / "driver");
    });
    EXPECT_EQ(RemoveDevice(device), 0u);
  }
  EXPECT_EQ(written, "1-10") << "and nothing but what was named";
  EXPECT_TRUE(ListDevices(machine_.Path(), SetupClass::kBluetooth).empty()) << "it is listed no more";
}

TEST_F(Uninstalling, ReportsADeviceThatIsStillThere) {
  EXPECT_EQ(RemoveDevice(Find(Device::Bus::kPci, "0000:00:14.3"), milliseconds(20)), 31u);
}

TEST_F(Uninstalling, NeverCreatesWhatTheKernelDoesNotOffer) {
  const Device device = Find(Device::Bus::kPci, "0000:00:1f.6");
  EXPECT_EQ(RemoveDevice(device, milliseconds(20)), 50u);
  EXPECT_FALSE(std::filesystem::exists(device.node / "remove"));
}

TEST_F(Uninstalling, IsNotSupportedWhereABusHasNoRemoval) {
  EXPECT_EQ(RemoveDevice(Find(Device::Bus::kHdAudio, "hdaudioC0D0")), 50u);
  EXPECT_EQ(RemoveDevice(Find(Device::Bus::kAcpi, "LEN0071:00")), 50u);
}

TEST_F(Uninstalling, WritesIntoNoLinkAndNoFolder) {
  const Device device = Find(Device::Bus::kPci, "0000:00:1f.6");
  machine_.WriteFile("elsewhere", "");
  std::filesystem::create_symlink(machine_.Path() / "elsewhere", device.node / "remove");
  EXPECT_NE(RemoveDevice(device, milliseconds(20)), 0u);
  EXPECT_EQ(test::ContentOf(machine_.Path() / "elsewhere"), "");
  std::filesystem::remove(device.node / "remove");
  std::filesystem::create_directory(device.node / "remove");
  EXPECT_NE(RemoveDevice(device, milliseconds(20)), 0u);
}

TEST_F(Uninstalling, IsDeniedToAUserWithoutRights) {
  const Device device = Find(Device::Bus::kPci, "0000:00:14.3");
  machine_.Root().Forbid(kFunction + "/remove");
  const test::WithoutRights without_rights;
  EXPECT_EQ(RemoveDevice(device, milliseconds(20)), 5u);
}

TEST_F(Uninstalling, OfADeviceThatIsNotThereSaysSo) {
  const test::ActsOn acts_on(machine_);
  CDeviceInformention information;
  EXPECT_EQ(information.UnstallDeviceByHardwareID(L"PCI\\VEN_FFFF", velmora::setup_class::kNet), 0xE000020Bu);
  EXPECT_EQ(information.UnstallDeviceByHardwareID(L"", velmora::setup_class::kNet), 0xE000020Bu);
  EXPECT_EQ(test::ContentOf(machine_.Path() / kFunction / "remove"), "") << "and touches no other";
}

}  // namespace
}  // namespace ostrine
