#include "ostrine/linux/device.h"

#include <algorithm>
#include <iterator>
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

}  // namespace

std::vector<Device> ListDevices(const Path& root) {
  std::vector<Device> devices;
  AppendPciDevices(root, devices);
  AppendUsbDevices(root, devices);
  AppendHdAudioDevices(root, devices);
  AppendHidDevices(root, devices);
  AppendSerioDevices(root, devices);
  AppendAcpiDevices(root, devices);
  AppendVirtioDevices(root, devices);
  return WithPortsJoinedToFirmware(std::move(devices));
}

std::vector<Device> ListDevices(const Path& root, SetupClass setup_class) {
  std::vector<Device> devices = ListDevices(root);
  std::erase_if(devices, [&](const Device& device) { return device.setup_class != setup_class; });
  if (setup_class == SetupClass::kBluetooth) {
    std::vector<Device> remote = ListRemoteBluetoothDevices(root);
    std::move(remote.begin(), remote.end(), std::back_inserter(devices));
  }
  return devices;
}

}  // namespace ostrine
