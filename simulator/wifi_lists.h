/// The lists of the native Wi-Fi service as they lie in memory. Every list has exactly the memory that its
/// contents need, and is owed back through WlanFreeMemory. Under kUnterminated what a list claims goes beyond
/// it, as far as its reader can tell: texts and lengths, and the count and sizes of access points.
#pragma once

#include <string>

#include "platform/os/wifi.h"
#include "simulator/machine.h"
#include "simulator/run.h"

namespace simulator {

velmora::os::WlanInterfaceList* LendInterfaces(Session& session, Fault fault);
velmora::os::WlanRadioState* LendRadioState(Session& session, const WifiInterface& wifi, Fault fault);
velmora::os::WlanNetworkList* LendNetworks(Session& session, const WifiInterface& wifi, Fault fault);

/// The access points of the network `ssid`.
velmora::os::WlanBssList* LendAccessPoints(Session& session, const WifiInterface& wifi,
                                           const std::string& ssid, std::uint32_t bss_type, Fault fault);

}  // namespace simulator
