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

bool MayHave(Classes classes, const Listing& listing) {
  return std::any_of(classes.begin(), classes.end(), [&](SetupClass one) { return listing.Wants(one); });
}

/// Lists the devices of all buses that can have what is wanted.
std::vector<Device> ListBuses(Listing listing) {
  if (MayHave(kPciClasses, listing)) {
    ListParavirtual(listing);
    AppendPciDevices(listing);
  }
  if (!listing.is_done && MayHave(kUsbClasses, listing)) AppendUsbDevices(listing);
  if (listing.is_done) return std::move(listing.devices);
  if (MayHave(kAudioClasses, listing)) AppendHdAudioDevices(listing);
  if (MayHave(kInputClasses, listing)) AppendHidDevices(listing);
  if (MayHave(kFirmwareClasses, listing)) {
    AppendSerioDevices(listing);
    AppendAcpiDevices(listing);
  }
  if (MayHave(kVirtioClasses, listing)) AppendVirtioDevices(listing);
  return WithPortsJoinedToFirmware(std::move(listing.devices));
}

}  // namespace

std::vector<Device> ListDevices(const Path& root) { return ListBuses({.root = root}); }

std::vector<Device> ListDevices(const Path& root, SetupClass setup_class) {
  return ListDevicesUpTo(root, setup_class, nullptr);
}

std::vector<Device> ListDevicesUpTo(const Path& root, SetupClass setup_class,
                                    const std::function<bool(const Device&)>& is_last) {
  std::vector<Device> devices = ListBuses({.root = root, .wanted = setup_class, .is_last = is_last});
  std::erase_if(devices, [&](const Device& device) { return device.setup_class != setup_class; });
  const auto find_last = [&] {
    return is_last ? std::find_if(devices.begin(), devices.end(), is_last) : devices.end();
  };
  if (setup_class == SetupClass::kBluetooth && find_last() == devices.end()) {
    std::vector<Device> remote = ListRemoteBluetoothDevices(root);
    std::move(remote.begin(), remote.end(), std::back_inserter(devices));
  }
  if (const auto last = find_last(); last != devices.end()) devices.erase(last + 1, devices.end());
  return devices;
}

}  // namespace ostrine
