#include "velmora/devicekind.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/ostrine/setup_class.h"
#include "simulator/guid_text.h"
#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"

namespace {

using simulator::Fault;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using velmora::testing::NoLogger;

constexpr const char* kDacTypeQuery = "SELECT AdapterDACType FROM Win32_VideoController WHERE Caption ='";

/// A device of the class whose driver version is "version of " and its hardware ID.
simulator::Device Device(const char* setup_class, const std::string& hardware_id,
                         const std::string& description = "A device") {
  return {.setup_class = setup_class,
          .hardware_ids = {hardware_id},
          .description = description,
          .driver_version = "version of " + hardware_id};
}

simulator::Machine MachineWith(std::vector<simulator::Device> devices) {
  auto machine = simulator::BlankMachine();
  machine.cpu = {.kind = 1};
  machine.devices = std::move(devices);
  return machine;
}

std::wstring Version(simulator::Machine machine, stDEVICE_DRIVER_TYPE kind) {
  const auto run = simulator::Use(std::move(machine));
  return GetDeviceDriverVersion(kind);
}

std::vector<std::string> Trace(simulator::Machine machine, stDEVICE_DRIVER_TYPE kind) {
  const auto run = simulator::Use(std::move(machine));
  GetDeviceDriverVersion(kind);
  return run.Trace();
}

/// A machine with display adapters of these IDs, described as "Adapter 0", "Adapter 1" and so on, of which
/// WMI says that their converters are of these types.
simulator::Machine MachineWithAdapters(const std::vector<std::string>& hardware_ids,
                                       const std::vector<std::string>& converters = {}) {
  auto machine = MachineWith({});
  for (const auto& id : hardware_ids) {
    machine.devices->push_back(Device("Display", id, "Adapter " + std::to_string(machine.devices->size())));
  }
  machine.wmi.emplace();
  auto& rows = machine.wmi->classes["Win32_VideoController"];
  for (const auto& converter : converters) {
    rows.push_back({{"Caption", "Adapter " + std::to_string(rows.size())}, {"AdapterDACType", converter}});
  }
  return machine;
}

TEST(DeviceKind, HasTheNumbersThatHostsKnow) {
  static_assert(sizeof(stDEVICE_DRIVER_TYPE) == 4);
  EXPECT_EQ(static_cast<int>(emDEVICE_WIRELESS), 0);
  EXPECT_EQ(static_cast<int>(emDEVICE_BLUETOOTH), 1);
  EXPECT_EQ(static_cast<int>(emDEVICE_RESERVED2), 2);
  EXPECT_EQ(static_cast<int>(emDEVICE_FINGERPRINT), 3);
  EXPECT_EQ(static_cast<int>(emDEVICE_RESERVED4), 4);
  EXPECT_EQ(static_cast<int>(emDEVICE_AUDIO), 5);
  EXPECT_EQ(static_cast<int>(emDEVICE_KEYBOARD), 6);
  EXPECT_EQ(static_cast<int>(emDEVICE_DISPLAY), 7);
  EXPECT_EQ(static_cast<int>(emDEVICE_RESERVED8), 8);
  EXPECT_EQ(static_cast<int>(emDEVICE_USB), 9);
}

TEST(DeviceKind, StandsForTheSystemsSetupClass) {
  namespace setup_class = velmora::setup_class;
  EXPECT_EQ(simulator::GuidText(setup_class::kNet), "{4D36E972-E325-11CE-BFC1-08002BE10318}");
  EXPECT_EQ(simulator::GuidText(setup_class::kBluetooth), "{E0CBF06C-CD8B-4647-BB8A-263B43F0F974}");
  EXPECT_EQ(simulator::GuidText(setup_class::kBiometric), "{53D29EF7-377C-4D14-864B-EB3A85769359}");
  EXPECT_EQ(simulator::GuidText(setup_class::kMedia), "{4D36E96C-E325-11CE-BFC1-08002BE10318}");
  EXPECT_EQ(simulator::GuidText(setup_class::kKeyboard), "{4D36E96B-E325-11CE-BFC1-08002BE10318}");
  EXPECT_EQ(simulator::GuidText(setup_class::kDisplay), "{4D36E968-E325-11CE-BFC1-08002BE10318}");
}

TEST(DriverVersion, IsEmptyForKindsWithoutADeviceAndAsksNobody) {
  const auto run = simulator::Use(simulator::BlankMachine());
  for (const std::uint32_t kind : {2U, 4U, 8U, 9U, 10U, 255U, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(GetDeviceDriverVersion(static_cast<stDEVICE_DRIVER_TYPE>(kind)), L"") << kind;
  }
  EXPECT_EQ(run.Calls(), 0);
}

TEST(DriverVersion, OfWirelessIsThatOfTheWirelessNetworkCard) {
  const std::string key =
      "SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e972-e325-11ce-bfc1-08002be10318}\\000";
  auto machine =
      MachineWith({Device("Net", "PCI\\VEN_10EC&DEV_8168"), Device("Net", "PCI\\VEN_8086&DEV_A0F0")});
  machine.registry = {{key + "0",
                       {.values = {{"ComponentId", {.text = "pci\\ven_10ec"}},
                                   {"*PhysicalMediaType", {.type = 4, .number = 14}}}}},
                      {key + "1",
                       {.values = {{"ComponentId", {.text = "pci\\ven_8086"}},
                                   {"*PhysicalMediaType", {.type = 4, .number = 9}}}}}};
  EXPECT_EQ(Version(machine, emDEVICE_WIRELESS), L"version of PCI\\VEN_8086&DEV_A0F0");
}

TEST(DriverVersion, OfBluetoothIsThatOfTheLastRadioInTheClass) {
  EXPECT_EQ(Version(MachineWith({Device("Bluetooth", "USB\\FIRST"), Device("Bluetooth", "QCA_SHB\\SECOND"),
                                 Device("Bluetooth", "BTHENUM\\Dev_AABBCCDDEEFF")}),
                    emDEVICE_BLUETOOTH),
            L"version of QCA_SHB\\SECOND");
  EXPECT_EQ(Version(MachineWith({Device("Bluetooth", "QCA_SHB\\FIRST"), Device("Bluetooth", "USB\\SECOND")}),
                    emDEVICE_BLUETOOTH),
            L"version of USB\\SECOND");
}

TEST(DriverVersion, OfBluetoothHeedsLetterCaseAndBeginsOnly) {
  const auto machine = MachineWith({Device("Bluetooth", "usb\\small"), Device("Bluetooth", "qca_shb"),
                                    Device("Bluetooth", "BTHUSB\\inside"), Device("Bluetooth", "XQCA_SHB"),
                                    Device("USB", "USB\\OTHER_CLASS")});
  EXPECT_EQ(Version(machine, emDEVICE_BLUETOOTH), L"");
  EXPECT_THAT(Trace(machine, emDEVICE_BLUETOOTH), ElementsAre("GetDeviceHardwareID(Bluetooth)"));
}

TEST(DriverVersion, OfBluetoothAsksForTheIdsThenForTheVersion) {
  EXPECT_THAT(
      Trace(MachineWith({Device("Bluetooth", "USB\\X")}), emDEVICE_BLUETOOTH),
      ElementsAre("GetDeviceHardwareID(Bluetooth)", "GetDeviceStrInfoByHardwareID(USB\\X, Bluetooth, 2)"));
}

TEST(DriverVersion, OfTheFingerprintReaderIsThatOfTheFirstOnAcpi) {
  const auto machine = MachineWith({Device("Biometric", "USB\\VID_06CB"), Device("Biometric", "ACPI\\FIRST"),
                                    Device("Biometric", "ACPI\\SECOND")});
  EXPECT_EQ(Version(machine, emDEVICE_FINGERPRINT), L"version of ACPI\\FIRST");
}

TEST(DriverVersion, OfAudioIsThatOfAFreshlyMadeAudioObject) {
  const auto machine = MachineWith({Device("Media", "HDAUDIO\\FUNC_01&VEN_10EC")});
  EXPECT_EQ(Version(machine, emDEVICE_AUDIO), L"version of HDAUDIO\\FUNC_01&VEN_10EC");
  EXPECT_THAT(Trace(machine, emDEVICE_AUDIO),
              ElementsAre("HalInit(5, pointer)", "HalQueryInformation(5, null, 0, 4)", "HalInit(0, null)",
                          "HalQueryInformation(0, null, 19, 4)", "GetDeviceHardwareID(Media)",
                          "GetDeviceStrInfoByHardwareID(HDAUDIO\\FUNC_01&VEN_10EC, Media, 2)"));
}

TEST(DriverVersion, OfTheKeyboardIsTheIdOfTheFirstOnAcpiAndNeverAVersion) {
  const auto machine = MachineWith({Device("Keyboard", "HID\\VID_046D"), Device("Keyboard", "acpi\\small"),
                                    Device("Keyboard", "ACPI\\LEN0071"), Device("Keyboard", "ACPI\\SECOND")});
  EXPECT_EQ(Version(machine, emDEVICE_KEYBOARD), L"ACPI\\LEN0071");
  EXPECT_THAT(Trace(machine, emDEVICE_KEYBOARD), ElementsAre("GetDeviceHardwareID(Keyboard)"));
  EXPECT_EQ(Version(MachineWith({Device("Keyboard", "HID\\VID_046D")}), emDEVICE_KEYBOARD), L"");
}

TEST(DriverVersion, OfTheDisplayIsThatOfTheOnlyAdapter) {
  const auto machine = MachineWithAdapters({"ROOT\\BasicDisplay", "PCI\\ONLY", "pci\\small"});
  EXPECT_EQ(Version(machine, emDEVICE_DISPLAY), L"version of PCI\\ONLY");
  EXPECT_THAT(
      Trace(machine, emDEVICE_DISPLAY),
      ElementsAre("GetDeviceHardwareID(Display)", "GetDeviceStrInfoByHardwareID(PCI\\ONLY, Display, 2)"));
}

TEST(DriverVersion, OfTwoDisplaysIsThatOfTheFirstWhenItsConverterIsInternal) {
  for (const char* const converter : {"Internal", "INTERNAL", "xinternalx"}) {
    EXPECT_EQ(Version(MachineWithAdapters({"PCI\\FIRST", "PCI\\SECOND"}, {converter, ""}), emDEVICE_DISPLAY),
              L"version of PCI\\FIRST")
        << converter;
  }
}

TEST(DriverVersion, OfTwoDisplaysIsThatOfTheSecondOtherwise) {
  const std::vector<std::string> ids{"PCI\\FIRST", "PCI\\SECOND"};
  EXPECT_EQ(Version(MachineWithAdapters(ids, {"Integrated RAMDAC", "Internal"}), emDEVICE_DISPLAY),
            L"version of PCI\\SECOND");
  EXPECT_EQ(Version(MachineWithAdapters(ids), emDEVICE_DISPLAY), L"version of PCI\\SECOND")
      << "WMI knows no adapter";
  auto machine = MachineWithAdapters(ids, {"Internal"});
  machine.wmi->broken = true;
  EXPECT_EQ(Version(machine, emDEVICE_DISPLAY), L"version of PCI\\SECOND") << "WMI does not answer";
}

TEST(DriverVersion, OfTwoDisplaysAsksWmiAboutTheDescriptionOfTheFirst) {
  const auto trace = Trace(MachineWithAdapters({"ROOT\\X", "PCI\\FIRST", "PCI\\SECOND"}, {"", "Internal"}),
                           emDEVICE_DISPLAY);
  EXPECT_THAT(trace, Contains("GetDeviceStrInfoByHardwareID(PCI\\FIRST, Display, 0)"));
  EXPECT_THAT(trace, Contains("CWMI(ROOT\\CIMV2)"));
  EXPECT_THAT(trace, Contains("SelectStr(" + std::string(kDacTypeQuery) + "Adapter 1', AdapterDACType)"));
  EXPECT_EQ(trace.front(), "GetDeviceHardwareID(Display)");
  EXPECT_EQ(trace.back(), "GetDeviceStrInfoByHardwareID(PCI\\FIRST, Display, 2)");
}

TEST(DriverVersion, OfTwoDisplaysAsksWmiNothingAboutADescriptionWithAnApostrophe) {
  auto machine = MachineWithAdapters({"PCI\\FIRST", "PCI\\SECOND"}, {"Internal"});
  machine.devices->front().description = "x' OR Caption LIKE '%";
  EXPECT_EQ(Version(machine, emDEVICE_DISPLAY), L"version of PCI\\SECOND");
  EXPECT_THAT(Trace(machine, emDEVICE_DISPLAY), Not(Contains(StartsWith("SelectStr"))));
}

TEST(DriverVersion, OfNoneOrMoreThanTwoDisplaysIsEmpty) {
  EXPECT_EQ(Version(MachineWithAdapters({}), emDEVICE_DISPLAY), L"");
  EXPECT_EQ(Version(MachineWithAdapters({"ROOT\\X"}), emDEVICE_DISPLAY), L"");
  const auto three = MachineWithAdapters({"PCI\\A", "PCI\\B", "PCI\\C"}, {"Internal"});
  EXPECT_EQ(Version(three, emDEVICE_DISPLAY), L"");
  EXPECT_THAT(Trace(three, emDEVICE_DISPLAY), ElementsAre("GetDeviceHardwareID(Display)"));
}

TEST(DriverVersion, IsEmptyOfEveryKindOnAMachineThatHasNothing) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  for (std::uint32_t kind = 0; kind < 12; ++kind) {
    EXPECT_EQ(GetDeviceDriverVersion(static_cast<stDEVICE_DRIVER_TYPE>(kind)), L"") << kind;
  }
}

TEST(DriverVersion, ThrowsNothingWhateverThrowsBelowIt) {
  const NoLogger none;
  for (std::uint32_t kind = 0; kind < 8; ++kind) {
    auto machine = simulator::EmptyMachine();
    machine.devices = MachineWithAdapters({"PCI\\A", "PCI\\B"}).devices;
    machine.devices->push_back(Device("Bluetooth", "USB\\X"));
    machine.devices->push_back(Device("Keyboard", "ACPI\\X"));
    auto run = simulator::Use(std::move(machine));
    run.Inject(Fault::kThrow, 0, true);
    EXPECT_EQ(GetDeviceDriverVersion(static_cast<stDEVICE_DRIVER_TYPE>(kind)), L"") << kind;
  }
}

}  // namespace
