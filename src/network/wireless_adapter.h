#pragma once

#include <string>

#include "network/adapter_list.h"

namespace velmora::network {

/// The wireless adapter in a list of adapters; `info` lies in the list.
struct WirelessAdapter {
  const os::AdapterInfo* info = nullptr;  ///< null when the list has none
  std::wstring description;
};

/// Finds the first adapter whose description stands, in either letter case, in the caption of the wireless
/// card or else in its display name. The card is asked once, and only when there is an adapter to compare.
WirelessAdapter FindWirelessAdapter(const AdapterList& adapters);

/// Whether some adapter of the list carries a VPN: its description has "WAN Miniport" in it.
struct VpnAnswer {
  bool is_open = false;
  std::string description;  ///< of the adapter that says so
};
VpnAnswer FindOpenVpn(const AdapterList& adapters);

/// Whether mobile broadband has an address while neither the cable nor Wi-Fi has one.
bool IsOnMobileBroadbandOnly(const AdapterList& adapters);

}  // namespace velmora::network
