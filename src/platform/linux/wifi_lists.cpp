#include "platform/linux/wifi_lists.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "platform/ostrine/interface_guid.h"
#include "platform/unicode.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kInfrastructure = 1;
constexpr std::uint32_t kAdHoc = 2;
constexpr std::uint32_t kConnected = 1;  ///< flag of a network
constexpr std::size_t kListHead = 8;     ///< of every list, before its items

std::uint32_t BssTypeOf(const AccessPoint& point) noexcept {
  return point.IsAdHoc() ? kAdHoc : kInfrastructure;
}

/// Zeroed memory for a list of `count` items with `more` bytes behind them; null when there is none.
template <class List, class Item>
List* Allocate(std::size_t count, std::size_t more = 0) {
  // The empty list has room for the one item that its type has.
  const std::size_t size = std::max(kListHead + count * sizeof(Item) + more, sizeof(List));
  if (size > std::numeric_limits<std::uint32_t>::max()) return nullptr;
  return static_cast<List*>(std::calloc(1, size));
}

template <class Item>
void PutItem(void* list, std::size_t index, const Item& item) {
  std::memcpy(static_cast<char*>(list) + kListHead + index * sizeof item, &item, sizeof item);
}

void PutSsid(Bytes name, WlanSsid& ssid) {
  ssid.length = static_cast<std::uint32_t>(name.size());
  std::copy(name.begin(), name.end(), ssid.bytes);
}

bool HasName(const AccessPoint& point, const WlanSsid& ssid) {
  const Bytes name = SsidOf(point.elements);
  return name.size() == ssid.length && std::equal(name.begin(), name.end(), ssid.bytes);
}

/// The network of an access point, still without any.
WlanAvailableNetwork NetworkOf(const AccessPoint& point) {
  WlanAvailableNetwork network{};
  PutSsid(SsidOf(point.elements), network.ssid);
  network.bss_type = BssTypeOf(point);
  network.connectable = 1;
  network.security_enabled = point.IsPrivate() ? 1 : 0;
  const WifiSecurity security = SecurityOf(point.elements, point.IsPrivate());
  network.authentication = security.authentication;
  network.cipher = security.cipher;
  return network;
}

/// Adds an access point to its network.
void Join(const AccessPoint& point, WlanAvailableNetwork& network) {
  ++network.bssid_count;
  if (point.is_connected) network.flags |= kConnected;
  network.signal_quality = std::max(network.signal_quality, point.Quality());
  const std::uint32_t phy = PhyTypeOf(point.elements, point.megahertz);
  const auto end = network.phy_types + network.phy_type_count;
  if (std::find(network.phy_types, end, phy) != end) return;
  if (network.phy_type_count == std::size(network.phy_types)) {
    network.more_phy_types = 1;
  } else {
    network.phy_types[network.phy_type_count++] = phy;
  }
}

/// `offset`: of the elements, from the start of the entry.
WlanBssEntry EntryOf(const AccessPoint& point, std::size_t offset, std::int64_t now) {
  constexpr std::int64_t kUnitsPerMillisecond = 10'000;
  constexpr std::int64_t kSecondsBefore1970 = 11'644'473'600;
  constexpr std::int64_t kUnitsPerSecond = 10'000'000;
  constexpr std::uint32_t kKilohertz = 1000;
  WlanBssEntry entry{};
  PutSsid(SsidOf(point.elements), entry.ssid);
  std::copy(point.address.begin(), point.address.end(), entry.bssid);
  entry.bss_type = BssTypeOf(point);
  entry.phy_type = PhyTypeOf(point.elements, point.megahertz);
  entry.rssi = point.signal;
  entry.link_quality = point.Quality();
  entry.in_regulatory_domain = 1;  // the kernel scans no channel outside it
  entry.beacon_period = point.beacon_interval;
  entry.timestamp = point.timestamp;
  entry.host_timestamp = static_cast<std::uint64_t>(now + kSecondsBefore1970 * kUnitsPerSecond -
                                                    point.age * kUnitsPerMillisecond);
  entry.capability = point.capability;
  entry.centre_frequency = point.megahertz * kKilohertz;
  entry.ie_offset = static_cast<std::uint32_t>(offset);
  entry.ie_size = static_cast<std::uint32_t>(point.elements.size());
  return entry;
}

}  // namespace

WlanInterfaceList* MakeInterfaceList(std::span<const DescribedInterface> interfaces) {
  auto* list = Allocate<WlanInterfaceList, WlanInterfaceInfo>(interfaces.size());
  if (list == nullptr) return nullptr;
  list->count = static_cast<std::uint32_t>(interfaces.size());
  for (std::size_t i = 0; i < interfaces.size(); ++i) {
    WlanInterfaceInfo info{
        .guid = InterfaceGuid(interfaces[i].name), .description = {}, .state = interfaces[i].state};
    const std::u16string text = unicode::Utf16FromUtf8(interfaces[i].description);
    text.copy(info.description, std::size(info.description) - 1);
    PutItem(list, i, info);
  }
  return list;
}

WlanNetworkList* MakeNetworkList(std::span<const AccessPoint> points) {
  std::vector<WlanAvailableNetwork> networks;
  for (const AccessPoint& point : points) {
    auto same = std::find_if(networks.begin(), networks.end(), [&](const WlanAvailableNetwork& network) {
      return HasName(point, network.ssid) && network.bss_type == BssTypeOf(point) &&
             (network.security_enabled != 0) == point.IsPrivate();
    });
    if (same == networks.end()) same = networks.insert(same, NetworkOf(point));
    Join(point, *same);
  }
  auto* list = Allocate<WlanNetworkList, WlanAvailableNetwork>(networks.size());
  if (list == nullptr) return nullptr;
  list->count = static_cast<std::uint32_t>(networks.size());
  for (std::size_t i = 0; i < networks.size(); ++i) PutItem(list, i, networks[i]);
  return list;
}

WlanBssList* MakeAccessPointList(std::span<const AccessPoint> points, const WlanSsid& ssid,
                                 std::uint32_t bss_type, bool security_enabled, std::int64_t now) {
  std::vector<const AccessPoint*> found;
  std::size_t elements_size = 0;
  for (const AccessPoint& point : points) {
    const bool is_wanted =
        HasName(point, ssid) && BssTypeOf(point) == bss_type && point.IsPrivate() == security_enabled;
    if (!is_wanted) continue;
    found.push_back(&point);
    elements_size += point.elements.size();
  }
  auto* list = Allocate<WlanBssList, WlanBssEntry>(found.size(), elements_size);
  if (list == nullptr) return nullptr;
  std::size_t elements = kListHead + found.size() * sizeof(WlanBssEntry);
  list->total_size = static_cast<std::uint32_t>(elements + elements_size);
  list->count = static_cast<std::uint32_t>(found.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    const auto& bytes = found[i]->elements;
    PutItem(list, i, EntryOf(*found[i], elements - kListHead - i * sizeof(WlanBssEntry), now));
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<std::uint8_t*>(list) + elements);
    elements += bytes.size();
  }
  return list;
}

void* MakeRadioState(std::uint32_t software_state, std::uint32_t hardware_state) {
  auto* state = static_cast<WlanRadioState*>(std::calloc(1, sizeof(WlanRadioState)));
  if (state == nullptr) return nullptr;
  state->phy_count = 1;
  state->phys[0] = {.phy_index = 0, .software_state = software_state, .hardware_state = hardware_state};
  return state;
}

}  // namespace velmora::os
