#include "platform/linux/device_control.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <fstream>
#include <string_view>
#include <vector>

#include "platform/linux/bluetooth_reset.h"
#include "platform/linux/descriptor.h"
#include "platform/os/last_error.h"
#include "tests/integration/linux/mock_bus.h"
#include "tests/unit/ostrine/linux/fake_root.h"

namespace velmora::os {
namespace {

using ostrine::test::ContentOf;
using ostrine::test::FakeRoot;

constexpr const wchar_t* kResetDriver = L"\\\\.\\IBTRSTD";
constexpr std::uint32_t kResetRequest = 0x002211FC;
const std::filesystem::path kUsbDevice = "sys/devices/pci0000:00/usb1/1-5";

/// A machine whose Bluetooth adapter hci0 stands on a USB device.
void AddResettableAdapter(const FakeRoot& root) {
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

/// Counts how often a file is written to and closed.
class FileWatch {
 public:
  explicit FileWatch(const std::filesystem::path& path) : watch_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    inotify_add_watch(watch_.Number(), path.c_str(), IN_MODIFY | IN_CLOSE_WRITE);
  }
  int Writes() const {
    alignas(inotify_event) char events[4096];
    const ssize_t size = read(watch_.Number(), events, sizeof events);
    int writes = 0;
    for (ssize_t at = 0; at < size; at += static_cast<ssize_t>(sizeof(inotify_event))) {  // without names
      if ((reinterpret_cast<const inotify_event*>(events + at)->mask & IN_MODIFY) != 0) ++writes;
    }
    return writes;
  }

 private:
  Descriptor watch_;
};

/// Notes what a property of a made-up service changes to.
int NotePowered(sd_bus_message* message, void* states, sd_bus_error* /*error*/) {
  const char* interface = nullptr;
  const char* property = nullptr;
  int powered = 0;
  const bool is_powered = sd_bus_message_read(message, "s", &interface) > 0 &&
                          sd_bus_message_enter_container(message, 'a', "{sv}") > 0 &&
                          sd_bus_message_enter_container(message, 'e', "sv") > 0 &&
                          sd_bus_message_read(message, "s", &property) > 0 &&
                          std::string_view(property) == "Powered" &&
                          sd_bus_message_read(message, "v", "b", &powered) > 0;
  if (is_powered) static_cast<std::vector<int>*>(states)->push_back(powered);
  return 0;
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
  AddResettableAdapter(root_);
  const Handle device = OpenDevice(root_.Path(), kResetDriver);
  ASSERT_NE(device, InvalidHandle());
  EXPECT_TRUE(CloseHandle(device));
  const Handle again = OpenDevice(root_.Path(), L"\\\\.\\ibtrstd");
  ASSERT_NE(again, InvalidHandle());
  EXPECT_TRUE(CloseHandle(again));
}

TEST_F(ResetDriver, IsTheOnlyDevice) {
  AddResettableAdapter(root_);
  for (const wchar_t* name :
       {L"\\\\.\\PhysicalDrive0", L"", L"/etc/hosts", static_cast<const wchar_t*>(nullptr)}) {
    EXPECT_EQ(OpenDevice(root_.Path(), name), InvalidHandle());
    EXPECT_EQ(LastError(), 2u);
  }
}

TEST_F(ResetDriver, SwitchesTheUsbDeviceOffAndOnAgain) {
  AddResettableAdapter(root_);
  const auto file = root_.Path() / kUsbDevice / "authorized";
  const FileWatch watch(file);
  const Handle device = OpenDevice(root_.Path(), kResetDriver);
  EXPECT_TRUE(Request(device)) << LastError();
  EXPECT_EQ(ContentOf(file), "1\n");
  EXPECT_EQ(watch.Writes(), 2);
  EXPECT_EQ(ContentOf(root_.Path() / kUsbDevice / "1-5:1.0/authorized"), "1\n");
  EXPECT_TRUE(CloseHandle(device));
}

TEST_F(ResetDriver, FailsWithoutTheRightToSwitch) {
  AddResettableAdapter(root_);
  root_.Forbid((kUsbDevice / "authorized").string());
  const ostrine::test::WithoutRights without_rights;
  EXPECT_EQ(ResetBluetoothAdapter(root_.Path(), "hci0"), kErrorAccessDenied);
}

TEST_F(ResetDriver, FailsWhenTheSwitchDoesNotReadBackAsItWasSet) {
  AddResettableAdapter(root_);
  root_.Write((kUsbDevice / "authorized").string(), "1 and more\n");  // more than is written over it
  EXPECT_EQ(ResetBluetoothAdapter(root_.Path(), "hci0"), kErrorGeneralFailure);
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
  AddResettableAdapter(root_);
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
  std::vector<int> states;
  ASSERT_GE(sd_bus_match_signal(bluez.Connection()->Get(), nullptr, adapter.service, adapter.path,
                                "org.freedesktop.DBus.Properties", "PropertiesChanged", NotePowered, &states),
            0);

  const FakeRoot root;
  AddResettableAdapter(root);
  root.Write((kUsbDevice / "authorized").string(), "untouched");
  EXPECT_EQ(ResetBluetoothAdapter(root.Path(), "hci0"), 0u);
  EXPECT_EQ(ReadBusFlag(bluez.Connection(), adapter, "Powered"), true);
  while (sd_bus_process(bluez.Connection()->Get(), nullptr) > 0) {
  }
  EXPECT_EQ(states, (std::vector<int>{0, 1}));
  EXPECT_EQ(ContentOf(root.Path() / kUsbDevice / "authorized"), "untouched");
}

/// A service whose adapters cannot be switched.
class StubbornService : public testing::Test {
 protected:
  StubbornService() {
    bluez_.Call("org.freedesktop.DBus.Mock", "AddAdapter", {"hci0", "00:1A:7D:DA:71:13", "on"});
    bluez_.Call("org.freedesktop.DBus.Mock", "RefuseToSwitch", {});
  }
  const test::PrivateBus bus_;
  const test::MockService bluez_{VELMORA_TEST_FILES "/bluez_mock.py", "org.bluez", "/"};
  const FakeRoot root_;
};

TEST_F(StubbornService, IsPassedOverWhereTheAdapterStandsOnUsb) {
  AddResettableAdapter(root_);
  const FileWatch watch(root_.Path() / kUsbDevice / "authorized");
  EXPECT_EQ(ResetBluetoothAdapter(root_.Path(), "hci0"), 0u);
  EXPECT_EQ(watch.Writes(), 2);
}

TEST_F(StubbornService, GivesItsErrorWhereThereIsNoOtherWay) {
  EXPECT_EQ(ResetBluetoothAdapter(root_.Path(), "hci0"), kErrorGeneralFailure);
}

}  // namespace
}  // namespace velmora::os
