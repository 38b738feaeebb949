#include "platform/ostrine/deviceinformation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/ostrine/setup_class.h"
#include "platform/ostrine/stringproc.h"
#include "tests/support/linux/fake_machine.h"

namespace ostrine {
namespace {

namespace setup_class = velmora::setup_class;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const std::wstring kWireless = L"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01";
const std::wstring kKeyboard = L"ACPI\\LEN0071";

class LaptopDevices : public testing::Test {
 protected:
  LaptopDevices() { test::BuildLaptop(machine_); }

  std::wstring Text(const std::wstring& id, GUID setup_class, enmDEVICE_PROPERTY property) {
    return information_.GetDeviceStrInfoByHardwareID(id, setup_class, property);
  }
  unsigned long Problem(const std::wstring& id, GUID setup_class) {
    return information_.GetDeviceULONGInfoByHardwareID(id, setup_class, PROP_PROBLEM_CODE);
  }
  std::uint64_t ChangeTime(const std::string& file) const {
    struct stat status{};
    EXPECT_EQ(stat((machine_.Path() / file).c_str(), &status), 0);
    return static_cast<std::uint64_t>(status.st_ctim.tv_sec) * 1000 +
           static_cast<std::uint64_t>(status.st_ctim.tv_nsec) / 1'000'000;
  }

