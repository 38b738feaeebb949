#include "platform/linux/bluetooth_reset.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/linux/small_file.h"
#include "platform/linux/system_bus.h"
#include "platform/os/clock.h"
#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

constexpr const char* kBluez = "org.bluez";
constexpr const char* kBluezAdapter = "org.bluez.Adapter1";

/// Sets the adapter's power and reads it back until it has followed.
std::uint32_t SwitchPower(SystemBus* bus, const BusObject& adapter, bool on) {
  BusError error;
  const SystemdLibrary& library = bus->Library();
  const int result = library.bus_set_property(bus->Get(), adapter.service, adapter.path, adapter.interface,
                                              "Powered", error.Out(library), "b", on ? 1 : 0);
  if (result < 0) return error.IsRefusal() ? kErrorAccessDenied : kErrorGeneralFailure;
  constexpr int kTries = 20;
  constexpr std::uint32_t kPause = 100;
  for (int i = 0; i < kTries; ++i) {
    if (ReadBusFlag(bus, adapter, "Powered") == on) return 0;
    Sleep(kPause);
  }
  return kErrorTimeout;
}

/// Resets through the Bluetooth service; nothing when that does not know the adapter.
std::optional<std::uint32_t> ResetThroughService(const std::string& adapter) {
  const Bus bus = ConnectToSystemBus();
  const std::string path = "/org/bluez/" + adapter;
  const BusObject object{kBluez, path.c_str(), kBluezAdapter};
  if (!bus || !IsOnBus(bus.get(), kBluez) || !ReadBusFlag(bus.get(), object, "Powered")) return std::nullopt;
  const std::uint32_t off_error = SwitchPower(bus.get(), object, false);
  const std::uint32_t on_error = SwitchPower(bus.get(), object, true);  // also when it would not go off
  return on_error != 0 ? on_error : off_error;
}

/// The USB device that the adapter stands on: the nearest folder above it that has a vendor and a right to be
/// used. (Its interfaces have such a right too, but no vendor.)
std::optional<std::filesystem::path> UsbDeviceOf(const std::filesystem::path& root,
                                                 const std::string& adapter) {
  std::error_code error;
  const auto devices = std::filesystem::canonical(root / "sys/devices", error);
  if (error) return std::nullopt;
  auto folder = std::filesystem::canonical(root / "sys/class/bluetooth" / adapter / "device", error);
  if (error) return std::nullopt;
  for (; folder.native().size() > devices.native().size(); folder = folder.parent_path()) {
    const bool is_usb_device = std::filesystem::exists(folder / "idVendor", error) &&
                               std::filesystem::exists(folder / "authorized", error);
    if (is_usb_device) return folder;
  }
  return std::nullopt;
}

std::uint32_t Authorise(const std::filesystem::path& device, const char* value) {
  const auto file = device / "authorized";
  if (!WriteExisting(file, value)) return LastError();
  return ReadAttribute(file) == value ? 0 : kErrorGeneralFailure;
}

std::uint32_t ResetThroughUsb(const std::filesystem::path& device) {
  const std::uint32_t off_error = Authorise(device, "0");
  const std::uint32_t on_error = Authorise(device, "1");  // whatever came before: it must not stay off
  return on_error != 0 ? on_error : off_error;
}

bool IsAdapterName(const std::string& name) {
  constexpr std::string_view kPrefix = "hci";
  const auto is_digit = [](char character) { return character >= '0' && character <= '9'; };
  return name.size() > kPrefix.size() && name.starts_with(kPrefix) &&
         std::all_of(name.begin() + kPrefix.size(), name.end(),
                     is_digit);  // connections are called "hci0:12"
}

}  // namespace

std::optional<std::string> FirstBluetoothAdapter(const std::filesystem::path& root) {
  auto names = ListNames(root / "sys/class/bluetooth").value_or(std::vector<std::string>());
  std::erase_if(names, [](const std::string& name) { return !IsAdapterName(name); });
  const auto by_number = [](const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  };
  const auto first = std::min_element(names.begin(), names.end(), by_number);
  if (first == names.end()) return std::nullopt;
  return *first;
}

std::uint32_t ResetBluetoothAdapter(const std::filesystem::path& root, const std::string& adapter) {
  const auto service_error = ResetThroughService(adapter);
  if (service_error == 0U) return 0;
  if (const auto device = UsbDeviceOf(root, adapter)) return ResetThroughUsb(*device);
  return service_error.value_or(kErrorNotSupported);
}

}  // namespace velmora::os
