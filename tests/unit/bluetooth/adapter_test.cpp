#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/allocations.h"
#include "tests/support/simulator/machines.h"
#include "velmora/bluetooth.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::testing::CapturedLog;
using velmora::testing::MachineWithDevices;

constexpr unsigned long kNone = 0xFFFFFFFF;

simulator::Device DeviceOf(const char* setup_class, const char* hardware_id) {
  return {.setup_class = setup_class, .hardware_ids = {hardware_id}};
}

simulator::Device Unknown(const char* hardware_id) {
  auto device = DeviceOf("", hardware_id);
  device.unknown = true;
  return device;
}

simulator::Device UsbDevice(const char* description, std::uint32_t problem_code) {
  auto device = DeviceOf("USB", "USB\\ROOT_HUB30");
  device.description = description;
  device.problem_code = problem_code;
  return device;
}

simulator::Device Adapter() {
  return {.setup_class = "Bluetooth",
          .hardware_ids = {"USB\\VID_8087&PID_0026&REV_0002", "USB\\VID_8087&PID_0026"},
          .description = "Wireless Bluetooth",
          .manufacturer = "ACME Radio",
          .driver_version = "22.80.0.4",
          .last_install_time = 1'638'403'260'000};
}

/// The adapter's hardware ID on a machine whose Bluetooth class has devices with these.
std::wstring HardwareIdAmong(std::initializer_list<const char*> ids) {
  std::vector<simulator::Device> devices;
  for (const char* const id : ids) devices.push_back(DeviceOf("Bluetooth", id));
  const auto run = simulator::Use(MachineWithDevices(devices));
  return CBluetooth().GetHardwareID();
}

struct Lost {
  int result;
  unsigned long code;
  bool operator==(const Lost&) const = default;
};

Lost UsbClassEx(const std::vector<simulator::Device>& devices) {
  const auto run = simulator::Use(MachineWithDevices(devices));
  Lost lost{7, 77};
  lost.result = CBluetooth().IsInUSBClassEx(lost.code);
  return lost;
}

int UnknownClass(const std::vector<simulator::Device>& devices) {
  const auto run = simulator::Use(MachineWithDevices(devices));
  return CBluetooth().IsInUnKownClass();
}

TEST(BluetoothAdapter, IsTheFirstEntryThatBeginsWithEitherPrefix) {
  EXPECT_EQ(HardwareIdAmong({"BTHENUM\\X", "QCA_SHB\\Y", "USB\\VID_1234"}), L"QCA_SHB\\Y");
  EXPECT_EQ(HardwareIdAmong({"BTHENUM\\X", "USB\\VID_1234", "QCA_SHB\\Y"}), L"USB\\VID_1234");
  EXPECT_EQ(HardwareIdAmong({"USB"}), L"USB");
  EXPECT_EQ(HardwareIdAmong({"USBSTOR\\Z"}), L"USBSTOR\\Z") << "three letters are all that is asked for";
}

TEST(BluetoothAdapter, IsNoEntryThatHoldsThePrefixElsewhereOrInOtherLetters) {
  EXPECT_EQ(HardwareIdAmong({"XUSB\\ABC", "usb\\VID_8087", "qca_shb\\1", "A\\QCA_SHB", "QCA_SH", "US"}), L"");
  EXPECT_EQ(HardwareIdAmong({}), L"");
}

TEST(BluetoothAdapter, IsLookedForInTheBluetoothClassOnly) {
  const auto run = simulator::Use(MachineWithDevices({DeviceOf("USB", "USB\\VID_8087&PID_0AAA")}));
  EXPECT_EQ(CBluetooth().GetHardwareID(), L"");
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Bluetooth)"));
}

