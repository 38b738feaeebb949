#include <algorithm>
#include <variant>

#include "ostrine/common/device_text.h"
#include "ostrine/common/modalias.h"
#include "ostrine/linux/acpi_status.h"
#include "ostrine/linux/bus_devices.h"

namespace ostrine {
namespace {

/// The folder at which a driver serves the firmware's device: its own, or that of what the kernel made of it.
Path FunctionNode(const BusFolder& bus, const std::string& address, const Path& node, const Path& devices) {
  if (!bus.LinkName(address + "/driver").empty()) return node;
  for (const std::string& name : EntryNames(node, "physical_node")) {
    Path physical = ResolveBelow(node / name, devices);
    if (!physical.empty() && !LinkName(physical / "driver").empty()) return physical;
  }
  return node;
}

/// Whether the firmware's device only gives more facts about a device that another bus has enumerated.
bool DescribesPciFunction(const BusFolder& bus, const std::string& address, const Path& devices) {
  const std::string physical = address + "/physical_node";
  return bus.LinkName(physical + "/subsystem") == "pci" && !bus.ResolveBelow(physical, devices).empty();
}

/// Devices that the kernel invents for its own use.
bool IsInvented(const AcpiAlias& alias) { return alias.ids.front().starts_with("LNX"); }

/// Whether the port controller has reported the same device: then it is one device, of the firmware's class.
bool IsPort(const Listing& listing, const Device& device) {
  return std::any_of(listing.devices.begin(), listing.devices.end(), [&](const Device& other) {
    return other.bus == Device::Bus::kSerio && other.ids.hardware == device.ids.hardware;
  });
}

}  // namespace

void AppendAcpiDevices(Listing& listing) {
  const Path folder = DevicesFolder(listing.root);
  BusFolder bus(listing.root, "acpi");
  for (std::string& address : bus.Addresses(Numbering::kHexadecimal)) {
    Device device{.bus = Device::Bus::kAcpi, .modalias = bus.ModaliasOf(address)};
    const Modalias parsed = ParseModalias(device.modalias);
    const auto* alias = std::get_if<AcpiAlias>(&parsed);
    if (alias == nullptr || IsInvented(*alias)) continue;
    device.ids = BuildDeviceIds({.modalias = device.modalias});
    device.setup_class =
        ClassifyDevice(device.modalias, {.is_fingerprint_reader = IsFingerprintReader({}, alias->ids)});
    if (!listing.Wants(device.setup_class) && !IsPort(listing, device)) continue;
    if (DescribesPciFunction(bus, address, folder)) continue;
    device.node = bus.NodeOf(address);
    if (device.node.empty() || !ReadAcpiStatus(device.node).is_present) continue;
    device.function = FunctionNode(bus, address, device.node, folder);
    device.address = std::move(address);
    listing.devices.push_back(std::move(device));
  }
}

}  // namespace ostrine
