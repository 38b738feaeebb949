#include "platform/linux/network_manager.h"

#include <charconv>

#include "platform/linux/bus_message.h"

namespace velmora::os {
namespace {

constexpr const char* kNetworkManager = "org.freedesktop.NetworkManager";
constexpr const char* kManagerObject = "/org/freedesktop/NetworkManager";
constexpr const char* kManagerInterface = "org.freedesktop.NetworkManager";
constexpr const char* kDevice = "org.freedesktop.NetworkManager.Device";
constexpr const char* kActive = "org.freedesktop.NetworkManager.Connection.Active";
constexpr const char* kSettings = "org.freedesktop.NetworkManager.Settings.Connection";
constexpr const char* kDhcp = "org.freedesktop.NetworkManager.DHCP4Config";
constexpr std::string_view kNoObject = "/";

std::int64_t NumberIn(const std::string& text) {
  std::int64_t number = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && *rest == 0 ? number : 0;
}

std::optional<std::string> DeviceOf(SystemBus* bus, const std::string& interface) {
  BusError error;
  const BusMessage reply = bus->Call({kNetworkManager, kManagerObject, kManagerInterface},
                                     "GetDeviceByIpIface", error, "s", interface.c_str());
  const char* path = nullptr;
  if (reply.ReadBasic('o', &path) <= 0) return std::nullopt;
  return std::string(path);
}

/// The lease that the object `path` stands for.
ManagedDhcp ReadLease(SystemBus* bus, const char* path) {
  ManagedDhcp lease{.enabled = true};
  BusError error;
  const BusMessage reply = bus->Property({kNetworkManager, path, kDhcp}, "Options", error, "a{sv}");
  if (!reply) return lease;
  std::string expiry;
  std::string length;
  ForEachBusEntry(reply, "sv", [&](std::string_view name) {
    if (name == "expiry") return ReadBusVariant(reply, expiry);
    if (name == "dhcp_lease_time") return ReadBusVariant(reply, length);
    if (name == "dhcp_server_identifier") return ReadBusVariant(reply, lease.server);
    return reply.Skip("v") >= 0;
  });
  lease.expires = NumberIn(expiry);
  const std::int64_t seconds = NumberIn(length);
  if (lease.expires > 0 && seconds > 0 && seconds < lease.expires) lease.obtained = lease.expires - seconds;
  return lease;
}

/// The IPv4 method of a connection's settings; empty when it is not told.
std::string MethodOf(SystemBus* bus, const char* connection) {
  BusError error;
  const BusMessage reply = bus->Call({kNetworkManager, connection, kSettings}, "GetSettings", error, "");
  std::string method;
  if (!reply) return method;
  ForEachBusEntry(reply, "sa{sv}", [&](std::string_view group) {
    if (group != "ipv4") return reply.Skip("a{sv}") >= 0;
    return ForEachBusEntry(reply, "sv", [&](std::string_view name) {
      return name == "method" ? ReadBusVariant(reply, method) : reply.Skip("v") >= 0;
    });
  });
  return method;
}

}  // namespace

NetworkManager::NetworkManager(SystemBus* bus) noexcept
    : bus_(bus != nullptr && IsOnBus(bus, kNetworkManager) ? bus : nullptr) {}

bool NetworkManager::IsManual(const std::string& device) const {
  const auto active = ReadBusPath(bus_, {kNetworkManager, device.c_str(), kDevice}, "ActiveConnection");
  if (!active || *active == kNoObject) return false;
  const auto connection = ReadBusPath(bus_, {kNetworkManager, active->c_str(), kActive}, "Connection");
  if (!connection || *connection == kNoObject) return false;
  const std::string method = MethodOf(bus_, connection->c_str());
  return !method.empty() && method != "auto";
}

std::optional<ManagedDhcp> NetworkManager::DhcpOf(const std::string& interface) const {
  if (bus_ == nullptr) return std::nullopt;
  const auto device = DeviceOf(bus_, interface);
  if (!device) return std::nullopt;
  const BusObject object{kNetworkManager, device->c_str(), kDevice};
  if (!ReadBusFlag(bus_, object, "Managed").value_or(false)) return std::nullopt;
  const auto lease = ReadBusPath(bus_, object, "Dhcp4Config");
  if (lease && *lease != kNoObject) return ReadLease(bus_, lease->c_str());
  // Without a lease yet: by the settings of the connection, which are made for DHCP unless they say
  // otherwise.
  return ManagedDhcp{.enabled = !IsManual(*device)};
}

std::optional<ManagedConnectivity> NetworkManager::Connectivity() const {
  constexpr std::uint32_t kConnectedLocally = 50;
  constexpr std::uint32_t kConnectedGlobally = 70;
  constexpr std::uint32_t kNoneKnown = 0;
  constexpr std::uint32_t kFull = 4;
  if (bus_ == nullptr) return std::nullopt;
  const BusObject manager{kNetworkManager, kManagerObject, kManagerInterface};
  const auto state = ReadBusNumber(bus_, manager, "State");
  if (!state) return std::nullopt;
  ManagedConnectivity connectivity{.connected = *state >= kConnectedLocally, .internet = std::nullopt};
  const std::uint32_t reach = ReadBusNumber(bus_, manager, "Connectivity").value_or(kNoneKnown);
  if (reach != kNoneKnown) {
    connectivity.internet = reach == kFull;
  } else if (connectivity.connected) {
    connectivity.internet = *state >= kConnectedGlobally;
  }
  return connectivity;
}

}  // namespace velmora::os