TEST(BluetoothAdapter, TellsItsTexts) {
  const auto run = simulator::Use(MachineWithDevices({DeviceOf("Bluetooth", "BTHENUM\\Dev_1"), Adapter()}));
  CBluetooth bluetooth;
  EXPECT_EQ(bluetooth.GetHardwareID(), L"USB\\VID_8087&PID_0026&REV_0002");
  EXPECT_EQ(bluetooth.GetDeviceName(), L"Wireless Bluetooth");
  EXPECT_EQ(bluetooth.GetManufacturer(), L"ACME Radio");
  EXPECT_EQ(bluetooth.GetDriverVersion(), L"22.80.0.4");
}

TEST(BluetoothAdapter, IsAskedForEachTextByItsHardwareIdInTheBluetoothClass) {
  const auto run = simulator::Use(MachineWithDevices({DeviceOf("Bluetooth", "USB\\A")}));
  const CapturedLog log;
  CBluetooth bluetooth;
  bluetooth.GetDeviceName();
  bluetooth.GetManufacturer();
  bluetooth.GetDriverVersion();
  EXPECT_THAT(
      run.Trace(),
      ElementsAre("GetDeviceHardwareID(Bluetooth)", "GetDeviceStrInfoByHardwareID(USB\\A, Bluetooth, 0)",
                  "GetDeviceHardwareID(Bluetooth)", "GetDeviceStrInfoByHardwareID(USB\\A, Bluetooth, 1)",
                  "GetDeviceHardwareID(Bluetooth)", "GetDeviceStrInfoByHardwareID(USB\\A, Bluetooth, 2)"));
  EXPECT_THAT(log.Texts(), IsEmpty());
}

TEST(BluetoothAdapter, IsAskedForItsTextsAlsoWhenThereIsNone) {
  const auto run = simulator::Use(MachineWithDevices({}));
  EXPECT_EQ(CBluetooth().GetDeviceName(), L"");
  EXPECT_THAT(run.Trace(),
              ElementsAre("GetDeviceHardwareID(Bluetooth)", "GetDeviceStrInfoByHardwareID(, Bluetooth, 0)"));
}

TEST(BluetoothErrorState, IsTheAdaptersProblemCode) {
  auto adapter = Adapter();
  adapter.problem_code = 43;
  const auto run = simulator::Use(MachineWithDevices({adapter}));
  const CapturedLog log;
  EXPECT_EQ(CBluetooth().GetDeviceErrorState(), 43u);
  EXPECT_THAT(run.Trace(),
              ElementsAre("GetDeviceHardwareID(Bluetooth)",
                          "GetDeviceULONGInfoByHardwareID(USB\\VID_8087&PID_0026&REV_0002, Bluetooth, 10)"));
  EXPECT_THAT(log.Texts(), ElementsAre("uErrorState=43(CBluetooth::GetDeviceErrorState)"));
}

TEST(BluetoothErrorState, IsNoProblemCodeWithoutAnAdapter) {
  const auto run = simulator::Use(MachineWithDevices({DeviceOf("Bluetooth", "BTHENUM\\Dev_1")}));
  const CapturedLog log;
  EXPECT_EQ(CBluetooth().GetDeviceErrorState(), kNone);
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Bluetooth)"));
  EXPECT_THAT(log.Texts(), ElementsAre("uErrorState=4294967295(CBluetooth::GetDeviceErrorState)"));
}

TEST(LostBluetoothAdapter, IsNotLookedForWhileThereIsAnAdapter) {
  const auto run = simulator::Use(MachineWithDevices(
      {DeviceOf("Bluetooth", "USB\\A"), Unknown("USB\\VID_8087&PID_0AAA"), UsbDevice("Hub", 43)}));
  const CapturedLog log;
  CBluetooth bluetooth;
  unsigned long code = 77;
  EXPECT_EQ(bluetooth.IsInUSBClassEx(code), 0);
  EXPECT_EQ(code, 0u);
  EXPECT_EQ(bluetooth.IsInUSBClass(), 0);
  EXPECT_EQ(bluetooth.IsInUnKownClass(), 0);
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Bluetooth)", "GetDeviceHardwareID(Bluetooth)",
                                       "GetDeviceHardwareID(Bluetooth)"));
  EXPECT_THAT(log.Texts(), ElementsAre("not lost, hardId=USB\\A(CBluetooth::IsInUSBClassEx)",
                                       "not lost, hardId=USB\\A(CBluetooth::IsInUSBClassEx)",
                                       "not lost, hardId=USB\\A(CBluetooth::IsInUnKownClass)"));
}

