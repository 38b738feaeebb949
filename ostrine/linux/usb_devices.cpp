#include <algorithm>
#include <optional>
#include <string_view>

#include "ostrine/common/device_text.h"
#include "ostrine/linux/bus_devices.h"

namespace ostrine {
namespace {

constexpr int kHexWidth = 4;

/// `value` in capital hexadecimal digits, as a modalias has them.
std::string Hex(std::uint32_t value, int digits) {
  std::string text;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    text.push_back("0123456789ABCDEF"[value >> shift & 15]);
  }
  return text;
}

std::optional<UsbClass> DeviceClassOf(const Path& node) {
  const auto base = HexAttribute(node / "bDeviceClass");
  const auto sub = HexAttribute(node / "bDeviceSubClass");
  const auto protocol = HexAttribute(node / "bDeviceProtocol");
  if (!base || !sub || !protocol || *base > 0xFF || *sub > 0xFF || *protocol > 0xFF) return std::nullopt;
  return UsbClass{static_cast<std::uint8_t>(*base), static_cast<std::uint8_t>(*sub),
                  static_cast<std::uint8_t>(*protocol)};
}

/// A whole device has no modalias of its own; this is how the ones of its interfaces begin.
std::string WholeModalias(const Path& node) {
  const auto vendor = HexAttribute(node / "idVendor");
  const auto product = HexAttribute(node / "idProduct");
  const auto revision = HexAttribute(node / "bcdDevice");
  const auto device_class = DeviceClassOf(node);
  if (!vendor || !product || !revision || !device_class) return {};
  return "usb:v" + Hex(*vendor, kHexWidth) + "p" + Hex(*product, kHexWidth) + "d" +
         Hex(*revision, kHexWidth) + "dc" + Hex(device_class->base_class, 2) + "dsc" +
         Hex(device_class->sub_class, 2) + "dp" + Hex(device_class->protocol, 2);
}

/// Folders of the interfaces of the device in `node`: "1-4:1.0" below "1-4", "1-0:1.0" below "usb1".
std::vector<Path> InterfacesOf(const Path& node) {
  std::vector<Path> interfaces;
  for (const std::string& name : EntryNames(node)) {
    if (name.find(':') == std::string::npos || !Exists(node / name / "bInterfaceNumber")) continue;
    interfaces.push_back(node / name);
  }
  return interfaces;
}

/// Interfaces that belong together count as one device, named by the first of them.
bool BelongsToEarlierInterface(const Path& interface) {
  const auto first = HexAttribute(interface / "iad_bFirstInterface");
  return first && first != HexAttribute(interface / "bInterfaceNumber");
}

std::string OwnNames(const Path& node) {
  return CleanAttribute(node / "manufacturer") + " " + CleanAttribute(node / "product");
}

DeviceTraits TraitsOf(const Path& interface) {
  return {.has_network_interface = Exists(interface / "net"),
          .has_bluetooth_radio = Exists(interface / "bluetooth")};
}

void AppendComposite(const BusEntry& entry, const std::vector<Path>& interfaces,
                     std::vector<Device>& devices) {
  Device whole{.bus = Device::Bus::kUsb, .address = entry.address, .node = entry.node};
  whole.function = entry.node;
  whole.modalias = WholeModalias(entry.node);
  whole.ids = BuildDeviceIds({.modalias = whole.modalias, .usb_composite = true});
  whole.setup_class = ClassifyDevice(whole.modalias, {.is_composite_usb = true});
  if (whole.ids.hardware.empty()) return;
  devices.push_back(std::move(whole));

  const bool is_reader = IsFingerprintReader(OwnNames(entry.node), {});
  for (const Path& interface : interfaces) {
    if (BelongsToEarlierInterface(interface)) continue;
    Device part{.bus = Device::Bus::kUsbPart, .address = interface.filename().string(), .node = interface};
    part.function = interface;
    part.modalias = ModaliasOf(interface);
    part.ids = BuildDeviceIds({.modalias = part.modalias, .usb_composite = true});
    DeviceTraits traits = TraitsOf(interface);
    traits.is_composite_usb = true;
    traits.is_fingerprint_reader = is_reader;
    part.setup_class = ClassifyDevice(part.modalias, traits);
    if (!part.ids.hardware.empty()) devices.push_back(std::move(part));
  }
}

void AppendSingle(BusEntry entry, const std::vector<Path>& interfaces, std::vector<Device>& devices) {
  Device device{.bus = Device::Bus::kUsb, .address = std::move(entry.address), .node = entry.node};
  const auto bound = std::find_if(interfaces.begin(), interfaces.end(), [](const Path& interface) {
    return !LinkName(interface / "driver").empty();
  });
  device.function = entry.node;
  if (!interfaces.empty()) device.function = bound != interfaces.end() ? *bound : interfaces.front();
  device.modalias = interfaces.empty() ? std::string() : ModaliasOf(interfaces.front());
  if (device.modalias.empty()) device.modalias = WholeModalias(entry.node);

  DeviceTraits traits;
  for (const Path& interface : interfaces) {
    const DeviceTraits of_interface = TraitsOf(interface);
    traits.has_network_interface |= of_interface.has_network_interface;
    traits.has_bluetooth_radio |= of_interface.has_bluetooth_radio;
  }
  traits.is_fingerprint_reader = IsFingerprintReader(OwnNames(entry.node), {});
  device.ids = BuildDeviceIds({.modalias = device.modalias});
  device.setup_class = ClassifyDevice(device.modalias, traits);
  if (!device.ids.hardware.empty()) devices.push_back(std::move(device));
}

}  // namespace

bool IsCompositeNode(const Path& node) {
  const auto device_class = DeviceClassOf(node);
  const auto interfaces = NumberAttribute(node / "bNumInterfaces");
  const auto configurations = NumberAttribute(node / "bNumConfigurations");
  if (!device_class || !interfaces || !configurations) return false;
  constexpr std::int64_t kMost = 0xFF;
  if (*interfaces < 0 || *interfaces > kMost || *configurations < 0 || *configurations > kMost) return false;
  return IsUsbComposite(*device_class, static_cast<unsigned>(*interfaces),
                        static_cast<unsigned>(*configurations));
}

void AppendUsbDevices(const Path& root, std::vector<Device>& devices) {
  for (BusEntry& entry : BusEntries(root, "usb")) {
    if (entry.address.find(':') != std::string::npos) continue;  // an interface: it comes with its device
    const std::vector<Path> interfaces = InterfacesOf(entry.node);
    if (IsCompositeNode(entry.node)) {
      AppendComposite(entry, interfaces, devices);
    } else {
      AppendSingle(std::move(entry), interfaces, devices);
    }
  }
}

}  // namespace ostrine
