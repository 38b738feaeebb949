/// The simulator as a backend of the contract tests.
#include "tests/contract/backend.h"

#include "platform/os/configuration_manager.h"
#include "platform/os/last_error.h"
#include "platform/ostrine/setup_class.h"
#include "platform/unicode.h"
#include "simulator/guid_text.h"
#include "simulator/run.h"

namespace contract {
namespace {

using velmora::unicode::WideFromUtf8;

simulator::Machine MachineOfTheTests() {
  auto machine = simulator::EmptyMachine();
  const simulator::Device hub{.setup_class = "USB",
                              .hardware_ids = {"USB\\ROOT_HUB30&VID8086", "USB\\ROOT_HUB30"},
                              .description = "USB Root Hub (USB 3.0)",
                              .manufacturer = "(Standard USB HUBs)",
                              .driver_version = "10.0.19041.1",
                              .inf = "usbhub3.inf",
                              .instance_id = "USB\\ROOT_HUB30\\4&1"};
  auto failing_hub = hub;
  failing_hub.hardware_ids = {"USB\\VID_8087&PID_0026&REV_0002", "USB\\VID_8087&PID_0026"};
  failing_hub.instance_id = "USB\\VID_8087&PID_0026\\5&1";
  failing_hub.service = "USBHUB3";
  failing_hub.problem_code = 43;
  failing_hub.after_removal = {.returns_after = 1, .heals_after = 1};
  machine.devices = {
      {.setup_class = "Net",
       .hardware_ids = {"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01", "PCI\\ven_8086&dev_51f0"},
       .description = "Intel(R) Wi-Fi 6E AX211 160MHz",
       .manufacturer = "Intel Corporation",
       .display_name = "Wi-Fi",
       .driver_version = "22.200.0.6",
       .inf = "oem12.inf",
       .instance_id = "PCI\\VEN_8086&DEV_51F0\\3&11583659&0&A3",
       .last_install_time = 1'638'403'200'000},
      hub,
      {.setup_class = "Net", .hardware_ids = {"ROOT\\VMS"}, .description = ""},
      {.setup_class = "Unknown",
       .hardware_ids = {"ACPI\\XYZ0001"},
       .instance_id = "ACPI\\XYZ0001\\0",
       .problem_code = 28,
       .unknown = true},
      failing_hub,
      {.setup_class = "Bluetooth",
       .hardware_ids = {"BTHENUM\\Dev_AABBCCDDEEFF"},
       .description = "Mouse",
       .type = "Mouse",
       .name = "B\xC3\xBCro Mouse"},
      {.setup_class = "System", .description = "A device without hardware IDs"},
      {.setup_class = "System",
       .hardware_ids = {"ACPI\\GONE"},
       .description = "Gone",
       .rescans_since_removal = 0},
  };
  machine.battery = {.ac_line = 0,
                     .batteries = {{.remaining_mwh = 30120,
                                    .full_mwh = 43830,
                                    .design_mwh = 50000,
                                    .voltage_mv = 11856,
                                    .rate_mw = -8892,
                                    .threshold = {{75, 80}}}}};
  machine.processes = {
      {.process_id = 4321, .caption = "unsecapp.exe", .executable_path = "C:\\unsecapp.exe"}};
  machine.services = {{.name = "WpnUserService_1a2b", .state = 4}};
  machine.wmi = {
      .classes = {{"Win32_VideoController",
                   {{{"Caption", "Second"}},
                    {{"Caption", "UHD"}, {"AdapterDACType", "Internal"}, {"RAM", std::uint64_t{7}}}}}}};
  machine.adapters = {.list = {{.name = "{4A9B8D69-0000-0000-0000-000000000001}",
                                .description = "Intel(R) Wi-Fi 6E AX211 160MHz",
                                .address = {{2, 0xFC, 0, 0, 0, 1}},
                                .type = 71,
                                .ip_addresses = {{"10.0.0.2", "255.0.0.0"}, {"10.0.0.3", "255.0.0.0"}},
                                .gateways = {{"10.0.0.1", ""}}}}};
  machine.registry = {
      {"SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e972-e325-11ce-bfc1-08002be10318}\\0000",
       {.values = {{"ComponentId", {.text = "pci\\ven_8086&dev_51f0"}}}}}};
  machine.internet = {.connected = true, .connection_flags = 2};
  machine.network_list = {.connected = true, .internet = true};
  machine.bluetooth = {.radios = {{.address = 1, .name = "Laptop"}}};
  machine.firmware = {{.input = 0x250105, .output = {{0, 1, 2, 3, 4}}}, {.input = 0x260105, .error = 1359}};
  return machine;
}

class Simulated : public Backend {
 public:
  bool IsMadeUp() const override { return true; }

