#include <variant>

#include "ostrine/common/device_text.h"
#include "ostrine/common/modalias.h"
#include "ostrine/linux/acpi_status.h"
#include "ostrine/linux/bus_devices.h"

namespace ostrine {
namespace {

/// The folder at which a driver serves the firmware's device: its own, or that of what the kernel made of it.
Path FunctionNode(const Path& node, const Path& devices) {
  if (!LinkName(node / "driver").empty()) return node;
  for (const std::string& name : EntryNames(node, "physical_node")) {
    Path physical = ResolveBelow(node / name, devices);
    if (!LinkName(physical / "driver").empty()) return physical;
  }
  return node;
}

/// Whether the firmware's device only gives more facts about a device that another bus has enumerated.
bool DescribesPciFunction(const Path& node, const Path& devices) {
  const Path physical = ResolveBelow(node / "physical_node", devices);
  return !physical.empty() && LinkName(physical / "subsystem") == "pci";
}

/// Devices that the kernel invents for its own use.
bool IsInvented(const AcpiAlias& alias) { return alias.ids.front().starts_with("LNX"); }

}  // namespace

void AppendAcpiDevices(const Path& root, std::vector<Device>& devices) {
  const Path folder = DevicesFolder(root);
  for (BusEntry& entry : BusEntries(root, "acpi")) {
    Device device{.bus = Device::Bus::kAcpi, .address = std::move(entry.address), .node = entry.node};
    device.modalias = ModaliasOf(entry.node);
    const Modalias parsed = ParseModalias(device.modalias);
    const auto* alias = std::get_if<AcpiAlias>(&parsed);
    if (alias == nullptr || IsInvented(*alias) || DescribesPciFunction(entry.node, folder)) continue;
    if (!ReadAcpiStatus(entry.node).is_present) continue;
    device.function = FunctionNode(entry.node, folder);
    device.ids = BuildDeviceIds({.modalias = device.modalias});
    device.setup_class =
        ClassifyDevice(device.modalias, {.has_bluetooth_radio = Exists(device.function / "bluetooth"),
                                         .is_fingerprint_reader = IsFingerprintReader({}, alias->ids)});
    devices.push_back(std::move(device));
  }
}

}  // namespace ostrine
