#include "platform/linux/bluez.h"

#include <algorithm>

#include "platform/linux/bus_message.h"

namespace velmora::os {
namespace {

constexpr const char* kService = "org.bluez";
constexpr const char* kAdapterInterface = "org.bluez.Adapter1";
constexpr const char* kDeviceInterface = "org.bluez.Device1";
constexpr std::size_t kMostDevices = 4096;

bool Skip(const BusMessage& message, const char* types) { return message.Skip(types) >= 0; }

bool ReadProperty(const BusMessage& message, std::string_view name, BluetoothAdapter& adapter) {
  if (name == "Address") return ReadBusVariant(message, adapter.address);
  if (name == "Alias") return ReadBusVariant(message, adapter.alias);
  if (name == "Class") return ReadBusVariant(message, 'u', adapter.class_of_device);
  if (name == "Manufacturer") return ReadBusVariant(message, 'q', adapter.manufacturer);
  if (name == "Powered") return ReadBusVariant(message, adapter.is_powered);
  return Skip(message, "v");
}

bool ReadProperty(const BusMessage& message, std::string_view name, BluetoothDevice& device) {
  if (name == "Address") return ReadBusVariant(message, device.address);
  if (name == "AddressType") return ReadBusVariant(message, device.address_type);
  if (name == "Alias") return ReadBusVariant(message, device.alias);
  if (name == "Paired") return ReadBusVariant(message, device.is_paired);
  if (name == "Trusted") return ReadBusVariant(message, device.is_trusted);
  if (name == "Connected") return ReadBusVariant(message, device.is_connected);
  if (name == "Class") {
    std::uint32_t number = 0;
    if (!ReadBusVariant(message, 'u', number)) return false;
    device.class_of_device = number;
    return true;
  }
  if (name == "RSSI") {  // told only while an inquiry runs that has met the device
    device.is_in_sight = true;
    return Skip(message, "v");
  }
  return Skip(message, "v");
}

template <class Object>
bool ReadProperties(const BusMessage& message, Object& object) {
  return ForEachBusEntry(message, "sv",
                         [&](std::string_view name) { return ReadProperty(message, name, object); });
}

bool ReadObject(const BusMessage& message, std::string_view path, BluetoothObjects& objects) {
  return ForEachBusEntry(message, "sa{sv}", [&](std::string_view interface) {
    if (interface == kAdapterInterface) {
      objects.adapters.push_back({.path = std::string(path)});
      return ReadProperties(message, objects.adapters.back());
    }
    if (interface != kDeviceInterface || objects.devices.size() == kMostDevices)
      return Skip(message, "a{sv}");
    objects.devices.push_back(
        {.path = std::string(path), .adapter = std::string(path.substr(0, path.rfind('/')))});
    return ReadProperties(message, objects.devices.back());
  });
}

/// "hci2" before "hci10".
template <class Object>
bool ComesBefore(const Object& left, const Object& right) {
  if (left.path.size() != right.path.size()) return left.path.size() < right.path.size();
  return left.path < right.path;
}

bool CallAdapter(SystemBus* bus, const std::string& adapter, const char* method) noexcept {
  BusError error;
  return static_cast<bool>(bus->Call({kService, adapter.c_str(), kAdapterInterface}, method, error, ""));
}

int Nibble(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

std::optional<BluetoothObjects> ReadBluetoothObjects(SystemBus* bus) {
  if (!IsOnBus(bus, kService)) return std::nullopt;
  BusError error;
  const BusMessage reply =
      bus->Call({kService, "/", "org.freedesktop.DBus.ObjectManager"}, "GetManagedObjects", error, "");
  BluetoothObjects objects;
  const bool is_read = reply && ForEachBusEntry(reply, "oa{sa{sv}}", [&](std::string_view path) {
                         return ReadObject(reply, path, objects);
                       });
  if (!is_read) return std::nullopt;
  std::sort(objects.adapters.begin(), objects.adapters.end(), ComesBefore<BluetoothAdapter>);
  std::sort(objects.devices.begin(), objects.devices.end(), ComesBefore<BluetoothDevice>);
  return objects;
}

bool StartInquiry(SystemBus* bus, const std::string& adapter) {
  BusError error;
  // Where the filter is refused the inquiry finds more than is asked for, which is sorted out later.
  bus->Call({kService, adapter.c_str(), kAdapterInterface}, "SetDiscoveryFilter", error, "a{sv}", 1,
            "Transport", "s", "bredr");
  return CallAdapter(bus, adapter, "StartDiscovery");
}

void StopInquiry(SystemBus* bus, const std::string& adapter) noexcept {
  CallAdapter(bus, adapter, "StopDiscovery");
}

std::optional<std::uint64_t> ParseBluetoothAddress(std::string_view text) noexcept {
  constexpr std::size_t kLength = 17;
  if (text.size() != kLength) return std::nullopt;
  std::uint64_t address = 0;
  for (std::size_t i = 0; i < kLength; ++i) {
    if (i % 3 == 2) {
      if (text[i] != ':') return std::nullopt;
      continue;
    }
    const int nibble = Nibble(text[i]);
    if (nibble < 0) return std::nullopt;
    address = address << 4 | static_cast<std::uint64_t>(nibble);
  }
  return address;
}

}  // namespace velmora::os