  test::FakeMachine machine_;
  test::ActsOn acts_on_{machine_};
  CDeviceInformention information_;
};

TEST_F(LaptopDevices, AreListedByClass) {
  EXPECT_THAT(information_.GetDeviceHardwareID(setup_class::kNet),
              ElementsAre(kWireless, L"PCI\\VEN_8086&DEV_1A1F&SUBSYS_22E617AA&REV_01"));
  EXPECT_THAT(information_.GetDeviceHardwareID(setup_class::kBluetooth),
              ElementsAre(L"USB\\VID_8087&PID_0033&REV_0000"));
  EXPECT_THAT(information_.GetDeviceHardwareID(setup_class::kBiometric),
              ElementsAre(L"USB\\VID_06CB&PID_00F9&REV_0000"));
  EXPECT_THAT(information_.GetDeviceHardwareID(setup_class::kMedia),
              ElementsAre(L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA22E6&REV_1000"));
  EXPECT_THAT(information_.GetDeviceHardwareID(setup_class::kKeyboard), ElementsAre(kKeyboard))
      << "the port that the firmware describes is no second keyboard";
  EXPECT_THAT(information_.GetDeviceHardwareID(setup_class::kDisplay),
              ElementsAre(L"PCI\\VEN_8086&DEV_46A6&SUBSYS_22E617AA&REV_0C",
                          L"PCI\\VEN_10DE&DEV_25A0&SUBSYS_22E617AA&REV_A1"));
  EXPECT_THAT(information_.GetDeviceHardwareID(setup_class::kUsb),
              ElementsAre(L"PCI\\VEN_8086&DEV_51ED&SUBSYS_22E617AA&REV_01",
                          L"USB\\VID_05E3&PID_0610&REV_0655", L"USB\\VID_05E3&PID_0610&REV_0660",
                          L"USB\\VID_04F2&PID_B761&REV_0802", L"USB\\ROOT_HUB20"));
}

TEST_F(LaptopDevices, OfTheSystemClassLeaveOutWhatTheKernelInvents) {
  const auto ids = information_.GetDeviceHardwareID(setup_class::kSystem);
  EXPECT_THAT(ids, Contains(L"ACPI\\INT0E0C"));
  EXPECT_THAT(ids, Not(Contains(L"ACPI\\LNXSYSTM")));
}

TEST_F(LaptopDevices, ThatTheFirmwareCallsAbsentAreNotListed) {
  EXPECT_THAT(information_.GetDeviceHardwareID(setup_class::kSystem), Not(Contains(L"ACPI\\XYZ0002")));
}

TEST_F(LaptopDevices, TellTheirDriversVersion) {
  EXPECT_EQ(Text(kWireless, setup_class::kNet, PROP_DRIVER_VERSION), L"6.1.0.18") << "that of the kernel";
  EXPECT_EQ(Text(L"PCI\\VEN_8086&DEV_1A1F", setup_class::kNet, PROP_DRIVER_VERSION), L"3.2.6-k")
      << "that of the module";
  EXPECT_EQ(Text(L"PCI\\VEN_10DE&DEV_25A0", setup_class::kDisplay, PROP_DRIVER_VERSION), L"");
}

TEST_F(LaptopDevices, HaveNoInfFile) { EXPECT_EQ(Text(kWireless, setup_class::kNet, PROP_INF), L""); }

TEST_F(LaptopDevices, HaveAnInstanceIdOfHardwareIdAndAddress) {
  EXPECT_EQ(Text(kWireless, setup_class::kNet, PROP_INSTANCE_ID), kWireless + L"\\0000:00:14.3");
}

TEST_F(LaptopDevices, AreDescribedByTheirNumbersWithoutADatabase) {
  EXPECT_EQ(Text(kWireless, setup_class::kNet, PROP_DESCRIPTION), L"Network controller 8086:51F0");
  EXPECT_EQ(Text(kWireless, setup_class::kNet, PROP_DISPLAY_NAME), L"Network controller 8086:51F0");
  EXPECT_EQ(Text(L"USB\\VID_8087&PID_0033", setup_class::kBluetooth, PROP_DESCRIPTION),
            L"USB wireless device 8087:0033");
}

TEST_F(LaptopDevices, AreDescribedByTheListsOfNames) {
  machine_.WriteFile("usr/share/misc/pci.ids",
                     "8086  Intel Corporation\n\t51f0  CNVi WiFi\n\t\t8086 0094  Wi-Fi 6E AX211 160MHz\n"
                     "\t51e0  HECI Controller\n");
  machine_.WriteFile("usr/share/misc/usb.ids", "8087  Intel Corp.\n\t0033  AX211 Bluetooth\n");
  EXPECT_EQ(Text(kWireless, setup_class::kNet, PROP_DESCRIPTION), L"Intel Corporation Wi-Fi 6E AX211 160MHz");
  EXPECT_EQ(Text(kWireless, setup_class::kNet, PROP_MANUFACTURER), L"Intel Corporation");
  EXPECT_EQ(Text(L"USB\\VID_8087&PID_0033", setup_class::kBluetooth, PROP_DESCRIPTION),
            L"Intel Corp. AX211 Bluetooth");
  EXPECT_THAT(information_.GetDeviceDesc(setup_class::kSystem),
              Contains(L"Intel Corporation HECI Controller Management Engine Interface"));
}

TEST_F(LaptopDevices, AreDescribedByTheirOwnWordWhereTheyHaveOne) {
  EXPECT_THAT(information_.GetDeviceDesc(setup_class::kMedia), ElementsAre(L"Realtek ALC257"));
  EXPECT_THAT(information_.GetDeviceDesc(setup_class::kBiometric), ElementsAre(L"Fingerprint Reader"));
  EXPECT_THAT(information_.GetDeviceDesc(setup_class::kSystem),
              Contains(L"Software Guard Extensions Device"));
}

TEST_F(LaptopDevices, NameTheKeyboardAsTheKernelPresentsIt) {
  EXPECT_EQ(Text(kKeyboard, setup_class::kKeyboard, PROP_DESCRIPTION), L"Standard PS/2 Keyboard");
  EXPECT_EQ(Text(kKeyboard, setup_class::kKeyboard, PROP_DISPLAY_NAME), L"AT Translated Set 2 keyboard");
}

TEST_F(LaptopDevices, TellTheirClassAsTheirType) {
  EXPECT_EQ(Text(kWireless, setup_class::kNet, PROP_DEVICE_TYPE), L"Net");
  EXPECT_EQ(Text(kWireless, setup_class::kNet, PROP_DEVICE_NAME), L"");
}

TEST_F(LaptopDevices, WorkWithADriverAndFailWithout) {
  EXPECT_EQ(Problem(kWireless, setup_class::kNet), 0u);
  EXPECT_EQ(Problem(kKeyboard, setup_class::kKeyboard), 0u) << "its driver is bound to its physical node";
  EXPECT_EQ(Problem(L"PCI\\VEN_10DE&DEV_25A0", setup_class::kDisplay), 28u);
  EXPECT_EQ(Problem(L"PCI\\VEN_8086&DEV_4621", setup_class::kSystem), 0u) << "a bridge needs none";
  EXPECT_EQ(Problem(L"ACPI\\PNP0C02", setup_class::kSystem), 0u) << "nor do resources of the board";
}

TEST_F(LaptopDevices, ThatAreSwitchedOffAreDisabled) {
  EXPECT_EQ(Problem(L"USB\\VID_05E3&PID_0610&REV_0655", setup_class::kUsb), 0u);
  EXPECT_EQ(Problem(L"USB\\VID_05E3&PID_0610&REV_0660", setup_class::kUsb), 22u);
  EXPECT_EQ(Problem(L"ACPI\\XYZ0003", setup_class::kSystem), 22u);
}

TEST_F(LaptopDevices, ThatTheFirmwareOrTheKernelCallsBrokenCannotStart) {
  EXPECT_EQ(Problem(L"ACPI\\XYZ0004", setup_class::kSystem), 10u);
  machine_.Write("pci0000:00/0000:00:14.3", {{"power/runtime_status", "error"}});
  EXPECT_EQ(Problem(kWireless, setup_class::kNet), 10u);
}

TEST_F(LaptopDevices, AreFoundByDescriptionTheFirstOfTwins) {
  EXPECT_EQ(information_.GetDeviceStrInfoByDesc(L"usb2.1 HUB", setup_class::kUsb, PROP_HARDWARE_ID),
            L"USB\\VID_05E3&PID_0610&REV_0655");
  EXPECT_EQ(information_.GetDeviceULONGInfoByDesc(L"USB2.1 Hub", setup_class::kUsb, PROP_PROBLEM_CODE), 0u);
}

TEST_F(LaptopDevices, AreNotFoundInAnotherClass) {
  EXPECT_EQ(Text(kWireless, setup_class::kDisplay, PROP_DESCRIPTION), L"");
  EXPECT_EQ(Problem(kWireless, setup_class::kDisplay), 45u);
}

TEST_F(LaptopDevices, WithoutADriverAreUnknownUnlessTheyNeedNone) {
  EXPECT_THAT(information_.GetUnknownDeviceHardID(),
              ElementsAre(L"PCI\\VEN_10DE&DEV_25A0&SUBSYS_22E617AA&REV_A1",
                          L"USB\\VID_06CB&PID_00F9&REV_0000", L"ACPI\\XYZ0001"));
}

TEST_F(LaptopDevices, ThatProgramsDriveAreNotUnknown) {
  const std::string place = "pci0000:00/0000:00:14.0/usb1/1-7";
  const std::string start = "usb:v058Fp9540d0120dc00dsc00dp00";
  machine_.Add("usb", place, {});
  machine_.Bind("usb", place, "usb");
  machine_.Add("usb", place + "/1-7:1.0",
               {{"modalias", start + "icFFisc00ip00in00"}, {"bInterfaceNumber", "00"}});
  EXPECT_THAT(information_.GetUnknownDeviceHardID(), Contains(HasSubstr(L"VID_058F")));
  machine_.Write(place + "/1-7:1.0", {{"modalias", start + "ic0Bisc00ip00in00"}});
  EXPECT_THAT(information_.GetUnknownDeviceHardID(), Not(Contains(HasSubstr(L"VID_058F"))));
}

TEST_F(LaptopDevices, ThatAreVirtualAreNotUnknown) {
  machine_.Add("hid", "virtual/misc/uhid/0005:046D:B023.0001",
               {{"modalias", "hid:b0005g0001v0000046Dp0000B023"}});
  EXPECT_THAT(information_.GetUnknownDeviceHardID(), Not(Contains(HasSubstr(L"HID"))));
}

TEST_F(LaptopDevices, HaveTheirFingerprintReaderDrivenByTheServiceWhereItIsInstalled) {
  machine_.WriteFile("usr/libexec/fprintd", "program");
  EXPECT_EQ(Problem(L"USB\\VID_06CB&PID_00F9", setup_class::kBiometric), 0u);
}

TEST_F(LaptopDevices, WereInstalledWhenTheFileOfTheirModuleWas) {
  EXPECT_EQ(information_.GetLastIntallTime(kWireless, setup_class::kNet),
            ChangeTime("lib/modules/6.1.0-18-amd64/kernel/drivers/net/wireless/intel/iwlwifi/iwlwifi.ko.xz"));
  EXPECT_EQ(information_.GetLastIntallTime(L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA22E6",
                                           setup_class::kMedia),
            ChangeTime("lib/modules/6.1.0-18-amd64/kernel/sound/pci/hda/snd-hda-codec-realtek.ko"));
  EXPECT_EQ(information_.GetLastIntallTime(kKeyboard, setup_class::kKeyboard),
            ChangeTime("lib/modules/6.1.0-18-amd64/modules.builtin"));
}

TEST_F(LaptopDevices, HaveNoInstallTimeThatIsNotKnown) {
  EXPECT_EQ(information_.GetLastIntallTime(L"PCI\\VEN_8086&DEV_1A1F", setup_class::kNet), 0u)
      << "the list of modules lacks it";
  EXPECT_EQ(information_.GetLastIntallTime(L"PCI\\VEN_10DE&DEV_25A0", setup_class::kDisplay), 0u);
}

TEST_F(LaptopDevices, OfOneNameAreNumberedInTheirFriendlyNames) {
  machine_.Add("pci", "pci0000:00/0000:00:1c.0/0000:02:00.0",
               {{"modalias", "pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00"}, {"revision", "0x02"}});
  EXPECT_EQ(Text(L"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_02", setup_class::kNet, PROP_DISPLAY_NAME),
            L"Network controller 8086:51F0 #2");
  EXPECT_EQ(Text(L"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_02", setup_class::kNet, PROP_DESCRIPTION),
            L"Network controller 8086:51F0");
}

TEST_F(LaptopDevices, OnAParavirtualBusCountAsTheirPciFunction) {
  const std::string function = "pci0000:00/0000:00:03.0";
  machine_.Add("pci", function,
               {{"modalias", "pci:v00001AF4d00001041sv00001AF4sd00001041bc02sc00i00"}, {"revision", "0x01"}});
  machine_.Bind("pci", function, "virtio-pci");
  machine_.Add("virtio", function + "/virtio0", {{"modalias", "virtio:d00000001v00001AF4"}});
  EXPECT_EQ(Problem(L"PCI\\VEN_1AF4&DEV_1041", setup_class::kNet), 28u) << "the bus's driver is not enough";
  machine_.Bind("virtio", function + "/virtio0", "virtio_net");
  EXPECT_EQ(Problem(L"PCI\\VEN_1AF4&DEV_1041", setup_class::kNet), 0u);
  EXPECT_THAT(information_.GetDeviceHardwareID(setup_class::kNet), Not(Contains(HasSubstr(L"VIRTIO"))));
}

TEST(NoDevices, AreListedWhereThereAreNone) {
  const test::FakeMachine machine;
  const test::ActsOn acts_on(machine);
  CDeviceInformention information;
  EXPECT_THAT(information.GetDeviceDesc(setup_class::kNet), IsEmpty());
  EXPECT_THAT(information.GetUnknownDeviceHardID(), IsEmpty());
}

TEST(OldLaptop, NamesAKeyboardThatTheFirmwareDoesNotDescribe) {
  const test::FakeMachine machine;
  const test::ActsOn acts_on(machine);
  machine.Add("serio", "platform/i8042/serio0", {{"modalias", "serio:ty06pr00id00ex00"}});
  machine.Bind("serio", "platform/i8042/serio0", "atkbd");
  machine.Write("platform/i8042/serio0/input/input0",
                {{"name", "AT Translated Set 2 keyboard"}, {"capabilities/key", "fffffffffffffffe"}});
  CDeviceInformention information;
  EXPECT_THAT(information.GetDeviceDesc(setup_class::kKeyboard),
              ElementsAre(L"AT Translated Set 2 keyboard"));
  EXPECT_THAT(information.GetDeviceHardwareID(setup_class::kKeyboard), IsEmpty());
}

TEST(StringToWString, ReadsUtf8) {
  EXPECT_EQ(StringProc::StringToWString("B\xC3\xBCro"), L"B\u00FCro");
  EXPECT_EQ(StringProc::StringToWString("a\xFFz"), L"a\uFFFDz");
  EXPECT_EQ(StringProc::StringToWString(""), L"");
}

}  // namespace
}  // namespace ostrine
