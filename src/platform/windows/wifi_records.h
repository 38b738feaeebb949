/// Holds the records of native Wi-Fi to the system's own.
#pragma once

#include <windows.h>

#include <wlanapi.h>

#include <cstddef>

#include "platform/os/wifi.h"

namespace velmora::os {

static_assert(sizeof(WlanInterfaceInfo) == sizeof(WLAN_INTERFACE_INFO));
static_assert(offsetof(WlanInterfaceInfo, guid) == offsetof(WLAN_INTERFACE_INFO, InterfaceGuid));
static_assert(offsetof(WlanInterfaceInfo, description) ==
              offsetof(WLAN_INTERFACE_INFO, strInterfaceDescription));
static_assert(offsetof(WlanInterfaceInfo, state) == offsetof(WLAN_INTERFACE_INFO, isState));
static_assert(offsetof(WlanInterfaceList, count) == offsetof(WLAN_INTERFACE_INFO_LIST, dwNumberOfItems));
static_assert(offsetof(WlanInterfaceList, items) == offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo));

static_assert(sizeof(WlanSsid) == sizeof(DOT11_SSID));
static_assert(offsetof(WlanSsid, length) == offsetof(DOT11_SSID, uSSIDLength));
static_assert(offsetof(WlanSsid, bytes) == offsetof(DOT11_SSID, ucSSID));

static_assert(sizeof(WlanPhyRadioState) == sizeof(WLAN_PHY_RADIO_STATE));
static_assert(offsetof(WlanPhyRadioState, software_state) ==
              offsetof(WLAN_PHY_RADIO_STATE, dot11SoftwareRadioState));
static_assert(offsetof(WlanPhyRadioState, hardware_state) ==
              offsetof(WLAN_PHY_RADIO_STATE, dot11HardwareRadioState));
static_assert(sizeof(WlanRadioState) == sizeof(WLAN_RADIO_STATE));
static_assert(offsetof(WlanRadioState, phys) == offsetof(WLAN_RADIO_STATE, PhyRadioState));

using SystemNetwork = WLAN_AVAILABLE_NETWORK;
static_assert(sizeof(WlanAvailableNetwork) == sizeof(SystemNetwork));
static_assert(offsetof(WlanAvailableNetwork, profile_name) == offsetof(SystemNetwork, strProfileName));
static_assert(offsetof(WlanAvailableNetwork, ssid) == offsetof(SystemNetwork, dot11Ssid));
static_assert(offsetof(WlanAvailableNetwork, bss_type) == offsetof(SystemNetwork, dot11BssType));
static_assert(offsetof(WlanAvailableNetwork, bssid_count) == offsetof(SystemNetwork, uNumberOfBssids));
static_assert(offsetof(WlanAvailableNetwork, connectable) == offsetof(SystemNetwork, bNetworkConnectable));
static_assert(offsetof(WlanAvailableNetwork, signal_quality) == offsetof(SystemNetwork, wlanSignalQuality));
static_assert(offsetof(WlanAvailableNetwork, security_enabled) == offsetof(SystemNetwork, bSecurityEnabled));
static_assert(offsetof(WlanAvailableNetwork, flags) == offsetof(SystemNetwork, dwFlags));
static_assert(offsetof(WlanNetworkList, count) == offsetof(WLAN_AVAILABLE_NETWORK_LIST, dwNumberOfItems));
static_assert(offsetof(WlanNetworkList, items) == offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network));

static_assert(sizeof(WlanBssEntry) == sizeof(WLAN_BSS_ENTRY));
static_assert(offsetof(WlanBssEntry, ssid) == offsetof(WLAN_BSS_ENTRY, dot11Ssid));
static_assert(offsetof(WlanBssEntry, bssid) == offsetof(WLAN_BSS_ENTRY, dot11Bssid));
static_assert(offsetof(WlanBssEntry, bss_type) == offsetof(WLAN_BSS_ENTRY, dot11BssType));
static_assert(offsetof(WlanBssEntry, rssi) == offsetof(WLAN_BSS_ENTRY, lRssi));
static_assert(offsetof(WlanBssEntry, link_quality) == offsetof(WLAN_BSS_ENTRY, uLinkQuality));
static_assert(offsetof(WlanBssEntry, timestamp) == offsetof(WLAN_BSS_ENTRY, ullTimestamp));
static_assert(offsetof(WlanBssEntry, centre_frequency) == offsetof(WLAN_BSS_ENTRY, ulChCenterFrequency));
static_assert(offsetof(WlanBssEntry, ie_offset) == offsetof(WLAN_BSS_ENTRY, ulIeOffset));
static_assert(offsetof(WlanBssEntry, ie_size) == offsetof(WLAN_BSS_ENTRY, ulIeSize));
static_assert(offsetof(WlanBssList, total_size) == offsetof(WLAN_BSS_LIST, dwTotalSize));
static_assert(offsetof(WlanBssList, count) == offsetof(WLAN_BSS_LIST, dwNumberOfItems));
static_assert(offsetof(WlanBssList, items) == offsetof(WLAN_BSS_LIST, wlanBssEntries));

}  // namespace velmora::os
