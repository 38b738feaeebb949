#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "velmora/bluetooth.h"

namespace {

using simulator::Fault;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using velmora::testing::CapturedLog;

constexpr unsigned long kNothingFails = 0xFFFFFFFF;

simulator::Device NamedUsbDevice(const char* name, std::uint32_t problem_code) {
  return {.setup_class = "USB",
          .hardware_ids = {std::string("USB\\") + name},
          .description = name,
          .problem_code = problem_code};
}

/// An adapter that the next rescan brings into its class.
simulator::Device AdapterToCome() {
  return {.setup_class = "Bluetooth", .hardware_ids = {"USB\\VID_8087&PID_0026"}, .rescans_since_removal = 0};
}

simulator::Machine MachineToRepair(std::vector<simulator::Device> devices) {
  auto machine = simulator::BlankMachine();
  machine.devices = std::move(devices);
  machine.clock.emplace();
  return machine;
}

std::vector<std::string> Uninstalled(const simulator::Run& run) {
  auto calls = run.Trace();
  std::erase_if(calls, [](const auto& call) { return !call.starts_with("UnstallDeviceByHardwareID"); });
  return calls;
}

TEST(UsbRepair, UninstallsNothingWhenDevicesWorkOrAreDisabled) {
  const auto run = simulator::Use(
      MachineToRepair({NamedUsbDevice("A", 0), NamedUsbDevice("B", 22), NamedUsbDevice("C", 0)}));
  EXPECT_EQ(CBluetooth().RepairInUSBDriver(), kNothingFails);
  EXPECT_THAT(run.Trace(),
              ElementsAre("GetDeviceDesc(USB)", "GetDeviceULONGInfoByDesc(A, USB, 10)",
                          "GetDeviceULONGInfoByDesc(B, USB, 10)", "GetDeviceULONGInfoByDesc(B, USB, 10)",
                          "GetDeviceULONGInfoByDesc(C, USB, 10)"))
      << "all are looked at, and one that does not work is asked twice";
}

TEST(UsbRepair, DoesNothingOnAMachineWithoutUsb) {
  const auto run = simulator::Use(MachineToRepair({}));
  EXPECT_EQ(CBluetooth().RepairInUSBDriver(), kNothingFails);
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceDesc(USB)"));
}

TEST(UsbRepair, UninstallsTheFirstFailingDeviceOnly) {
  const auto run = simulator::Use(MachineToRepair(
      {NamedUsbDevice("A", 0), NamedUsbDevice("B", 28), NamedUsbDevice("C", 43), AdapterToCome()}));
  EXPECT_EQ(CBluetooth().RepairInUSBDriver(), 0u);
  EXPECT_THAT(Uninstalled(run), ElementsAre("UnstallDeviceByHardwareID(USB\\B, USB)"));
  EXPECT_THAT(run.Trace(), Not(Contains(StartsWith("GetDeviceULONGInfoByDesc(C"))));
}

TEST(UsbRepair, BelievesTheSecondLookThatADeviceIsDisabled) {
  auto device = NamedUsbDevice("A", 0);
  device.next_problem_codes = {43, 22};
  const auto run = simulator::Use(MachineToRepair({device, NamedUsbDevice("B", 22)}));
  EXPECT_EQ(CBluetooth().RepairInUSBDriver(), kNothingFails);
}

TEST(UsbRepair, TakesADeviceWhoseSecondLookSaysThatItWorks) {
  auto device = NamedUsbDevice("A", 0);
  device.next_problem_codes = {43, 0};
  const auto run = simulator::Use(MachineToRepair({device}));
  CBluetooth().RepairInUSBDriver();
  EXPECT_THAT(Uninstalled(run), ElementsAre("UnstallDeviceByHardwareID(USB\\A, USB)"));
}

TEST(UsbRepair, PausesRescansAndPausesBeforeItLooksAgain) {
  auto run = simulator::Use(MachineToRepair({NamedUsbDevice("A", 43), AdapterToCome()}));
  EXPECT_EQ(CBluetooth().RepairInUSBDriver(), 0u);
  EXPECT_THAT(run.Trace(),
              ElementsAre("GetDeviceDesc(USB)", "GetDeviceULONGInfoByDesc(A, USB, 10)",
                          "GetDeviceULONGInfoByDesc(A, USB, 10)", "GetDeviceStrInfoByDesc(A, USB, 3)",
                          "UnstallDeviceByHardwareID(USB\\A, USB)", "Sleep(2000)",
                          "CM_Locate_DevNodeW(null, 0)", "CM_Reenumerate_DevNode(1, 4)", "Sleep(2000)",
                          "GetDeviceHardwareID(Bluetooth)", "GetDeviceHardwareID(Bluetooth)"));
  EXPECT_EQ(run.machine().clock->now, 4000 * 10'000);
}

TEST(UsbRepair, SucceedsWhenTheAdapterIsBackWhateverUninstallingGave) {
  auto device = NamedUsbDevice("A", 43);
  device.removal_error = 5;
  const auto run = simulator::Use(MachineToRepair({device, AdapterToCome()}));
  EXPECT_EQ(CBluetooth().RepairInUSBDriver(), 0u);
  EXPECT_THAT(Uninstalled(run), ElementsAre("UnstallDeviceByHardwareID(USB\\A, USB)"));
}

TEST(UsbRepair, TriesTheNameInPlaceOfTheIdWhenTheAdapterStaysLost) {
  auto device = NamedUsbDevice("A", 43);
  device.removal_error = 5;
  const auto run = simulator::Use(MachineToRepair({device}));
  EXPECT_EQ(CBluetooth().RepairInUSBDriver(), 5u) << "what the second uninstalling gives is not told";
  EXPECT_THAT(Uninstalled(run),
              ElementsAre("UnstallDeviceByHardwareID(USB\\A, USB)", "UnstallDeviceByHardwareID(A, USB)"));
  const auto trace = run.Trace();
  EXPECT_THAT((std::vector(trace.end() - 3, trace.end())),
              ElementsAre("GetDeviceULONGInfoByDesc(A, USB, 10)", "GetDeviceULONGInfoByDesc(A, USB, 10)",
                          "UnstallDeviceByHardwareID(A, USB)"));
}

TEST(UsbRepair, GivesTheFirstUninstallingsZeroWhenTheAdapterStaysLost) {
  const auto run = simulator::Use(MachineToRepair({NamedUsbDevice("A", 43)}));
  EXPECT_EQ(CBluetooth().RepairInUSBDriver(), 0u);
}

TEST(UsbRepair, DoesNotUninstallAgainWhatWorksOrIsDisabledAfterTheRescan) {
  auto healed = NamedUsbDevice("A", 43);
  healed.after_removal.heals_after = 1;
  auto disabled = NamedUsbDevice("A", 22);
  disabled.next_problem_codes = {43, 43};
  for (const auto& device : {healed, disabled}) {
    const auto run = simulator::Use(MachineToRepair({device}));
    CBluetooth().RepairInUSBDriver();
    EXPECT_THAT(Uninstalled(run), ElementsAre("UnstallDeviceByHardwareID(USB\\A, USB)"));
  }
}

TEST(UsbRepair, LogsASeparatorThatLosesOneCharacterADevice) {
  const auto run = simulator::Use(
      MachineToRepair({NamedUsbDevice("A", 0), NamedUsbDevice("B", 0), NamedUsbDevice("C", 0),
                       NamedUsbDevice("D", 0), NamedUsbDevice("E", 0), NamedUsbDevice("F", 0),
                       NamedUsbDevice("G", 0), NamedUsbDevice("H", 0), NamedUsbDevice("I", 0)}));
  const CapturedLog log;
  CBluetooth().RepairInUSBDriver();
  EXPECT_THAT(log.Texts(),
              ElementsAre("CBluetooth::RepairInUSBDriver(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::RepairInUSBDriver: i=,desc=A(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::RepairInUSBDriver: i=desc=B(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::RepairInUSBDriver: i=esc=C(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::RepairInUSBDriver: i=sc=D(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::RepairInUSBDriver: i=c=E(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::RepairInUSBDriver: i==F(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::RepairInUSBDriver: i=G(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::RepairInUSBDriver: i=H(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::RepairInUSBDriver: i=I(CBluetooth::RepairInUSBDriver)"));
}

TEST(UsbRepair, LogsUninstallingAndTheLookAfterItWithTheLastError) {
  const auto run = simulator::Use(MachineToRepair({NamedUsbDevice("A", 43), AdapterToCome()}));
  const CapturedLog log;
  velmora::os::SetLastError(1234);
  CBluetooth().RepairInUSBDriver();
  EXPECT_THAT(log.Texts(),
              ElementsAre("CBluetooth::RepairInUSBDriver(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::RepairInUSBDriver: i=,desc=A(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::UnInstallDeviceDriver: dwUninstall=0,err=1234, hardIdUSB\\A"
                          "(CBluetooth::RepairInUSBDriver)",
                          "CBluetooth::UnInstallDeviceDriver: HardwareID=USB\\VID_8087&PID_0026,err=1234"
                          "(CBluetooth::RepairInUSBDriver)"));
  for (const auto& line : log.Lines()) EXPECT_EQ(line.function, "CBluetooth::RepairInUSBDriver");
}

TEST(UsbRepair, LetsNoExceptionOut) {
  for (int number = 0; number < 12; ++number) {
    auto run = simulator::Use(MachineToRepair({NamedUsbDevice("A", 43)}));
    run.Inject(Fault::kThrow, number, true);
    const unsigned long result = CBluetooth().RepairInUSBDriver();
    EXPECT_TRUE(result == 0 || result == kNothingFails) << result;
  }
}

constexpr auto kOpen = "CreateFileW(\\\\.\\IBTRSTD, 0xC0000000, 0, 3, 0)";

simulator::Machine MachineWithResetDriver(simulator::ControlDevice driver = {}) {
  auto machine = simulator::BlankMachine();
  driver.name = "\\\\.\\IBTRSTD";
  machine.control_devices = {std::move(driver)};
  return machine;
}

unsigned long Reset(const std::string& address) {
  unsigned long error = 77;
  CBluetooth().RepairBtByReHard(address, error);
  return error;
}

/// What the host's log has of a reset.
std::vector<std::string> LinesOfReset(const simulator::Machine& machine, const std::string& address) {
  const auto run = simulator::Use(machine);
  const CapturedLog log;
  Reset(address);
  for (const auto& line : log.Lines()) EXPECT_EQ(line.function, "CBluetooth::RepairBtByReHard");
  return log.Texts();
}

TEST(RadioReset, SendsTheAddressAsFourBytesToTheResetDriver) {
  const auto run = simulator::Use(MachineWithResetDriver());
  EXPECT_EQ(Reset("1A2B3C"), 0u);
  EXPECT_THAT(run.Trace(), ElementsAre(kOpen, "DeviceIoControl(0x2211FC, 3C 2B 1A 00, 0)", "CloseHandle()"));
  EXPECT_EQ(run.OpenHandles(), 0);
}

TEST(RadioReset, ReadsTheAddressUpToItsFirstColon) {
  auto run = simulator::Use(MachineWithResetDriver());
  Reset("00:1A:7D:DA:71:13");
  Reset("D4A1B2C3E4F5");
  Reset(" 0x1A2B");
  Reset("nothing");
  const auto& requests = run.machine().control_devices->front().requests;
  ASSERT_EQ(requests.size(), 4u);
  EXPECT_EQ(requests[0], (simulator::ControlRequest{0x002211FC, {{0, 0, 0, 0}}}));
  EXPECT_EQ(requests[1].input, (simulator::Bytes{{0xFF, 0xFF, 0xFF, 0xFF}}));
  EXPECT_EQ(requests[2].input, (simulator::Bytes{{0x2B, 0x1A, 0, 0}}));
  EXPECT_EQ(requests[3].input, (simulator::Bytes{{0, 0, 0, 0}}));
}

TEST(RadioReset, DoesNothingForAnEmptyAddress) {
  const auto run = simulator::Use(MachineWithResetDriver());
  EXPECT_EQ(Reset(""), 0u);
  EXPECT_THAT(run.Trace(), IsEmpty());
}

TEST(RadioReset, TellsTheErrorOfADriverThatDoesNotOpenAndSendsNothing) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  EXPECT_EQ(Reset("1A"), 2u);
  EXPECT_THAT(run.Trace(), ElementsAre(kOpen));
}

TEST(RadioReset, TellsTheErrorOfADriverThatMayNotBeOpened) {
  const auto run = simulator::Use(MachineWithResetDriver({.open_error = 5}));
  EXPECT_EQ(Reset("1A"), 5u);
  EXPECT_THAT(run.Trace(), ElementsAre(kOpen));
}

TEST(RadioReset, TellsTheErrorOfARequestThatIsRefusedAndClosesTheDriver) {
  const auto run = simulator::Use(MachineWithResetDriver({.request_error = 1167}));
  EXPECT_EQ(Reset("1A"), 1167u);
  EXPECT_THAT(run.Trace(), ElementsAre(kOpen, "DeviceIoControl(0x2211FC, 1A 00 00 00, 0)", "CloseHandle()"));
}

TEST(RadioReset, LogsEachStepWithItsNameWithoutBrackets) {
  EXPECT_THAT(LinesOfReset(MachineWithResetDriver(), "1A"),
              ElementsAre("CBluetooth::RepairBtByReHard: strAddress=1ACBluetooth::RepairBtByReHard",
                          "CBluetooth::RepairBtByReHard: EndCBluetooth::RepairBtByReHard"));
  EXPECT_THAT(LinesOfReset(MachineWithResetDriver(), ""),
              ElementsAre("CBluetooth::RepairBtByReHard: strAddress=CBluetooth::RepairBtByReHard"));
  EXPECT_THAT(LinesOfReset(simulator::EmptyMachine(), "1A"),
              ElementsAre("CBluetooth::RepairBtByReHard: strAddress=1ACBluetooth::RepairBtByReHard",
                          "CBluetooth::RepairBtByReHard: CreateFile Fail, LastError=2"
                          "CBluetooth::RepairBtByReHard"));
  EXPECT_THAT(LinesOfReset(MachineWithResetDriver({.request_error = 1167}), "1A"),
              ElementsAre("CBluetooth::RepairBtByReHard: strAddress=1ACBluetooth::RepairBtByReHard",
                          "CBluetooth::RepairBtByReHard: DeviceIoControl Fail, LastError=1167"
                          "CBluetooth::RepairBtByReHard",
                          "CBluetooth::RepairBtByReHard: EndCBluetooth::RepairBtByReHard"));
}

TEST(RadioReset, LogsItsEndBeforeItClosesTheDriver) {
  const auto run = simulator::Use(MachineWithResetDriver());
  const CapturedLog log;
  Reset("1A");
  const auto trace = run.Trace();
  ASSERT_GE(trace.size(), 2u);
  EXPECT_THAT(trace[trace.size() - 2], StartsWith("MultiByteToWideChar")) << "a narrow line is widened";
  EXPECT_EQ(trace.back(), "CloseHandle()");
}

TEST(RadioReset, ForgetsAnEarlierErrorOfTheThread) {
  const auto run = simulator::Use(MachineWithResetDriver());
  velmora::os::SetLastError(5);
  EXPECT_EQ(Reset("1A"), 0u);
}

TEST(RadioReset, IsAFailureWhateverIsThrown) {
  for (const int number : {0, 1}) {
    auto run = simulator::Use(MachineWithResetDriver());
    velmora::os::SetLastError(0);
    run.Inject(Fault::kThrow, number);
    EXPECT_NE(Reset("1A"), 0u);
    EXPECT_EQ(run.OpenHandles(), 0);
  }
}

}  // namespace
