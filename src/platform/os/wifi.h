/// What Velmora requires of the native Wi-Fi interface. Every call returns 0 on success, else its error,
/// which it also leaves as the last error. Lists are the service's memory until WlanFreeMemory gives them
/// back.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/os/handle.h"
#include "platform/ostrine/guid.h"

namespace velmora::os {

/// WLAN_INTERFACE_INFO, 532 bytes.
struct WlanInterfaceInfo {
  GUID guid;
  char16_t description[256];
  std::uint32_t state;
};
static_assert(sizeof(WlanInterfaceInfo) == 532);

/// WLAN_INTERFACE_INFO_LIST; `items` goes on for `count` entries.
struct WlanInterfaceList {
  std::uint32_t count;
  std::uint32_t index;
  WlanInterfaceInfo items[1];
};
static_assert(offsetof(WlanInterfaceList, items) == 8);

/// DOT11_SSID, 36 bytes.
struct WlanSsid {
  std::uint32_t length;
  std::uint8_t bytes[32];
};

/// WLAN_PHY_RADIO_STATE, 12 bytes.
struct WlanPhyRadioState {
  std::uint32_t phy_index;
  std::uint32_t software_state;  ///< 1 on, 2 off, 0 unknown
  std::uint32_t hardware_state;
};

/// WLAN_RADIO_STATE; the answer to opcode 4.
struct WlanRadioState {
  std::uint32_t phy_count;
  WlanPhyRadioState phys[64];
};

/// WLAN_AVAILABLE_NETWORK, 628 bytes.
struct WlanAvailableNetwork {
  char16_t profile_name[256];
  WlanSsid ssid;
  std::uint32_t bss_type;
  std::uint32_t bssid_count;
  std::int32_t connectable;
  std::uint32_t not_connectable_reason;
  std::uint32_t phy_type_count;
  std::uint32_t phy_types[8];
  std::int32_t more_phy_types;
  std::uint32_t signal_quality;
  std::int32_t security_enabled;
  std::uint32_t authentication;
  std::uint32_t cipher;
  std::uint32_t flags;
  std::uint32_t reserved;
};
static_assert(sizeof(WlanAvailableNetwork) == 628);

/// WLAN_AVAILABLE_NETWORK_LIST; `items` goes on for `count` entries.
struct WlanNetworkList {
  std::uint32_t count;
  std::uint32_t index;
  WlanAvailableNetwork items[1];
};

/// WLAN_BSS_ENTRY, 360 bytes.
struct WlanBssEntry {
  WlanSsid ssid;
  std::uint32_t phy_id;
  std::uint8_t bssid[6];
  std::uint8_t padding[2];
  std::uint32_t bss_type;
  std::uint32_t phy_type;
  std::int32_t rssi;
  std::uint32_t link_quality;
  std::uint8_t in_regulatory_domain;
  std::uint8_t padding2;
  std::uint16_t beacon_period;
  std::uint8_t padding3[4];
  std::uint64_t timestamp;
  std::uint64_t host_timestamp;
  std::uint16_t capability;
  std::uint8_t padding4[2];
  std::uint32_t centre_frequency;
  std::uint32_t rate_count;
  std::uint16_t rates[126];
  std::uint32_t ie_offset;  ///< of the element block, from the start of this entry
  std::uint32_t ie_size;
};
static_assert(sizeof(WlanBssEntry) == 360 && offsetof(WlanBssEntry, bssid) == 40);

/// WLAN_BSS_LIST; `items` goes on for `count` entries, then the element blocks, `total_size` bytes in all.
struct WlanBssList {
  std::uint32_t total_size;
  std::uint32_t count;
  WlanBssEntry items[1];
};
static_assert(offsetof(WlanBssList, items) == 8);

/// Opens a client handle for client version `version` (2).
std::uint32_t WlanOpenHandle(std::uint32_t version, std::uint32_t& negotiated_version, Handle& client);
std::uint32_t WlanCloseHandle(Handle client);

/// Lists the Wi-Fi interfaces, in the system's order.
std::uint32_t WlanEnumInterfaces(Handle client, WlanInterfaceList*& list);

/// Asks an interface for `opcode` (4: radio state, a WlanRadioState); `data` has `size` bytes.
std::uint32_t WlanQueryInterface(Handle client, const GUID& interface_guid, std::uint32_t opcode,
                                 std::uint32_t& size, void*& data);

/// Sets `opcode` (4: radio state, a WlanPhyRadioState) of an interface from `size` bytes.
std::uint32_t WlanSetInterface(Handle client, const GUID& interface_guid, std::uint32_t opcode,
                               std::uint32_t size, const void* data);

/// Lists the networks that the latest scan found; no scan is started. `flags` 1: with all ad-hoc profiles.
std::uint32_t WlanGetAvailableNetworkList(Handle client, const GUID& interface_guid, std::uint32_t flags,
                                          WlanNetworkList*& list);

/// Lists the access points of one network, with the elements that they announced; no scan is started.
std::uint32_t WlanGetNetworkBssList(Handle client, const GUID& interface_guid, const WlanSsid& ssid,
                                    std::uint32_t bss_type, bool security_enabled, WlanBssList*& list);

/// Gives back a list or data; null is allowed.
void WlanFreeMemory(void* memory);

}  // namespace velmora::os
