#include "ostrine/linux/bus_devices.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

/// The words of a key bitmap, most significant first: "402000000 3803078f800d001 feffffdfffefffff
/// fffffffffffffffe".
std::string_view LastWord(std::string_view bitmap) {
  const std::size_t blank = bitmap.find_last_of(' ');
  return blank == std::string_view::npos ? bitmap : bitmap.substr(blank + 1);
}

}  // namespace

Path DevicesFolder(const Path& root) { return ResolveBelow(root / "sys/devices", "/"); }

BusFolder::BusFolder(const Path& root, const char* bus)
    : Folder((root == "/" ? "" : root.native()) + "/sys/bus/" + bus + "/devices"),
      root_(root == "/" ? "" : root.native()) {}

std::vector<std::string> BusFolder::Addresses(Numbering numbering) {
  // Hexadecimal numbers have a fixed width, so that their bytes stand in their order.
  return numbering == Numbering::kHexadecimal ? EntryNamesByBytes() : EntryNames();
}

std::string BusFolder::ModaliasOf(const std::string& address) const {
  if (auto modalias = ReadAttribute(address + "/modalias")) return *modalias;
  return LineValue(ReadAttribute(address + "/uevent").value_or(std::string()), "MODALIAS");
}

Path BusFolder::NodeOf(const std::string& address) {
  std::string name = ResolveBelow(address, std::string_view("/"));
  // Without links in it, a name that begins so is in the folder; else that is the end of a link itself.
  if (name.starts_with(root_ + "/sys/devices/")) return name;
  if (!devices_) devices_ = DevicesFolder(root_.empty() ? "/" : root_).native() + "/";
  return devices_->size() > 1 && name.starts_with(*devices_) ? name : std::string();
}

std::string ModaliasOf(const Path& node) {
  if (auto modalias = ReadAttribute(node / "modalias")) return *modalias;
  return LineValue(ReadAttribute(node / "uevent").value_or(std::string()), "MODALIAS");
}

bool HasKeyboard(const Path& node) {
  for (const std::string& name : EntryNames(node / "input", "input")) {
    const std::string keys = CleanAttribute(node / "input" / name / "capabilities/key");
    const std::string_view word = LastWord(keys);
    std::uint64_t bits = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), bits, 16);
    // Escape, the digits, and the letters of the upper rows: what no remote control or button box has.
    constexpr std::uint64_t kTypewriterKeys = 0xFFFFFFFE;
    if (error == std::errc() && (bits & kTypewriterKeys) == kTypewriterKeys) return true;
  }
  return false;
}

Path FirstInput(const Path& node) {
  if (node.empty()) return {};
  const auto names = EntryNames(node / "input", "input");
  return names.empty() ? Path() : node / "input" / names.front();
}

void AppendHdAudioDevices(Listing& listing) {
  BusFolder bus(listing.root, "hdaudio");
  for (std::string& address : bus.Addresses(Numbering::kDecimal)) {
    Device device{.bus = Device::Bus::kHdAudio, .modalias = bus.ModaliasOf(address)};
    device.setup_class = ClassifyDevice(device.modalias, {});
    if (!listing.Wants(device.setup_class)) continue;
    device.node = device.function = bus.NodeOf(address);
    device.ids = BuildDeviceIds(
        {.modalias = device.modalias, .codec_subsystem = bus.HexAttribute(address + "/subsystem_id")});
    device.address = std::move(address);
    if (!device.node.empty() && !device.ids.hardware.empty()) listing.devices.push_back(std::move(device));
  }
}

void AppendHidDevices(Listing& listing) {
  BusFolder bus(listing.root, "hid");
  for (std::string& address : bus.Addresses(Numbering::kHexadecimal)) {
    Device device{.bus = Device::Bus::kHid, .node = bus.NodeOf(address)};
    if (device.node.empty()) continue;
    device.modalias = bus.ModaliasOf(address);
    device.setup_class = ClassifyDevice(device.modalias, {.has_keyboard = HasKeyboard(device.node)});
    if (!listing.Wants(device.setup_class)) continue;
    device.address = std::move(address);
    device.function = device.input = device.node;
    const Path parent = device.node.parent_path();
    device.ids = BuildDeviceIds({.modalias = device.modalias,
                                 .parent_modalias = ModaliasOf(parent),
                                 .usb_composite = IsCompositeNode(parent.parent_path())});
    if (!device.ids.hardware.empty()) listing.devices.push_back(std::move(device));
  }
}

void AppendSerioDevices(Listing& listing) {
  BusFolder bus(listing.root, "serio");
  for (std::string& address : bus.Addresses(Numbering::kDecimal)) {
    // The kernel makes a port for every socket; only one that a driver has found something at is a device.
    if (bus.LinkName(address + "/driver").empty()) continue;
    Device device{.bus = Device::Bus::kSerio, .node = bus.NodeOf(address)};
    if (device.node.empty()) continue;
    device.function = device.input = device.node;
    device.modalias = bus.ModaliasOf(address);
    device.ids =
        BuildDeviceIds({.modalias = device.modalias,
                        .firmware_id = bus.ReadAttribute(address + "/firmware_id").value_or(std::string())});
    device.setup_class = ClassifyDevice(device.modalias, {.has_keyboard = HasKeyboard(device.node)});
    device.address = std::move(address);
    // Of whatever class: it may be that of a firmware's device which is.
    listing.devices.push_back(std::move(device));
  }
}

void ListParavirtual(Listing& listing) {
  BusFolder bus(listing.root, "virtio");
  for (std::string& address : bus.Addresses(Numbering::kDecimal)) {
    // ".../0000:00:03.0/virtio2"
    const std::string target = bus.LinkTarget(address);
    std::string_view parent = target;
    parent = parent.substr(0, parent.find_last_of('/'));
    parent.remove_prefix(parent.find_last_of('/') + 1);
    listing.paravirtual.push_back({std::move(address), std::string(parent)});
  }
}

void AppendVirtioDevices(Listing& listing) {
  // Behind PCI it is the PCI function that counts.
  std::erase_if(listing.paravirtual, [&](const Paravirtual& paravirtual) {
    return std::binary_search(listing.pci.begin(), listing.pci.end(), paravirtual.parent);
  });
  if (listing.paravirtual.empty()) return;
  BusFolder bus(listing.root, "virtio");
  for (const Paravirtual& paravirtual : listing.paravirtual) {
    const std::string& address = paravirtual.address;
    if (bus.LinkName(address + "/../subsystem") == "pci") continue;
    Device device{.bus = Device::Bus::kVirtio, .address = address, .modalias = bus.ModaliasOf(address)};
    device.setup_class = ClassifyDevice(device.modalias, {});
    if (!listing.Wants(device.setup_class)) continue;
    device.node = device.function = bus.NodeOf(address);
    device.ids = BuildDeviceIds({.modalias = device.modalias});
    if (!device.node.empty() && !device.ids.hardware.empty()) listing.devices.push_back(std::move(device));
  }
}

}  // namespace ostrine