TEST(LostBluetoothAdapter, AmongUnknownDevicesIsNotInTheUsbClass) {
  const std::vector devices{Unknown("USB\\VID_8087&PID_0AAA"), UsbDevice("Hub", 43)};
  EXPECT_EQ(UnknownClass(devices), 1);
  EXPECT_EQ(UsbClassEx(devices), (Lost{0, 0}));
}

TEST(LostBluetoothAdapter, OfTheOtherFamilyAmongUnknownDevicesDoesNotEndTheSearchInTheUsbClass) {
  const std::vector devices{Unknown("QCA_SHB\\ABC"), UsbDevice("Hub", 43)};
  EXPECT_EQ(UnknownClass(devices), 1);
  EXPECT_EQ(UsbClassEx(devices), (Lost{1, 43}));
}

TEST(LostBluetoothAdapter, IsNoUnknownDeviceWithAnotherBeginning) {
  for (const char* const id :
       {"USB\\VID_0CF3&PID_E300", "XUSB\\VID_8087", "usb\\vid_8087&PID_0AAA", "A\\QCA_SHB", "qca_shb\\1"}) {
    EXPECT_EQ(UnknownClass({Unknown(id)}), 0) << id;
    EXPECT_EQ(UsbClassEx({Unknown(id), UsbDevice("Hub", 10)}), (Lost{1, 10})) << id;
  }
  EXPECT_EQ(UnknownClass({}), 0);
}

TEST(LostBluetoothAdapter, InTheUsbClassIsTheFirstDeviceThatIsNeitherWorkingNorDisabled) {
  EXPECT_EQ(UsbClassEx({UsbDevice("A", 0), UsbDevice("B", 22), UsbDevice("C", 43), UsbDevice("D", 28)}),
            (Lost{1, 43}));
  EXPECT_EQ(UsbClassEx({UsbDevice("A", 0), UsbDevice("B", 22)}), (Lost{0, 0}));
  EXPECT_EQ(UsbClassEx({}), (Lost{0, 0}));
}

TEST(LostBluetoothAdapter, InTheUsbClassIsTheSameWithoutTheCode) {
  const auto run = simulator::Use(MachineWithDevices({UsbDevice("A", 43)}));
  EXPECT_EQ(CBluetooth().IsInUSBClass(), 1);
}

TEST(LostBluetoothAdapter, IsLookedForStepByStepUnderTheNameOfTheShorterTest) {
  const auto run = simulator::Use(MachineWithDevices(
      {Unknown("ACPI\\X"), Unknown("QCA_SHB\\A"), UsbDevice("Hub", 22), UsbDevice("Port", 43)}));
  const CapturedLog log;
  unsigned long code = 0;
  CBluetooth().IsInUSBClassEx(code);
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Bluetooth)", "GetUnknownDeviceHardID()",
                                       "GetDeviceDesc(USB)", "GetDeviceULONGInfoByDesc(Hub, USB, 10)",
                                       "GetDeviceULONGInfoByDesc(Port, USB, 10)"));
  EXPECT_THAT(log.Texts(),
              ElementsAre("CBluetooth::IsInUSBClass: vecUnknownId=ACPI\\X(CBluetooth::IsInUSBClassEx)",
                          "CBluetooth::IsInUSBClass: vecUnknownId=QCA_SHB\\A(CBluetooth::IsInUSBClassEx)",
                          "CBluetooth::IsInUSBClass: desc=Hub, uErrorcode22(CBluetooth::IsInUSBClassEx)",
                          "CBluetooth::IsInUSBClass: desc=Port, uErrorcode43(CBluetooth::IsInUSBClassEx)"));
}

