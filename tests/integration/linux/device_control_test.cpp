#include "platform/linux/device_control.h"

#include <gtest/gtest.h>

#include <fstream>

#include "platform/linux/bluetooth_reset.h"
#include "platform/os/last_error.h"
#include "tests/integration/linux/mock_bus.h"
#include "tests/unit/ostrine/linux/fake_root.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeRoot;

constexpr const wchar_t* kResetDriver = L"\\\\.\\IBTRSTD";
constexpr std::uint32_t kResetRequest = 0x002211FC;
const std::filesystem::path kUsbDevice = "sys/devices/pci0000:00/usb1/1-5";

std::string TextOf(const std::filesystem::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A machine whose Bluetooth adapter hci0 stands on a USB device.
void AddAdapter(const FakeRoot& root) {
  root.Write((kUsbDevice / "idVendor").string(), "8087\n");
  root.Write((kUsbDevice / "authorized").string(), "1\n");
  root.Write((kUsbDevice / "1-5:1.0/authorized").string(), "1\n");
  root.Write((kUsbDevice / "1-5:1.0/bluetooth/hci0/uevent").string(), "");
  std::filesystem::create_symlink("../../../1-5:1.0",
                                  root.Path() / kUsbDevice / "1-5:1.0/bluetooth/hci0/device");
  std::filesystem::create_directories(root.Path() / "sys/class/bluetooth");
  std::filesystem::create_symlink("../../devices/pci0000:00/usb1/1-5/1-5:1.0/bluetooth/hci0",
                                  root.Path() / "sys/class/bluetooth/hci0");
}

bool Request(Handle device, std::uint32_t code = kResetRequest, std::uint32_t size = 4) {
  const std::uint32_t address = 0x1A2B;
  return DeviceIoControl(device, code, &address, size, nullptr, 0, nullptr);
}

/// No bus at all, so that only the USB way is left.
class WithoutBus : public testing::Test {
 protected:
  test::Variable nowhere_{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
  FakeRoot root_;
};

using ResetDriver = WithoutBus;

TEST_F(ResetDriver, IsThereWhileTheMachineHasABluetoothAdapter) {
  EXPECT_EQ(OpenDevice(root_.Path(), kResetDriver), InvalidHandle());
  EXPECT_EQ(LastError(), 2u);
  AddAdapter(root_);
  const Handle device = OpenDevice(root_.Path(), kResetDriver);
  ASSERT_NE(device, InvalidHandle());
  EXPECT_TRUE(CloseHandle(device));
  const Handle again = OpenDevice(root_.Path(), L"\\\\.\\ibtrstd");
  ASSERT_NE(again, InvalidHandle());
  EXPECT_TRUE(CloseHandle(again));
}

TEST_F(ResetDriver, IsTheOnlyDevice) {
  AddAdapter(root_);
  for (const wchar_t* name :
       {L"\\\\.\\PhysicalDrive0", L"", L"/etc/hosts", static_cast<const wchar_t*>(nullptr)}) {
    EXPECT_EQ(OpenDevice(root_.Path(), name), InvalidHandle());
    EXPECT_EQ(LastError(), 2u);
  }
}

TEST_F(ResetDriver, SwitchesTheUsbDeviceOffAndOnAgain) {
  AddAdapter(root_);
  // A pipe would be refused; the folder is watched through the file's own time instead.
  const auto file = root_.Path() / kUsbDevice / "authorized";
  const auto before = std::filesystem::last_write_time(file);
  const Handle device = OpenDevice(root_.Path(), kResetDriver);
  EXPECT_TRUE(Request(device)) << LastError();
  EXPECT_EQ(TextOf(file), "1\n");
  EXPECT_GT(std::filesystem::last_write_time(file), before);
  EXPECT_EQ(TextOf(root_.Path() / kUsbDevice / "1-5:1.0/authorized"), "1\n");
  EXPECT_TRUE(CloseHandle(device));
}

TEST_F(ResetDriver, FailsWithoutTheRightToSwitch) {
  AddAdapter(root_);
  root_.Forbid((kUsbDevice / "authorized").string());
  const ostrine::test::WithoutRights without_rights;
  EXPECT_EQ(ResetBluetoothAdapter(root_.Path(), "hci0"), kErrorAccessDenied);
}

TEST_F(ResetDriver, CannotResetAnAdapterThatIsNeitherOnUsbNorKnownToTheService) {
  std::filesystem::create_directories(root_.Path() / "sys/devices/platform/serial/bluetooth/hci0");
  std::filesystem::create_directories(root_.Path() / "sys/class/bluetooth");
  std::filesystem::create_symlink("../../devices/platform/serial/bluetooth/hci0",
                                  root_.Path() / "sys/class/bluetooth/hci0");
  const Handle device = OpenDevice(root_.Path(), kResetDriver);
  ASSERT_NE(device, InvalidHandle());
  EXPECT_FALSE(Request(device));
  EXPECT_EQ(LastError(), 50u);
  EXPECT_TRUE(CloseHandle(device));
}

TEST_F(ResetDriver, TakesOneRequestOfFourBytes) {
  AddAdapter(root_);
  const Handle device = OpenDevice(root_.Path(), kResetDriver);
  EXPECT_FALSE(Request(device, 0x002211F8));
  EXPECT_EQ(LastError(), 50u);
  EXPECT_FALSE(Request(device, kResetRequest, 3));
  EXPECT_EQ(LastError(), 87u);
  EXPECT_FALSE(DeviceIoControl(device, kResetRequest, nullptr, 4, nullptr, 0, nullptr));
  EXPECT_EQ(LastError(), 87u);
  EXPECT_TRUE(CloseHandle(device));
  EXPECT_FALSE(Request(nullptr));
  EXPECT_EQ(LastError(), 6u);
}

TEST_F(ResetDriver, TakesTheAdapterOfTheLowestNumber) {
  for (const char* name : {"hci10", "hci2", "hci2:5", "hcix", "hci"}) {
    std::filesystem::create_directories(root_.Path() / "sys/class/bluetooth" / name);
  }
  EXPECT_EQ(FirstBluetoothAdapter(root_.Path()), "hci2");
}

TEST(BluetoothReset, GoesThroughTheServiceThatKnowsTheAdapter) {
  const test::PrivateBus bus;
  const test::MockService bluez("bluez5", "org.bluez", "/");
  bluez.Call("org.bluez.Mock", "AddAdapter", {"hci0", "test machine"});
  const BusObject adapter{"org.bluez", "/org/bluez/hci0", "org.bluez.Adapter1"};
  ASSERT_TRUE(ReadBusFlag(bluez.Connection(), adapter, "Powered"));
  BusError error;
  ASSERT_GE(sd_bus_set_property(bluez.Connection(), adapter.service, adapter.path, adapter.interface,
                                "Powered", error.Out(), "b", 0),
            0);

  const FakeRoot root;
  AddAdapter(root);
  root.Write((kUsbDevice / "authorized").string(), "untouched");
  EXPECT_EQ(ResetBluetoothAdapter(root.Path(), "hci0"), 0u);
  EXPECT_EQ(ReadBusFlag(bluez.Connection(), adapter, "Powered"), true);
  EXPECT_EQ(TextOf(root.Path() / kUsbDevice / "authorized"), "untouched");
}

}  // namespace
}  // namespace velmora::os