  std::vector<Device> DevicesOf(const GUID& setup_class) const override {
    std::vector<Device> devices;
    for (const auto& device : *run_.machine().devices) {
      const bool is_in_class = device.setup_class == simulator::SetupClassName(setup_class);
      if (is_in_class && simulator::IsPresent(device)) devices.push_back(Expected(device, setup_class));
    }
    return devices;
  }

  std::optional<std::vector<std::wstring>> UnknownDevices() const override {
    return std::vector<std::wstring>{L"ACPI\\XYZ0001"};
  }
  std::optional<std::vector<FailingDriver>> FailingDrivers() const override {
    return std::vector<FailingDriver>{{.device_id = "ACPI\\XYZ0001\\0", .error_code = 28},
                                      {.caption = "USB Root Hub (USB 3.0)",
                                       .device_id = "USB\\VID_8087&PID_0026\\5&1",
                                       .class_guid = "{36fc9e60-c465-11cf-8056-444553540000}",
                                       .error_code = 43,
                                       .manufacturer = "(Standard USB HUBs)",
                                       .service = "USBHUB3"}};
  }
  std::optional<Device> RemovableDevice() const override {
    return DevicesOf(velmora::setup_class::kUsb).back();
  }
  void Rescan() override {
    velmora::os::DevNode root = 0;
    velmora::os::CM_Locate_DevNodeW(root, nullptr, 0);
    velmora::os::CM_Reenumerate_DevNode(root, 4);
  }

  std::vector<Selection> Selections() const override {
    return {
        {L"SELECT AdapterDACType FROM Win32_VideoController WHERE Caption ='uhd'", L"AdapterDACType",
         L"Internal"},
        {L"SELECT RAM FROM Win32_VideoController WHERE RAM IS NOT NULL", L"RAM", L"7", 7},
        {L"SELECT AdapterDACType FROM Win32_VideoController", L"AdapterDACType", L"", 0},
        {L"SELECT ProcessId FROM Win32_Process WHERE Caption='unsecapp.exe'", L"ProcessId", L"4321", 4321},
        {L"SELECT Name FROM Win32_Service Where name like 'WpnUserService_%'", L"Name",
         L"WpnUserService_1a2b"},
        {L"SELECT State FROM Win32_Service WHERE Name='WpnUserService_1a2b'", L"State", L"Running", 0},
        {L"SELECT State FROM Win32_Service WHERE Name='nosuch'", L"State", L"", 0},
    };
  }
  std::optional<FirmwareCall> AnsweredFirmwareCall() const override {
    return FirmwareCall{0x250105, {0, 1, 2, 3, 4}};
  }
  std::uint64_t RefusedFirmwareInput() const override { return 0x260105; }
  std::optional<int> OpenConnections() const override { return run_.OpenHandles(); }
  std::uint32_t LastError() const override { return velmora::os::LastError(); }

 private:
  static Device Expected(const simulator::Device& device, const GUID& setup_class) {
    Device expected{.setup_class = setup_class,
                    .description = WideFromUtf8(device.description),
                    .manufacturer = WideFromUtf8(device.manufacturer),
                    .display_name = WideFromUtf8(device.display_name),
                    .driver_version = WideFromUtf8(device.driver_version),
                    .inf = WideFromUtf8(device.inf),
                    .instance_id = WideFromUtf8(device.instance_id),
                    .type = WideFromUtf8(device.type.value_or(device.setup_class)),
                    .name = WideFromUtf8(device.name),
                    .problem_code = device.problem_code,
                    .last_install_time = device.last_install_time};
    for (const auto& id : device.hardware_ids) expected.hardware_ids.push_back(WideFromUtf8(id));
    return expected;
  }

  mutable simulator::Run run_{MachineOfTheTests()};
};

}  // namespace

std::unique_ptr<Backend> Backend::SetUp() { return std::make_unique<Simulated>(); }

}  // namespace contract
