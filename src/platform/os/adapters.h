/// What Velmora requires of the IP helper: the list of network adapters with their IPv4 addresses.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmora::os {

/// IP_ADDR_STRING, 48 bytes: one address of a list. The texts need not end in a zero.
struct IpAddressText {
  IpAddressText* next;
  char address[16];
  char mask[16];
  std::uint32_t context;
  std::uint32_t padding;
};
static_assert(sizeof(void*) != 8 || sizeof(IpAddressText) == 48);

/// IP_ADAPTER_INFO, 704 bytes: one adapter of a list that lies in the caller's buffer. Its texts are in the
/// system's narrow code page and need not end in a zero.
struct AdapterInfo {
  AdapterInfo* next;
  std::uint32_t combo_index;
  char name[260];
  char description[132];
  std::uint32_t address_length;
  std::uint8_t address[8];
  std::uint32_t index;
  std::uint32_t type;  ///< 6 Ethernet, 71 802.11, 243 and 244 mobile broadband
  std::uint32_t dhcp_enabled;
  IpAddressText* current_ip_address;
  IpAddressText ip_addresses;
  IpAddressText gateways;
  IpAddressText dhcp_server;
  std::int32_t have_wins;
  std::uint32_t padding;
  IpAddressText primary_wins;
  IpAddressText secondary_wins;
  std::int64_t lease_obtained;  ///< seconds since 1970 UTC
  std::int64_t lease_expires;   ///< seconds since 1970 UTC; 0 without a lease
};
static_assert(sizeof(void*) != 8 || sizeof(AdapterInfo) == 704);

/// Fills `size` bytes at `list` with the adapters, linked by `next` inside those bytes, and returns 0. When
/// `list` is null or `size` too small: writes the size that is needed and returns 111. Any other number is an
/// error; 232 means that there is no adapter. The list can grow between two calls.
std::uint32_t GetAdaptersInfo(AdapterInfo* list, std::uint32_t& size);

}  // namespace velmora::os
