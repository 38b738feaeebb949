/// CBluetooth on a made-up laptop with a made-up Bluetooth service.
#include "velmora/bluetooth.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/linux/fake_machine.h"
#include "tests/unit/ostrine/linux/mock_services.h"

namespace {

using ostrine::test::ActsOn;
using ostrine::test::BuildLaptop;
using ostrine::test::FakeMachine;
using ostrine::test::MockServices;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kRadio = "pci0000:00/0000:00:14.0/usb1/1-10";
constexpr const wchar_t* kHeadset = L"BTHENUM\\Dev_102030405060";
constexpr const wchar_t* kLowEnergyKeyboard = L"BTHLE\\Dev_102030405062";
constexpr const wchar_t* kMouse = L"BTHLE\\Dev_AABBCCDDEEFF";

class LinuxBluetooth : public testing::Test {
 protected:
  LinuxBluetooth() { BuildLaptop(machine_); }

  FakeMachine machine_;
  ActsOn acts_on_{machine_};
  CBluetooth bluetooth_;
};

TEST_F(LinuxBluetooth, HasItsAdapterOnUsb) {
  machine_.WriteFile("usr/share/misc/usb.ids", "8087  Intel Corp.\n\t0033  AX211 Bluetooth\n");
  machine_.WriteFile("proc/sys/kernel/osrelease", "6.1.0-18-amd64\n");
  EXPECT_EQ(bluetooth_.GetHardwareID(), L"USB\\VID_8087&PID_0033&REV_0000");
  EXPECT_EQ(bluetooth_.GetDeviceName(), L"Intel Corp. AX211 Bluetooth");
  EXPECT_EQ(bluetooth_.GetManufacturer(), L"Intel Corp.");
  EXPECT_EQ(bluetooth_.GetDriverVersion(), L"6.1.0.18");
  EXPECT_EQ(GetBlueToothDriverName(), L"Intel Corp. AX211 Bluetooth");
  EXPECT_EQ(bluetooth_.GetDeviceErrorState(), 0u);
  EXPECT_EQ(bluetooth_.IsInUnKownClass(), 0);
  EXPECT_EQ(bluetooth_.IsInUSBClass(), 0);
}

TEST_F(LinuxBluetooth, HasItsAdapterAlsoWhileThatHasNoDriver) {
  for (const char* const part : {"/1-10:1.0", "/1-10:1.1"}) {
    std::filesystem::remove(machine_.Device(std::string(kRadio) + part) / "driver");
  }
  EXPECT_EQ(bluetooth_.GetHardwareID(), L"USB\\VID_8087&PID_0033&REV_0000");
  EXPECT_EQ(bluetooth_.GetDeviceErrorState(), 28u);
}

TEST_F(LinuxBluetooth, HasASwitchedOffAdapterWhenItMayNotBeUsed) {
  machine_.Write(kRadio, {{"authorized", "0"}});
  EXPECT_EQ(bluetooth_.GetDeviceErrorState(), 22u);
}

TEST_F(LinuxBluetooth, HasNoAdapterOnceThatIsUnplugged) {
  std::filesystem::remove(machine_.Path() / "sys/bus/usb/devices/1-10");
  EXPECT_EQ(bluetooth_.GetHardwareID(), L"");
  EXPECT_EQ(bluetooth_.GetDeviceErrorState(), 0xFFFFFFFFu);
  EXPECT_EQ(bluetooth_.IsInUnKownClass(), 0);
  EXPECT_EQ(bluetooth_.IsInUSBClass(), 0) << "the hub that is switched off does not count";
}

TEST_F(LinuxBluetooth, ListsTheRemoteDevicesThatItsServiceKnows) {
  const MockServices services(machine_, {"bluez"});
  EXPECT_EQ(bluetooth_.GetHardwareID(), L"USB\\VID_8087&PID_0033&REV_0000");
  EXPECT_THAT(bluetooth_.GetExternalDeviceHardID(), ElementsAre(kHeadset, kLowEnergyKeyboard, kMouse));
  EXPECT_EQ(bluetooth_.GetExternalDeviceNameByHardID(kHeadset), L"Headset");
  EXPECT_EQ(bluetooth_.GetExternalDeviceTypeByHardId(kHeadset), L"Headset");
  EXPECT_EQ(bluetooth_.GetExternalDeviceTypeByHardId(kLowEnergyKeyboard), L"Keyboard");
  EXPECT_EQ(bluetooth_.GetExternalDeviceNameByHardID(kMouse), L"B\u00FCro Mouse");
  EXPECT_EQ(bluetooth_.GetExternalDeviceTypeByHardId(kMouse), L"Mouse");
  EXPECT_EQ(bluetooth_.GetExternalDeviceAddressByHardId(kMouse), L"AABBCCDDEEFF");
  EXPECT_THAT(bluetooth_.GetExternalBlteMouseHardID(), ElementsAre(kMouse));
}

TEST_F(LinuxBluetooth, ListsNoRemoteDeviceWithoutItsService) {
  EXPECT_THAT(bluetooth_.GetExternalDeviceHardID(), IsEmpty());
  EXPECT_THAT(bluetooth_.GetExternalBlteMouseHardID(), IsEmpty());
}

}  // namespace
