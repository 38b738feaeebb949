#include "platform/linux/dhcp.h"

#include <ctime>
#include <optional>

#include "platform/linux/config_text.h"
#include "platform/linux/lease_text.h"
#include "platform/linux/small_file.h"
#include "platform/os/clock.h"

namespace velmora::os {
namespace {

using Path = std::filesystem::path;

/// What systemd-networkd says; nothing when the interface is not its own.
std::optional<ManagedDhcp> ReadNetworkd(const Path& root, std::uint32_t index,
                                        const NetworkAddress* address) {
  const Path folder = root / "run/systemd/netif";
  const std::string number = std::to_string(index);
  if (const auto text = ReadSmallFile(folder / "leases" / number)) {
    const auto leased = ParseIpv4(KeyValue(*text, "ADDRESS"));
    // A lease that is no longer used stays behind when the settings change.
    if (address == nullptr || leased == address->address) {
      return ManagedDhcp{.enabled = true, .server = KeyValue(*text, "SERVER_ADDRESS")};
    }
  }
  const auto link = ReadSmallFile(folder / "links" / number);
  const std::string settings = link ? KeyValue(*link, "NETWORK_FILE") : std::string();
  if (settings.empty() || address != nullptr) return std::nullopt;
  const auto text = ReadSmallFile(root / Path(settings).relative_path());
  if (!text) return std::nullopt;
  const std::string dhcp = SectionValue(*text, "Network", "DHCP");
  return ManagedDhcp{.enabled = dhcp == "yes" || dhcp == "true" || dhcp == "ipv4" || dhcp == "both"};
}

/// The lease of this very address that a client has written down.
std::optional<Lease> FindLeaseFile(const Path& root, const std::string& interface, Ipv4 address) {
  const Path client = root / "var/lib/dhcp";
  for (const Path& file : {client / ("dhclient." + interface + ".leases"), client / "dhclient.leases"}) {
    const auto text = ReadSmallFile(file);
    const auto lease = text ? FindClientLease(*text, interface) : std::nullopt;
    if (lease && lease->address == address) return lease;
  }
  const auto reply = ReadSmallFile(root / "var/lib/dhcpcd" / (interface + ".lease"));
  if (!reply) return std::nullopt;
  const auto lease = ParseReply({reinterpret_cast<const std::uint8_t*>(reply->data()), reply->size()});
  return lease && lease->address == address ? lease : std::nullopt;
}

/// Fills in the times of the lease as the kernel has them, where they are not known yet.
void AddTimes(const NetworkAddress& address, const Moment& now, ManagedDhcp& dhcp) {
  if (!address.valid || dhcp.expires != 0) return;
  constexpr std::int64_t kHundredthsPerSecond = 100;
  const std::int64_t age = (now.hundredths - std::int64_t{address.updated}) / kHundredthsPerSecond;
  dhcp.expires = now.seconds + *address.valid;
  dhcp.obtained = now.seconds - (age > 0 ? age : 0);
}

ManagedDhcp WithoutManager(const Path& root, const NetworkLink& link, const NetworkAddress* address) {
  if (const auto networkd = ReadNetworkd(root, link.index, address)) return *networkd;
  if (address == nullptr) return {};
  ManagedDhcp dhcp{.enabled = address->valid.has_value()};
  if (const auto lease = FindLeaseFile(root, link.name, address->address)) {
    dhcp.enabled = true;
    dhcp.server = lease->server;
    if (!address->valid) dhcp.expires = lease->expires;
  }
  return dhcp;
}

}  // namespace

Moment Now() {
  constexpr std::int64_t kUnitsPerSecond = 10'000'000;
  constexpr long kNanosecondsPerHundredth = 10'000'000;
  timespec running{};
  clock_gettime(CLOCK_MONOTONIC, &running);
  return {SystemTime() / kUnitsPerSecond,
          std::int64_t{running.tv_sec} * 100 + running.tv_nsec / kNanosecondsPerHundredth};
}

ManagedDhcp DhcpOf(const Path& root, const NetworkManager& manager, const NetworkLink& link,
                   const NetworkAddress* address, const Moment& now) {
  const auto managed = manager.DhcpOf(link.name);
  ManagedDhcp dhcp = managed ? *managed : WithoutManager(root, link, address);
  if (dhcp.enabled && address != nullptr) AddTimes(*address, now, dhcp);
  return dhcp;
}

}  // namespace velmora::os
