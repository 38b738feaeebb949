#include <optional>

#include "ostrine/linux/bus_devices.h"

namespace ostrine {
namespace {

/// A paravirtual function has a generic driver, and its real one at a device of its own below it.
Path FunctionNode(const Path& node) {
  if (LinkName(node / "driver") != "virtio-pci") return node;
  const auto names = EntryNames(node, "virtio");
  return names.empty() ? node : node / names.front();
}

}  // namespace

void AppendPciDevices(const Path& root, std::vector<Device>& devices) {
  for (BusEntry& entry : BusEntries(root, "pci")) {
    Device device{.bus = Device::Bus::kPci, .address = std::move(entry.address), .node = entry.node};
    device.function = FunctionNode(entry.node);
    device.modalias = ModaliasOf(entry.node);
    DeviceFacts facts{.modalias = device.modalias};
    if (const auto revision = HexAttribute(entry.node / "revision"); revision && *revision <= 0xFF) {
      facts.pci_revision = static_cast<std::uint8_t>(*revision);
    }
    device.ids = BuildDeviceIds(facts);
    device.setup_class =
        ClassifyDevice(device.modalias, {.has_network_interface = Exists(device.function / "net"),
                                         .has_bluetooth_radio = Exists(entry.node / "bluetooth")});
    if (!device.ids.hardware.empty()) devices.push_back(std::move(device));
  }
}

}  // namespace ostrine
