/// Windows as a backend of the contract tests: made-up devices beside the system's own, WMI as it is.
#include "tests/contract/backend.h"

#include <windows.h>

#include <algorithm>

#include "platform/ostrine/setup_class.h"
#include "tests/support/windows/fake_device.h"

namespace contract {
namespace {

namespace setup_class = velmora::setup_class;
using windows_support::FakeDevice;
using windows_support::InstalledDevice;

constexpr std::uint64_t kInstallTime = 132'828'768'000'000'000;  // 2021-12-02 00:00 UTC

std::vector<FakeDevice> MadeUpDevices() {
  const FakeDevice hub{.setup_class = setup_class::kUsb,
                       .class_name = L"USB",
                       .instance_id = L"USB\\ROOT_HUB30\\4&11111111&0&0",
                       .description = L"USB Root Hub (USB 3.0)",
                       .hardware_ids = {L"USB\\ROOT_HUB30&VID8086", L"USB\\ROOT_HUB30"},
                       .manufacturer = L"(Standard USB HUBs)",
                       .driver_version = L"10.0.19041.1",
                       .inf = L"usbhub3.inf"};
  auto failing_hub = hub;
  failing_hub.instance_id = L"USB\\VID_8087&PID_0026\\5&22222222&0&14";
  failing_hub.hardware_ids = {L"USB\\VID_8087&PID_0026&REV_0002", L"USB\\VID_8087&PID_0026"};
  failing_hub.service = L"USBHUB3";
  failing_hub.problem_code = 43;
  return {
      {.setup_class = setup_class::kNet,
       .class_name = L"Net",
       .instance_id = L"PCI\\VEN_14C3&DEV_7961&SUBSYS_50001A3B&REV_00\\4&1A2B3C4D&0&00E1",
       .description = L"Wi-Fi 6E Adapter 160MHz",
       .hardware_ids = {L"PCI\\VEN_14C3&DEV_7961&SUBSYS_50001A3B&REV_00", L"PCI\\ven_14c3&dev_7961"},
       .manufacturer = L"An Adapter Maker",
       .friendly_name = L"Wi-Fi",
       .driver_version = L"22.200.0.6",
       .inf = L"oem12.inf",
       .install_time = kInstallTime},
      {.setup_class = setup_class::kNet,
       .class_name = L"Net",
       .instance_id = L"ROOT\\VMS\\0000",
       .hardware_ids = {L"ROOT\\VMS"}},
      hub,
      failing_hub,
      {.setup_class = setup_class::kMedia,
       .class_name = L"MEDIA",
       .instance_id = L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257\\4&33333333&0&0001",
       .description = L"High Definition Audio Device",
       .hardware_ids = {L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA2292"},
       .problem_code = 28},
      {.setup_class = setup_class::kBluetooth,
       .class_name = L"Bluetooth",
       .instance_id = L"BTHENUM\\DEV_AABBCCDDEEFF\\7&44444444&0&BLUETOOTHDEVICE_AABBCCDDEEFF",
       .description = L"Bluetooth Device",
       .hardware_ids = {L"BTHENUM\\Dev_AABBCCDDEEFF"},
       .friendly_name = L"B\u00FCro Mouse"},
  };
}

/// The made-up devices. They are installed once for all tests, which leave them as they were.
class Machine {
 public:
  Machine() {
    for (auto& device : MadeUpDevices()) devices_.emplace_back(std::move(device));
  }
  const FakeDevice* Find(const std::wstring& instance_id) const {
    const auto found = std::ranges::find_if(
        devices_, [&](const InstalledDevice& device) { return device.Shape().instance_id == instance_id; });
    return found != devices_.end() ? &found->Shape() : nullptr;
  }
  void RestoreAll() {
    for (auto& device : devices_) {
      if (!device.Exists()) device.Install();
    }
  }

 private:
  std::vector<InstalledDevice> devices_;
};

Device Expected(const FakeDevice& fake) {
  Device device{.setup_class = fake.setup_class,
                .hardware_ids = fake.hardware_ids,
                .description = fake.description,
                .manufacturer = fake.manufacturer,
                .display_name = fake.friendly_name,
                .driver_version = fake.driver_version,
                .inf = fake.inf,
                .instance_id = fake.instance_id,
                .type = fake.class_name,
                .problem_code = fake.problem_code.value_or(0),
                .last_install_time = 0};
  if (!fake.friendly_name.empty()) device.name = fake.friendly_name;
  if (fake.install_time) device.last_install_time = 1'638'403'200'000;
  return device;
}

class Windows : public Backend {
 public:
  bool IsMadeUp() const override { return true; }

  std::vector<Device> DevicesOf(const GUID& setup_class) const override {
    std::vector<Device> devices;
    for (const auto& id : windows_support::RegisteredDevices(setup_class)) {
      if (const FakeDevice* fake = machine_->Find(id)) {
        devices.push_back(Expected(*fake));
      } else {
        devices.push_back({.setup_class = setup_class,
                           .hardware_ids = windows_support::RegisteredTexts(id, L"HardwareID"),
                           .description = windows_support::RegisteredText(id, L"DeviceDesc")});
      }
    }
    return devices;
  }

  std::optional<std::vector<std::wstring>> UnknownDevices() const override {
    return std::vector<std::wstring>{L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA2292"};
  }
  std::optional<std::vector<FailingDriver>> FailingDrivers() const override {
    // The system lists its devices by their place in the tree, so the sound device comes first.
    return std::vector<FailingDriver>{{.caption = "High Definition Audio Device",
                                       .device_id = "HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257\\4&33333333&0&0001",
                                       .class_guid = "{4d36e96c-e325-11ce-bfc1-08002be10318}",
                                       .error_code = 28,
                                       .service = ""},
                                      {.caption = "USB Root Hub (USB 3.0)",
                                       .device_id = "USB\\VID_8087&PID_0026\\5&22222222&0&14",
                                       .class_guid = "{36fc9e60-c465-11cf-8056-444553540000}",
                                       .error_code = 43,
                                       .manufacturer = "(Standard USB HUBs)",
                                       .service = "USBHUB3"}};
  }
  std::optional<Device> RemovableDevice() const override { return DevicesOf(setup_class::kUsb).back(); }
  void Rescan() override { machine_->RestoreAll(); }

  std::vector<Selection> Selections() const override {
    const unsigned int id = GetCurrentProcessId();
    const std::wstring of_this = L" FROM Win32_Process WHERE ProcessId=" + std::to_wstring(id);
    return {
        {L"SELECT ProcessId" + of_this, L"ProcessId", std::to_wstring(id), id},
        {L"SELECT Caption" + of_this, L"Caption", L"windows_contract_tests.exe", 0},
        {L"SELECT ProcessId FROM Win32_Process WHERE Caption='windows_contract_tests.exe'", L"ProcessId",
         std::to_wstring(id), id},
        {L"SELECT NoSuchProperty" + of_this, L"NoSuchProperty", L"", 0},
        {L"select name from win32_service where name='rpcss'", L"Name", L"RpcSs", 0},
        {L"SELECT State FROM Win32_Service WHERE Name='nosuch'", L"State", L"", 0},
    };
  }
  std::optional<FirmwareCall> AnsweredFirmwareCall() const override { return std::nullopt; }
  std::uint64_t RefusedFirmwareInput() const override { return 0x260105; }
  std::optional<int> OpenConnections() const override { return std::nullopt; }
  std::uint32_t LastError() const override { return GetLastError(); }

 private:
  static std::shared_ptr<Machine> SharedMachine() {
    static const auto machine = std::make_shared<Machine>();
    return machine;
  }

  std::shared_ptr<Machine> machine_ = SharedMachine();
};

}  // namespace

std::unique_ptr<Backend> Backend::SetUp() { return std::make_unique<Windows>(); }

}  // namespace contract
