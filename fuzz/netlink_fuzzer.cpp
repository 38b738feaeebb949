// Whatever the kernel seems to say about networks and access points, what is taken from it must be possible,
// and the lists that are made of it must lie within their own memory.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "platform/linux/network_state.h"
#include "platform/linux/wifi_lists.h"
#include "platform/linux/wifi_scan.h"

namespace {

using namespace velmora::os;

constexpr std::uint16_t kFamily = 31;

void Require(bool condition) {
  if (!condition) std::abort();
}

void CheckNetworks(Bytes messages) {
  for (const auto& link : ParseLinks(messages)) Require(link.index != 0 && !link.name.empty());
  for (const auto& address : ParseAddresses(messages)) {
    Require(address.prefix_length <= 32);
    Require(address.is_ipv6 || ParseIpv4(TextOf(address.address)) == address.address);
  }
  for (const auto& route : ParseDefaultRoutes(messages)) Require(!route.is_ipv6 || !route.gateway);
}

void CheckAccessPoints(const std::vector<AccessPoint>& points) {
  WlanNetworkList* networks = MakeNetworkList(points);
  Require(networks->count <= points.size());
  std::size_t listed = 0;
  for (std::uint32_t i = 0; i < networks->count; ++i) {
    const auto* network = &networks->items[0] + i;
    Require(network->ssid.length <= sizeof network->ssid.bytes && network->phy_type_count <= 8);
    WlanBssList* list =
        MakeAccessPointList(points, network->ssid, network->bss_type, network->security_enabled != 0, 0);
    Require(list->count == network->bssid_count);
    for (std::uint32_t j = 0; j < list->count; ++j) {
      const auto* entry = &list->items[0] + j;
      const std::size_t begin = 8 + j * sizeof *entry;
      Require(begin + entry->ie_offset <= list->total_size);
      Require(entry->ie_size <= list->total_size - begin - entry->ie_offset);
    }
    listed += list->count;
    WlanFreeMemory(list);
  }
  Require(listed == points.size());
  WlanFreeMemory(networks);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes bytes(data, size);
  CheckNetworks(bytes);
  ParseFamily(bytes);
  for (const auto& interface : ParseWifiInterfaces(bytes, kFamily)) Require(interface.index != 0);
  CheckAccessPoints(ParseScan(bytes, kFamily));
  SecurityOf(bytes, true);
  PhyTypeOf(bytes, 2412);
  Require(SsidOf(bytes).size() <= 32);
  return 0;
}
