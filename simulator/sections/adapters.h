#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// One IPv4 address of an adapter. Texts are cut at the 16 bytes of their field and end in a zero only when
/// they are shorter.
struct AdapterAddress {
  std::string address;
  std::string mask;

  bool operator==(const AdapterAddress&) const = default;
};

template <class Archive>
void Fields(Archive& archive, AdapterAddress& address) {
  archive.Field("address", address.address);
  archive.Field("mask", address.mask);
}

/// One network adapter. An empty address list is reported as one empty address.
struct Adapter {
  std::string name;         ///< GUID text; field of 260 bytes, as for addresses
  std::string description;  ///< field of 132 bytes
  Bytes address;            ///< hardware address, at most 8 bytes
  std::uint32_t index = 0;
  std::uint32_t type = 6;  ///< 6 Ethernet, 71 802.11, 243 and 244 mobile broadband
  bool dhcp_enabled = true;
  std::vector<AdapterAddress> ip_addresses;
  std::vector<AdapterAddress> gateways;
  std::int64_t lease_obtained = 0;        ///< seconds since 1970-01-01 UTC
  std::int64_t lease_expires = 0;         ///< likewise; 0 without a lease
  std::uint32_t arrives_after_calls = 0;  ///< is not there until the list was asked for so often

  bool operator==(const Adapter&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Adapter& adapter) {
  archive.Field("name", adapter.name);
  archive.Field("description", adapter.description);
  archive.Field("address", adapter.address);
  archive.Field("index", adapter.index);
  archive.Field("type", adapter.type);
  archive.Field("dhcp_enabled", adapter.dhcp_enabled);
  archive.Field("ip_addresses", adapter.ip_addresses);
  archive.Field("gateways", adapter.gateways);
  archive.Field("lease_obtained", adapter.lease_obtained);
  archive.Field("lease_expires", adapter.lease_expires);
  archive.Field("arrives_after_calls", adapter.arrives_after_calls);
}

/// The IP helper's list of adapters. File key `adapters`.
struct Adapters {
  std::vector<Adapter> list;
  Error error = 0;     ///< what asking for the list gives
  bool loops = false;  ///< the last record points back at the first

  bool operator==(const Adapters&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Adapters& adapters) {
  archive.Field("list", adapters.list);
  archive.Field("error", adapters.error);
  archive.Field("loops", adapters.loops);
}

}  // namespace simulator
