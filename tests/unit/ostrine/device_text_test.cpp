#include "ostrine/common/device_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "ostrine/common/bluetooth_type.h"
#include "ostrine/common/firmware_setting.h"
#include "ostrine/common/natural_order.h"

namespace ostrine {
namespace {

TEST(NaturalOrder, CountsNumbersWithinNames) {
  EXPECT_TRUE(ComesBefore("hwmon2", "hwmon10"));
  EXPECT_FALSE(ComesBefore("hwmon10", "hwmon2"));
  EXPECT_TRUE(ComesBefore("1-2", "1-10"));
  EXPECT_TRUE(ComesBefore("temp9_input", "temp10_input"));
  EXPECT_TRUE(ComesBefore("hci", "hci0"));
}

TEST(NaturalOrder, TakesNumbersOfAnyLength) {
  EXPECT_TRUE(ComesBefore("a99999999999999999999999998", "a99999999999999999999999999"));
  EXPECT_TRUE(ComesBefore("a18446744073709551616", "a18446744073709551617"));
}

TEST(NaturalOrder, IsStrictForAnyNames) {
  std::mt19937 random(1);
  const auto any_name = [&] {
    std::string name;
    for (auto length = random() % 6; length > 0; --length) name.push_back("019a-\xFF"[random() % 6]);
    return name;
  };
  for (int i = 0; i < 20000; ++i) {
    const std::string a = any_name();
    const std::string b = any_name();
    const std::string c = any_name();
    EXPECT_EQ(ComesBefore(a, b) + ComesBefore(b, a), a == b ? 0 : 1) << a << " and " << b;
    EXPECT_TRUE(ComesBefore(a, c) || !ComesBefore(a, b) || !ComesBefore(b, c)) << a << b << c;
  }
}

TEST(DottedVersion, IsTheNumbersAtAReleasesBeginning) {
  EXPECT_EQ(DottedVersion("6.1.0-18-amd64"), "6.1.0.18");
  EXPECT_EQ(DottedVersion("6.18.44-fc-v657"), "6.18.44");
  EXPECT_EQ(DottedVersion("5.15.0-91-generic"), "5.15.0.91");
  EXPECT_EQ(DottedVersion("6.8"), "6.8");
  EXPECT_EQ(DottedVersion("1.2.3.4.5"), "1.2.3.4");
  EXPECT_EQ(DottedVersion("6."), "6");
}

TEST(DottedVersion, IsEmptyForATextThatBeginsOtherwise) {
  EXPECT_EQ(DottedVersion(""), "");
  EXPECT_EQ(DottedVersion("-6.1"), "");
  EXPECT_EQ(DottedVersion("unknown"), "");
}

TEST(FirmwareDeviceName, IsThatOfTheFirstIdThatIsKnown) {
  EXPECT_EQ(FirmwareDeviceName({"LEN0071", "PNP0303"}), "Standard PS/2 Keyboard");
  EXPECT_EQ(FirmwareDeviceName({"INT0E0C"}), "Software Guard Extensions Device");
  EXPECT_EQ(FirmwareDeviceName({"XYZ0001"}), "");
  EXPECT_EQ(FirmwareDeviceName({}), "");
}

TEST(NeedsNoDriver, HoldsForPartsOfTheBoardOnly) {
  EXPECT_TRUE(NeedsNoDriver({"PNP0C02"}));
  EXPECT_TRUE(NeedsNoDriver({"XYZ0001", "PNP0A03"}));
  EXPECT_FALSE(NeedsNoDriver({"PNP0303"}));
  EXPECT_FALSE(NeedsNoDriver({}));
}

TEST(PciClassName, IsThatOfTheMostExactClassKnown) {
  EXPECT_EQ(PciClassName(0x0C0330), "USB controller");
  EXPECT_EQ(PciClassName(0x0C8000), "Serial bus controller");
  EXPECT_EQ(PciClassName(0xFFFF00), "PCI device");
}

TEST(FingerprintReader, IsKnownByItsNameOrItsFirmwareId) {
  EXPECT_TRUE(IsFingerprintReader("Goodix FingerPrint USB Device", {}));
  EXPECT_TRUE(IsFingerprintReader("", {"GXFP5187"}));
  EXPECT_FALSE(IsFingerprintReader("Integrated Camera", {"PNP0303"}));
  EXPECT_FALSE(IsFingerprintReader("", {}));
}

TEST(BluetoothType, GoesByTheIconFirst) {
  EXPECT_EQ(BluetoothType({.icon = "input-mouse", .appearance = 0x03C1, .class_of_device = {}}), "Mouse");
}

TEST(BluetoothType, GoesByTheAppearanceWhereTheIconDoesNotTell) {
  EXPECT_EQ(BluetoothType({.icon = "unheard-of", .appearance = 0x03C2, .class_of_device = 0x200404}),
            "Mouse");
  EXPECT_EQ(BluetoothType({.icon = "", .appearance = 0x0941, .class_of_device = {}}), "Headset");
}

TEST(BluetoothType, GoesByTheClassAtLast) {
  EXPECT_EQ(BluetoothType({.icon = "", .appearance = 0, .class_of_device = 0x002580}), "Mouse");
  EXPECT_EQ(BluetoothType({.icon = "", .appearance = {}, .class_of_device = 0x002540}), "Keyboard");
  EXPECT_EQ(BluetoothType({.icon = "", .appearance = {}, .class_of_device = 0x5A020C}), "Phone");
  EXPECT_EQ(BluetoothType({.icon = "", .appearance = {}, .class_of_device = 0x240404}), "Headset");
  EXPECT_EQ(BluetoothType({.icon = "", .appearance = {}, .class_of_device = 0x240408}), "Headset");
  EXPECT_EQ(BluetoothType({.icon = "", .appearance = {}, .class_of_device = 0x240418}), "Headphones");
  EXPECT_EQ(BluetoothType({.icon = "", .appearance = {}, .class_of_device = 0x240414}), "Audio Device");
}

TEST(BluetoothType, IsNeverEmpty) {
  EXPECT_EQ(BluetoothType({}), "Bluetooth Device");
  EXPECT_EQ(BluetoothType({.icon = "", .appearance = 0xFFFF, .class_of_device = 0xFFFFFFFF}),
            "Bluetooth Device");
}

TEST(FirmwareSetting, IsKnownByItsLettersAlone) {
  EXPECT_EQ(DeviceOfSetting("WirelessLANAccess"), SwitchedDevice::kWireless);
  EXPECT_EQ(DeviceOfSetting("Wireless Network Device (WLAN)"), SwitchedDevice::kWireless);
  EXPECT_EQ(DeviceOfSetting("BluetoothDevice"), SwitchedDevice::kBluetooth);
  EXPECT_EQ(DeviceOfSetting("Fingerprint Device"), SwitchedDevice::kFingerprint);
  EXPECT_EQ(DeviceOfSetting("IntegratedAudio"), SwitchedDevice::kAudio);
}

TEST(FirmwareSetting, IsNoneForAnyOtherName) {
  EXPECT_FALSE(DeviceOfSetting("WirelessAutoDisconnection"));
  EXPECT_FALSE(DeviceOfSetting("BluetoothAccessPassword"));
  EXPECT_FALSE(DeviceOfSetting(""));
}

TEST(FirmwareSetting, IsOnOrOffByItsWord) {
  EXPECT_EQ(ParseSwitch("Enable"), true);
  EXPECT_EQ(ParseSwitch("ENABLED"), true);
  EXPECT_EQ(ParseSwitch("Disable"), false);
  EXPECT_EQ(ParseSwitch("Off"), false);
  EXPECT_FALSE(ParseSwitch("Automatic"));
  EXPECT_FALSE(ParseSwitch(""));
}

}  // namespace
}  // namespace ostrine