TEST(LostBluetoothAdapter, AmongUnknownDevicesEndsTheSearchAtOnce) {
  const auto run = simulator::Use(
      MachineWithDevices({Unknown("ACPI\\X"), Unknown("USB\\VID_8087&PID_1"), Unknown("ACPI\\Y")}));
  const CapturedLog log;
  CBluetooth().IsInUSBClass();
  CBluetooth().IsInUnKownClass();
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Bluetooth)", "GetUnknownDeviceHardID()",
                                       "GetDeviceHardwareID(Bluetooth)", "GetUnknownDeviceHardID()"));
  EXPECT_THAT(
      log.Texts(),
      ElementsAre("CBluetooth::IsInUSBClass: vecUnknownId=ACPI\\X(CBluetooth::IsInUSBClassEx)",
                  "CBluetooth::IsInUSBClass: vecUnknownId=USB\\VID_8087&PID_1(CBluetooth::IsInUSBClassEx)",
                  "vecUnknownId=ACPI\\X(CBluetooth::IsInUnKownClass)",
                  "vecUnknownId=USB\\VID_8087&PID_1(CBluetooth::IsInUnKownClass)"));
}

/// What GetLastInstallTimeById gives for an install time in milliseconds and a clock in its own units.
std::uint64_t SinceInstall(std::uint64_t install_time, std::int64_t now) {
  auto adapter = Adapter();
  adapter.last_install_time = install_time;
  auto machine = MachineWithDevices({adapter});
  machine.clock = {.now = now};
  const auto run = simulator::Use(machine);
  return CBluetooth().GetLastInstallTimeById(L"USB\\VID_8087&PID_0026");
}

