/// The list of network adapters of the system whose file tree begins at a root folder; the root is "/" but in
/// tests.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "platform/linux/netlink.h"
#include "platform/linux/network_state.h"
#include "platform/os/adapters.h"

namespace velmora::os {

/// One adapter before it is laid out.
struct Adapter {
  std::string name;
  std::string description;
  std::vector<std::uint8_t> address;
  std::uint32_t index = 0;
  std::uint32_t type = 0;
  bool dhcp_enabled = false;
  std::vector<IpAddressText> ip_addresses;  ///< without their links
  std::vector<IpAddressText> gateways;
  std::string dhcp_server;
  std::int64_t lease_obtained = 0;
  std::int64_t lease_expires = 0;
};

/// GetAdaptersInfo of `root` and of what `netlink` tells.
///
/// Listed are all cards, and of the interfaces that the kernel makes those that are up with an IPv4 address,
/// but for the loopback. An adapter whose link is down has no address, however it is set up. Where there is
/// no address or gateway the list has one entry, 0.0.0.0.
///
/// The type is that of the hardware: 6, 71 or 243, also for a bridge, bond or VLAN on top of it. Tunnels are
/// of type 131 (dialled ones 23), whatever else stands on no hardware of type 53.
std::uint32_t FillAdaptersInfo(const std::filesystem::path& root, Netlink& netlink, AdapterInfo* list,
                               std::uint32_t& size);

/// How many bytes the list of `adapters` takes.
std::size_t SizeOf(std::span<const Adapter> adapters);

/// Lays `adapters`, at least one, out in the SizeOf bytes at `list`.
void PutAdapters(std::span<const Adapter> adapters, AdapterInfo* list);

}  // namespace velmora::os
