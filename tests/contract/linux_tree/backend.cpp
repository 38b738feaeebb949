/// A made-up laptop's tree, below a folder of the test's own, as a backend of the contract tests.
#include "tests/contract/backend.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/os/last_error.h"
#include "platform/ostrine/setup_class.h"
#include "tests/support/linux/fake_machine.h"

namespace contract {
namespace {

namespace setup_class = velmora::setup_class;

constexpr const char* kEthernet = "pci0000:00/0000:00:1f.6";

/// Does what the kernel does when a function is told to go.
class RemovingKernel {
 public:
  explicit RemovingKernel(const ostrine::test::FakeMachine& machine)
      : machine_(machine), thread_([this] {
          while (!stop_) {
            if (IsToldToGo()) Remove();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
          }
        }) {}
  ~RemovingKernel() {
    stop_ = true;
    thread_.join();
  }

 private:
  bool IsToldToGo() const {
    std::ifstream file(machine_.Device(kEthernet) / "remove");
    return file.get() == '1';
  }
  void Remove() const {
    std::filesystem::remove(machine_.Path() / "sys/bus/pci/devices/0000:00:1f.6");
    std::filesystem::remove_all(machine_.Device(kEthernet));
  }

  const ostrine::test::FakeMachine& machine_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

/// IDs of a PCI function, from its numbers as the bus writes them.
std::vector<std::wstring> PciIds(const std::wstring& device, const std::wstring& subsystem,
                                 const std::wstring& revision, const std::wstring& class_code) {
  return {L"PCI\\" + device + L"&SUBSYS_" + subsystem + L"&REV_" + revision,
          L"PCI\\" + device + L"&SUBSYS_" + subsystem,
          L"PCI\\" + device + L"&REV_" + revision,
          L"PCI\\" + device,
          L"PCI\\" + device + L"&CC_" + class_code,
          L"PCI\\" + device + L"&CC_" + class_code.substr(0, 4)};
}

Device Firmware(const std::wstring& id, const std::wstring& description, unsigned long problem) {
  return {.setup_class = setup_class::kSystem,
          .hardware_ids = {L"ACPI\\" + id, L"*" + id},
          .description = description,
          .inf = L"",
          .type = L"System",
          .name = L"",
          .problem_code = problem};
}

std::vector<Device> NetDevices() {
  const std::wstring wireless = L"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01";
  return {{.setup_class = setup_class::kNet,
           .hardware_ids = PciIds(L"VEN_8086&DEV_51F0", L"00948086", L"01", L"028000"),
           .description = L"Intel Corporation Wi-Fi 6E AX211 160MHz",
           .manufacturer = L"Intel Corporation",
           .display_name = L"Intel Corporation Wi-Fi 6E AX211 160MHz",
           .driver_version = L"6.1.0.18",
           .inf = L"",
           .instance_id = wireless + L"\\0000:00:14.3",
           .type = L"Net",
           .name = L"",
           .problem_code = 0},
          {.setup_class = setup_class::kNet,
           .hardware_ids = PciIds(L"VEN_8086&DEV_1A1F", L"22E617AA", L"01", L"020000"),
           .description = L"Network controller 8086:1A1F",
           .driver_version = L"3.2.6-k",
           .problem_code = 0,
           .last_install_time = 0}};
}

std::vector<Device> UsbDevices() {
  const Device hub{.setup_class = setup_class::kUsb,
                   .hardware_ids = {L"USB\\VID_05E3&PID_0610&REV_0655", L"USB\\VID_05E3&PID_0610"},
                   .description = L"USB2.1 Hub",
                   .manufacturer = L"GenesysLogic",
                   .display_name = L"USB2.1 Hub",
                   .problem_code = 0};
  Device failing_hub = hub;
  failing_hub.hardware_ids.front() = L"USB\\VID_05E3&PID_0610&REV_0660";
  failing_hub.problem_code = 22;
  return {{.setup_class = setup_class::kUsb,
           .hardware_ids = PciIds(L"VEN_8086&DEV_51ED", L"22E617AA", L"01", L"0C0330"),
           .description = L"USB controller 8086:51ED",
           .problem_code = 0},
          hub,
          failing_hub,
          {.setup_class = setup_class::kUsb,
           .hardware_ids = {L"USB\\VID_04F2&PID_B761&REV_0802", L"USB\\VID_04F2&PID_B761"},
           .description = L"Integrated Camera",
           .problem_code = 0},
          {.setup_class = setup_class::kUsb,
           .hardware_ids = {L"USB\\ROOT_HUB20"},
           .description = L"xHCI Host Controller",
           .problem_code = 0}};
}

std::vector<Device> SystemDevices() {
  std::vector<Device> devices{
      {.setup_class = setup_class::kSystem,
       .hardware_ids = PciIds(L"VEN_8086&DEV_4621", L"22E617AA", L"02", L"060000"),
       .description = L"Bridge 8086:4621",
       .driver_version = L"",
       .problem_code = 0},
      {.setup_class = setup_class::kSystem,
       .hardware_ids = PciIds(L"VEN_8086&DEV_51E0", L"22E617AA", L"01", L"078000"),
       .description = L"Communication controller 8086:51E0 Management Engine Interface",
       .problem_code = 0},
      {.setup_class = setup_class::kSystem,
       .hardware_ids = PciIds(L"VEN_8086&DEV_51C8", L"22E617AA", L"01", L"040380"),
       .description = L"Multimedia controller 8086:51C8",
       .problem_code = 0}};
  devices.push_back(Firmware(L"INT0E0C", L"Software Guard Extensions Device", 0));
  devices.push_back(Firmware(L"PNP0103", L"High precision event timer", 0));
  devices.push_back(Firmware(L"PNP0C02", L"Motherboard resources", 0));
  devices.push_back(Firmware(L"XYZ0001", L"ACPI device XYZ0001", 28));
  devices.push_back(Firmware(L"XYZ0003", L"ACPI device XYZ0003", 22));
  devices.push_back(Firmware(L"XYZ0004", L"ACPI device XYZ0004", 10));
  devices.push_back(Firmware(L"XYZ0005", L"ACPI device XYZ0005", 0));
  return devices;
}

std::vector<Device> OtherDevices() {
  return {{.setup_class = setup_class::kBluetooth,
           .hardware_ids = {L"USB\\VID_8087&PID_0033&REV_0000", L"USB\\VID_8087&PID_0033"},
           .description = L"USB wireless device 8087:0033",
           .manufacturer = L"",
           .display_name = L"",
           .problem_code = 0},
          {.setup_class = setup_class::kMedia,
           .hardware_ids = {L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA22E6&REV_1000",
                            L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA22E6"},
           .description = L"Realtek ALC257",
           .manufacturer = L"Realtek",
           .type = L"MEDIA",
           .problem_code = 0},
          {.setup_class = setup_class::kKeyboard,
           .hardware_ids = {L"ACPI\\LEN0071", L"*LEN0071"},
           .description = L"Standard PS/2 Keyboard",
           .display_name = L"AT Translated Set 2 keyboard",
           .problem_code = 0},
          {.setup_class = setup_class::kDisplay,
           .hardware_ids = PciIds(L"VEN_8086&DEV_46A6", L"22E617AA", L"0C", L"030000"),
           .description = L"Display adapter 8086:46A6",
           .problem_code = 0},
          {.setup_class = setup_class::kDisplay,
           .hardware_ids = PciIds(L"VEN_10DE&DEV_25A0", L"22E617AA", L"A1", L"030200"),
           .description = L"Display adapter 10DE:25A0",
           .driver_version = L"",
           .problem_code = 28,
           .last_install_time = 0}};
}

class Tree : public Backend {
 public:
  Tree() {
    ostrine::test::BuildLaptop(machine_);
    // A class without devices, a database that knows some of the names, and a process.
    std::filesystem::remove(machine_.Path() / "sys/bus/usb/devices/1-5");
    machine_.WriteFile("usr/share/misc/pci.ids",
                       "8086  Intel Corporation\n\t51f0  CNVi WiFi\n\t\t8086 0094  Wi-Fi 6E AX211 160MHz\n");
    machine_.WriteFile("proc/4321/comm", "unsecapp.exe\n");
    machine_.WriteFile("proc/4321/stat", "4321 (unsecapp.exe) S 1\n");
    OfferRemoval();
  }

  bool IsMadeUp() const override { return true; }

  std::vector<Device> DevicesOf(const GUID& setup_class) const override {
    std::vector<Device> devices;
    for (const auto& some : {NetDevices(), UsbDevices(), SystemDevices(), OtherDevices()}) {
      for (const Device& device : some) {
        if (device.setup_class == setup_class) devices.push_back(device);
      }
    }
    return devices;
  }
  std::optional<std::vector<std::wstring>> UnknownDevices() const override {
    return std::vector<std::wstring>{L"PCI\\VEN_10DE&DEV_25A0&SUBSYS_22E617AA&REV_A1", L"ACPI\\XYZ0001"};
  }
  std::optional<std::vector<FailingDriver>> FailingDrivers() const override {
    const std::string system = "{4d36e97d-e325-11ce-bfc1-08002be10318}";
    return std::vector<FailingDriver>{
        {.caption = "Display adapter 10DE:25A0",
         .device_id = "PCI\\VEN_10DE&DEV_25A0&SUBSYS_22E617AA&REV_A1\\0000:01:00.0",
         .class_guid = "{4d36e968-e325-11ce-bfc1-08002be10318}",
         .error_code = 28,
         .service = ""},
        {.caption = "USB2.1 Hub",
         .device_id = "USB\\VID_05E3&PID_0610&REV_0660\\1-2",
         .class_guid = "{36fc9e60-c465-11cf-8056-444553540000}",
         .error_code = 22,
         .manufacturer = "GenesysLogic",
         .service = "usb"},
        {.caption = "ACPI device XYZ0001",
         .device_id = "ACPI\\XYZ0001\\XYZ0001:00",
         .class_guid = system,
         .error_code = 28},
        {.caption = "ACPI device XYZ0004",
         .device_id = "ACPI\\XYZ0004\\XYZ0004:00",
         .class_guid = system,
         .error_code = 10}};
  }
  std::optional<Device> RemovableDevice() const override { return NetDevices().back(); }
  void Rescan() override {
    machine_.Add(
        "pci", kEthernet,
        {{"modalias", "pci:v00008086d00001A1Fsv000017AAsd000022E6bc02sc00i00"}, {"revision", "0x01"}});
    machine_.Bind("pci", kEthernet, "e1000e", "e1000e");
    OfferRemoval();
  }

  std::vector<Selection> Selections() const override {
    const std::wstring adapter = L" FROM Win32_NetworkAdapter WHERE Name='Network controller 8086:1A1F'";
    return {
        {L"SELECT MACAddress" + adapter, L"MACAddress", L"00:2B:67:AA:BB:CC", 0},
        {L"SELECT ProcessId FROM Win32_Process WHERE Caption='UNSECAPP.exe'", L"ProcessId", L"4321", 4321},
        {L"SELECT ExecutablePath FROM Win32_Process WHERE Caption='unsecapp.exe'", L"ExecutablePath", L"", 0},
        {L"SELECT AdapterDACType FROM Win32_VideoController WHERE Caption ='Display adapter 8086:46A6'",
         L"AdapterDACType", L"Internal"},
        {L"SELECT Name FROM Win32_Service Where name like 'WpnUserService_%'", L"Name", L""}};
  }
  std::optional<FirmwareCall> AnsweredFirmwareCall() const override {
    return FirmwareCall{0x0802, {0, 0x8A, 0x0C, 0}};
  }
  std::uint64_t RefusedFirmwareInput() const override { return 0x10802; }
  std::optional<int> OpenConnections() const override { return std::nullopt; }
  std::uint32_t LastError() const override { return velmora::os::LastError(); }

 private:
  void OfferRemoval() const { machine_.WriteFile(std::string("sys/devices/") + kEthernet + "/remove", ""); }

  ostrine::test::FakeMachine machine_;
  ostrine::test::ActsOn acts_on_{machine_};
  RemovingKernel kernel_{machine_};
};

}  // namespace

std::unique_ptr<Backend> Backend::SetUp() { return std::make_unique<Tree>(); }

}  // namespace contract