TEST(BluetoothInstallTime, IsCountedInMillisecondsUpToNow) {
  EXPECT_EQ(SinceInstall(1'638'403'260'000, 16'384'032'612'340'000), 1'234u);
  EXPECT_EQ(SinceInstall(1'638'403'260'000, 16'384'032'600'019'999), 1u) << "whole milliseconds only";
}

TEST(BluetoothInstallTime, IsZeroForThisMillisecondAndForTheFuture) {
  EXPECT_EQ(SinceInstall(1'638'403'260'000, 16'384'032'600'000'000), 0u);
  EXPECT_EQ(SinceInstall(1'638'403'260'001, 16'384'032'600'009'999), 0u);
  EXPECT_EQ(SinceInstall(std::numeric_limits<std::uint64_t>::max(), 16'384'032'600'000'000), 0u);
}

TEST(BluetoothInstallTime, OfADeviceThatIsNotThereGivesTheWholeTime) {
  auto machine = MachineWithDevices({});
  machine.clock = {.now = 16'384'032'600'000'000};
  const auto run = simulator::Use(machine);
  EXPECT_EQ(CBluetooth().GetLastInstallTimeById(L"USB\\A"), 1'638'403'260'000u);
  EXPECT_THAT(run.Trace(), ElementsAre("GetLastIntallTime(USB\\A, Bluetooth)", "SystemTime()"));
}

TEST(BluetoothInstallTime, OfAClockBeforeItsEpochWrapsAround) {
  constexpr std::uint64_t kMinusOne = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(SinceInstall(5, -19'999), kMinusOne - 5) << "the division is towards zero";
  EXPECT_EQ(SinceInstall(0, -9'999), 0u);
}

TEST(BluetoothInstallTime, IsLoggedWithTheTwoTimes) {
  auto machine = MachineWithDevices({Adapter()});
  machine.clock = {.now = 16'384'032'612'340'000};
  const auto run = simulator::Use(machine);
  const CapturedLog log;
  CBluetooth().GetLastInstallTimeById(L"USB\\VID_8087&PID_0026");
  EXPECT_THAT(log.Texts(),
              ElementsAre("CBluetooth::GetLastInstallTimeById: uInstallTime=1638403260000, "
                          "uCurTime=1638403261234, uTime=1234CBluetooth::GetLastInstallTimeById"));
}

TEST(BluetoothDriverName, IsTheFirstSignedUsbDriversOfTheClass) {
  auto machine = simulator::BlankMachine();
  machine.wmi.emplace();
  machine.wmi->classes["Win32_PnPSignedDriver"] = {
      {{"DeviceName", "A mouse"}, {"HardWareID", "BTHENUM\\A"}, {"DeviceClass", "BLUETOOTH"}},
      {{"DeviceName", "A hub"}, {"HardWareID", "USB\\A"}, {"DeviceClass", "USB"}},
      {{"DeviceName", "A radio"}, {"HardWareID", "USB\\B"}, {"DeviceClass", "BLUETOOTH"}},
      {{"DeviceName", "Another"}, {"HardWareID", "USB\\C"}, {"DeviceClass", "BLUETOOTH"}}};
  const auto run = simulator::Use(machine);
  const CapturedLog log;
  EXPECT_EQ(GetBlueToothDriverName(), L"A radio");
  EXPECT_THAT(run.Trace(),
              ElementsAre("CWMI(ROOT\\CIMV2)",
                          "SelectStr(SELECT DeviceName FROM Win32_PnPSignedDriver WHERE HardWareID like "
                          "'USB%' and DeviceClass = 'BLUETOOTH', DeviceName)"));
  EXPECT_THAT(log.Texts(), IsEmpty());
}

TEST(BluetoothDriverName, IsEmptyWhenWmiHasNone) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  EXPECT_EQ(GetBlueToothDriverName(), L"");
}

TEST(Bluetooth, KeepsNothingBetweenCallsAndMayBeCopied) {
  auto run = simulator::Use(MachineWithDevices({Adapter()}));
  CBluetooth bluetooth;
  EXPECT_EQ(bluetooth.GetDeviceName(), L"Wireless Bluetooth");
  run.machine().devices->clear();
  CBluetooth copy(bluetooth);
  copy = bluetooth;
  EXPECT_EQ(copy.GetDeviceName(), L"");
  EXPECT_EQ(CBluetooth().IsInUnKownClass(), 0);
}

TEST(Bluetooth, AsksForNothingWhenItIsMade) {
  const auto run = simulator::Use(simulator::BlankMachine());
  const CBluetooth bluetooth;
  EXPECT_THAT(run.Trace(), IsEmpty());
}

TEST(Bluetooth, LetsNoExceptionOut) {
  auto run = simulator::Use(MachineWithDevices({Adapter()}));
  run.Inject(Fault::kThrow, 0, true);
  CBluetooth bluetooth;
  unsigned long code = 77;
  EXPECT_EQ(bluetooth.GetHardwareID(), L"");
  EXPECT_EQ(bluetooth.GetDeviceErrorState(), kNone);
  EXPECT_EQ(bluetooth.IsInUSBClassEx(code), 0);
  EXPECT_EQ(code, 0u);
  EXPECT_EQ(bluetooth.IsInUnKownClass(), 0);
  EXPECT_EQ(bluetooth.GetLastInstallTimeById(L"USB\\A"), 0u);
  EXPECT_EQ(GetBlueToothDriverName(), L"");
}

TEST(Bluetooth, LogsUnderTheFunctionThatSpeaks) {
  const auto run = simulator::Use(MachineWithDevices({Adapter()}));
  const CapturedLog log;
  CBluetooth().GetDeviceErrorState();
  ASSERT_EQ(log.Lines().size(), 1u);
  EXPECT_EQ(log.Lines()[0].level, "DEBUG");
  EXPECT_EQ(log.Lines()[0].function, "CBluetooth::GetDeviceErrorState");
  EXPECT_THAT(log.Lines()[0].file, testing::EndsWith("src/bluetooth/bluetooth.cpp"));
}

}  // namespace
