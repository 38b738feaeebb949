/// Interfaces, addresses and default routes, as the kernel tells them over netlink.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/netlink.h"
#include "platform/linux/netlink_message.h"

namespace velmora::os {

struct NetworkLink {
  std::uint32_t index = 0;
  std::uint32_t flags = 0;     ///< IFF_UP, IFF_RUNNING, IFF_LOOPBACK...
  std::uint16_t hardware = 0;  ///< ARPHRD_ETHER...
  std::string name;
  std::vector<std::uint8_t> address;
  std::string kind;  ///< of a virtual interface: "bridge", "tun", "wireguard", "veth"...

  bool IsRunning() const noexcept;
  bool IsLoopback() const noexcept;
};

/// An IPv4 address in the order in which it is written: 192.0.2.1 is {192, 0, 2, 1}.
using Ipv4 = std::uint32_t;
std::string TextOf(Ipv4 address);
/// The mask of the first `length` bits, of at most 32.
Ipv4 MaskOf(unsigned int length) noexcept;
/// The address that exactly `text` is; nothing for any other text.
std::optional<Ipv4> ParseIpv4(std::string_view text) noexcept;

/// One address of an interface. Of IPv6 only whether it reaches beyond the link is told.
struct NetworkAddress {
  std::uint32_t index = 0;  ///< of the interface
  bool is_ipv6 = false;
  bool is_global = false;  ///< reaches beyond the link
  Ipv4 address = 0;
  unsigned int prefix_length = 0;
  /// How long it stays valid, in seconds from now; absent for one that nobody has to renew.
  std::optional<std::uint32_t> valid;
  std::uint32_t updated = 0;  ///< when it was last set, in hundredths of a second since the system started
};

/// A default route of the main table that can be used.
struct DefaultRoute {
  std::uint32_t index = 0;  ///< of the interface
  bool is_ipv6 = false;
  std::optional<Ipv4> gateway;  ///< absent where the interface itself is the way, and for IPv6
  std::uint32_t metric = 0;
};

/// What the messages of an answer say; those of other types, and broken ones, are passed over. Pure.
std::vector<NetworkLink> ParseLinks(Bytes messages);
std::vector<NetworkAddress> ParseAddresses(Bytes messages);
std::vector<DefaultRoute> ParseDefaultRoutes(Bytes messages);

struct NetworkState {
  std::vector<NetworkLink> links;         ///< in the order of their indices
  std::vector<NetworkAddress> addresses;  ///< in the kernel's order
  std::vector<DefaultRoute> routes;       ///< those of the lowest metric first
};

/// Which routes are asked for.
enum class Routes { kIpv4, kAll };

/// Asks for all of it; nothing, with errno, on failure.
std::optional<NetworkState> ReadNetworkState(Netlink& netlink, Routes wanted = Routes::kAll);

}  // namespace velmora::os
