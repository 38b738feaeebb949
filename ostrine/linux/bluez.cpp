#include "ostrine/linux/bluez.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "ostrine/common/bluetooth_type.h"
#include "ostrine/common/natural_order.h"
#include "ostrine/linux/bus_connection.h"

namespace ostrine {
namespace {

constexpr std::size_t kMostRemotes = 1024;

/// What the service tells about one device.
struct RemoteDevice {
  std::string path;
  std::string address;
  std::string address_type;
  std::string alias;
  std::string icon;
  std::optional<std::uint16_t> appearance;
  std::optional<std::uint32_t> class_of_device;
  bool is_paired = false;
  bool is_connected = false;
};

/// Reads the variant that follows as `Value`, whose type letter is `type`; skips one of another type. False
/// when the message is broken.
template <class Value>
bool ReadVariant(const BusMessage& message, char type, Value& value) {
  char kind = 0;
  const char* contents = nullptr;
  if (message.PeekType(kind, contents) < 0 || kind != 'v' || contents == nullptr) return false;
  if (std::string_view(contents) != std::string_view(&type, 1)) return message.Skip("v") >= 0;
  return message.Enter('v', contents) >= 0 && message.ReadBasic(type, &value) >= 0 && message.Exit() >= 0;
}

bool TakeText(const BusMessage& message, std::string& text) {
  const char* value = nullptr;
  if (!ReadVariant(message, 's', value)) return false;
  if (value != nullptr) text = value;
  return true;
}

bool ReadFlag(const BusMessage& message, bool& flag) {
  int value = 0;
  if (!ReadVariant(message, 'b', value)) return false;
  flag = value != 0;
  return true;
}

template <class Number>
bool TakeNumber(const BusMessage& message, char type, std::optional<Number>& number) {
  constexpr auto kNone = static_cast<Number>(~Number{0});
  Number value = kNone;
  if (!ReadVariant(message, type, value)) return false;
  if (value != kNone) number = value;
  return true;
}

bool ReadProperty(const BusMessage& message, std::string_view name, RemoteDevice& device) {
  if (name == "Address") return TakeText(message, device.address);
  if (name == "AddressType") return TakeText(message, device.address_type);
  if (name == "Alias") return TakeText(message, device.alias);
  if (name == "Icon") return TakeText(message, device.icon);
  if (name == "Appearance") return TakeNumber(message, 'q', device.appearance);
  if (name == "Class") return TakeNumber(message, 'u', device.class_of_device);
  if (name == "Paired") return ReadFlag(message, device.is_paired);
  if (name == "Connected") return ReadFlag(message, device.is_connected);
  return message.Skip("v") >= 0;
}

/// Calls `read_value` for each entry {s...} of the array that follows, after its name has been read. False
/// when the message is broken.
template <class ReadValue>
bool ForEachEntry(const BusMessage& message, const char* array, const char* entry, ReadValue&& read_value) {
  if (message.Enter('a', array) < 0) return false;
  for (;;) {
    const int entered = message.Enter('e', entry);
    if (entered < 0) return false;
    if (entered == 0) break;
    const char* name = nullptr;
    if (message.ReadBasic(entry[0], &name) < 0 || name == nullptr) return false;
    if (!read_value(std::string_view(name)) || message.Exit() < 0) return false;
  }
  return message.Exit() >= 0;
}

/// One object's interfaces; fills `device` when it is one.
bool ReadObject(const BusMessage& message, std::optional<RemoteDevice>& device) {
  return ForEachEntry(message, "{sa{sv}}", "sa{sv}", [&](std::string_view interface) {
    if (interface != "org.bluez.Device1") return message.Skip("a{sv}") >= 0;
    device.emplace();
    return ForEachEntry(message, "{sv}", "sv",
                        [&](std::string_view name) { return ReadProperty(message, name, *device); });
  });
}

std::vector<RemoteDevice> ReadObjects(const BusMessage& message) {
  std::vector<RemoteDevice> devices;
  ForEachEntry(message, "{oa{sa{sv}}}", "oa{sa{sv}}", [&](std::string_view path) {
    std::optional<RemoteDevice> device;
    if (!ReadObject(message, device)) return false;
    if (device) {
      device->path = path;
      devices.push_back(std::move(*device));
    }
    return devices.size() < kMostRemotes;
  });
  return devices;
}

/// A random address is low energy's alone; otherwise only classic devices have a class.
BluetoothKind KindOf(const RemoteDevice& remote) {
  return remote.address_type == "random" || !remote.class_of_device ? BluetoothKind::kLowEnergy
                                                                    : BluetoothKind::kClassic;
}

}  // namespace

std::vector<Device> ListRemoteBluetoothDevices(const Path& root) {
  const BusConnection bus(root);
  const BusMessage reply =
      bus.Call(bus.NewCall({"org.bluez", "/", "org.freedesktop.DBus.ObjectManager", "GetManagedObjects"}));
  if (!reply) return {};
  std::vector<RemoteDevice> remotes = ReadObjects(reply);
  std::sort(remotes.begin(), remotes.end(), [](const RemoteDevice& left, const RemoteDevice& right) {
    return ComesBefore(left.path, right.path);
  });

  std::vector<Device> devices;
  for (const RemoteDevice& remote : remotes) {
    std::wstring id = BluetoothHardwareId(remote.address, KindOf(remote));
    if (id.empty() || !(remote.is_paired || remote.is_connected)) continue;
    Device device{.bus = Device::Bus::kBluetooth,
                  .address = Path(remote.path).parent_path().filename().string()};
    device.ids.hardware.push_back(std::move(id));
    device.setup_class = SetupClass::kBluetooth;
    device.name = remote.alias.empty() ? remote.address : remote.alias;
    device.kind = BluetoothType({remote.icon, remote.appearance, remote.class_of_device});
    devices.push_back(std::move(device));
  }
  return devices;
}

}  // namespace ostrine
