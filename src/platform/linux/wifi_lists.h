/// Lists of native Wi-Fi, in memory that WlanFreeMemory gives back. Null when there is no memory. Pure.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/linux/wifi_scan.h"
#include "platform/os/wifi.h"

namespace velmora::os {

struct DescribedInterface {
  std::string name;
  std::string description;
  std::uint32_t state = 0;  ///< 0 not ready, 1 connected, 4 disconnected
};

WlanInterfaceList* MakeInterfaceList(std::span<const DescribedInterface> interfaces);

/// One entry for each name, kind of network and use of encryption, in the order of the access points.
WlanNetworkList* MakeNetworkList(std::span<const AccessPoint> points);

/// The access points of one network, with the elements that they announced. `now`: the time in units of 100
/// nanoseconds since 1970.
WlanBssList* MakeAccessPointList(std::span<const AccessPoint> points, const WlanSsid& ssid,
                                 std::uint32_t bss_type, bool security_enabled, std::int64_t now);

/// One radio, by what stands for on or off.
void* MakeRadioState(std::uint32_t software_state, std::uint32_t hardware_state);

}  // namespace velmora::os
