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

Path DevicesFolder(const Path& root) {
  std::error_code error;
  const Path folder = std::filesystem::canonical(root / "sys/devices", error);
  return error ? Path() : folder;
}

std::vector<BusEntry> BusEntries(const Path& root, const char* bus) {
  const Path devices = DevicesFolder(root);
  std::vector<BusEntry> entries;
  if (devices.empty()) return entries;
  const Path folder = root / "sys/bus" / bus / "devices";
  for (std::string& name : EntryNames(folder)) {
    Path node = ResolveBelow(folder / name, devices);
    if (!node.empty()) entries.push_back({std::move(name), std::move(node)});
  }
  return entries;
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

void AppendHdAudioDevices(const Path& root, std::vector<Device>& devices) {
  for (BusEntry& entry : BusEntries(root, "hdaudio")) {
    Device device{.bus = Device::Bus::kHdAudio, .address = std::move(entry.address), .node = entry.node};
    device.function = entry.node;
    device.modalias = ModaliasOf(entry.node);
    device.ids = BuildDeviceIds(
        {.modalias = device.modalias, .codec_subsystem = HexAttribute(entry.node / "subsystem_id")});
    device.setup_class = ClassifyDevice(device.modalias, {});
    if (!device.ids.hardware.empty()) devices.push_back(std::move(device));
  }
}

void AppendHidDevices(const Path& root, std::vector<Device>& devices) {
  for (BusEntry& entry : BusEntries(root, "hid")) {
    Device device{.bus = Device::Bus::kHid, .address = std::move(entry.address), .node = entry.node};
    device.function = device.input = entry.node;
    device.modalias = ModaliasOf(entry.node);
    const Path parent = entry.node.parent_path();
    device.ids = BuildDeviceIds({.modalias = device.modalias,
                                 .parent_modalias = ModaliasOf(parent),
                                 .usb_composite = IsCompositeNode(parent.parent_path())});
    device.setup_class = ClassifyDevice(device.modalias, {.has_keyboard = HasKeyboard(entry.node)});
    if (!device.ids.hardware.empty()) devices.push_back(std::move(device));
  }
}

void AppendSerioDevices(const Path& root, std::vector<Device>& devices) {
  for (BusEntry& entry : BusEntries(root, "serio")) {
    // The kernel makes a port for every socket; only one that a driver has found something at is a device.
    if (LinkName(entry.node / "driver").empty()) continue;
    Device device{.bus = Device::Bus::kSerio, .address = std::move(entry.address), .node = entry.node};
    device.function = device.input = entry.node;
    device.modalias = ModaliasOf(entry.node);
    device.ids =
        BuildDeviceIds({.modalias = device.modalias,
                        .firmware_id = ReadAttribute(entry.node / "firmware_id").value_or(std::string())});
    device.setup_class = ClassifyDevice(device.modalias, {.has_keyboard = HasKeyboard(entry.node)});
    devices.push_back(std::move(device));
  }
}

void AppendVirtioDevices(const Path& root, std::vector<Device>& devices) {
  for (BusEntry& entry : BusEntries(root, "virtio")) {
    // Behind PCI it is the PCI function that counts.
    if (LinkName(entry.node.parent_path() / "subsystem") == "pci") continue;
    Device device{.bus = Device::Bus::kVirtio, .address = std::move(entry.address), .node = entry.node};
    device.function = entry.node;
    device.modalias = ModaliasOf(entry.node);
    device.ids = BuildDeviceIds({.modalias = device.modalias});
    device.setup_class = ClassifyDevice(device.modalias, {});
    if (!device.ids.hardware.empty()) devices.push_back(std::move(device));
  }
}

}  // namespace ostrine
