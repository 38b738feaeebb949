#include "ostrine/linux/device.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <utility>

#include "ostrine/linux/bluez.h"
#include "ostrine/linux/bus_devices.h"

namespace ostrine {
namespace {

/// The firmware describes a keyboard port, and the port controller reports it again: one device, with the
/// port's input.
std::vector<Device> WithPortsJoinedToFirmware(std::vector<Device> devices) {
  std::vector<Device> ports;
  std::vector<Device> others;
  for (Device& device : devices) {
    const bool is_port = device.bus == Device::Bus::kSerio && !device.ids.hardware.empty();
    (is_port ? ports : others).push_back(std::move(device));
  }
  for (Device& port : ports) {
    const auto described = std::find_if(others.begin(), others.end(), [&](const Device& other) {
      return other.bus == Device::Bus::kAcpi && other.ids.hardware == port.ids.hardware;
    });
    if (described != others.end()) {
      described->input = port.input;
    } else {
      others.push_back(std::move(port));
    }
  }
  return others;
}

using Classes = std::initializer_list<SetupClass>;

/// The classes that a bus can have devices of. The firmware's devices above all are many, and not looked
/// through for a class that none of them has.
constexpr Classes kPciClasses = {SetupClass::kNet,     SetupClass::kBluetooth, SetupClass::kMedia,
                                 SetupClass::kDisplay, SetupClass::kUsb,       SetupClass::kSystem,
                                 SetupClass::kNone};
constexpr Classes kUsbClasses = {SetupClass::kNet,       SetupClass::kBluetooth, SetupClass::kMedia,
                                 SetupClass::kBiometric, SetupClass::kUsb,       SetupClass::kNone};
constexpr Classes kAudioClasses = {SetupClass::kMedia, SetupClass::kNone};
constexpr Classes kInputClasses = {SetupClass::kKeyboard, SetupClass::kNone};
constexpr Classes kFirmwareClasses = {SetupClass::kSystem, SetupClass::kKeyboard, SetupClass::kBiometric,
                                      SetupClass::kNone};
constexpr Classes kVirtioClasses = {SetupClass::kNet, SetupClass::kDisplay, SetupClass::kMedia,
                                    SetupClass::kNone};

/// Devices of all buses that can have what is wanted, which is one class or all.
std::vector<Device> ListBuses(const Path& root, std::optional<SetupClass> wanted) {
  const auto may_have = [&](Classes classes) {
    return !wanted || std::find(classes.begin(), classes.end(), *wanted) != classes.end();
  };
  Listing listing{.root = root, .wanted = wanted};
  if (may_have(kPciClasses)) {
    ListParavirtual(listing);
    AppendPciDevices(listing);
  }
  if (may_have(kUsbClasses)) AppendUsbDevices(listing);
  if (may_have(kAudioClasses)) AppendHdAudioDevices(listing);
  if (may_have(kInputClasses)) AppendHidDevices(listing);
  if (may_have(kFirmwareClasses)) {
    AppendSerioDevices(listing);
    AppendAcpiDevices(listing);
  }
  if (may_have(kVirtioClasses)) AppendVirtioDevices(listing);
  return WithPortsJoinedToFirmware(std::move(listing.devices));
}

}  // namespace

std::vector<Device> ListDevices(const Path& root) { return ListBuses(root, std::nullopt); }

std::vector<Device> ListDevices(const Path& root, SetupClass setup_class) {
  std::vector<Device> devices = ListBuses(root, setup_class);
  std::erase_if(devices, [&](const Device& device) { return device.setup_class != setup_class; });
  if (setup_class == SetupClass::kBluetooth) {
    std::vector<Device> remote = ListRemoteBluetoothDevices(root);
    std::move(remote.begin(), remote.end(), std::back_inserter(devices));
  }
  return devices;
}

}  // namespace ostrine
