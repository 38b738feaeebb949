#include "simulator/wifi_lists.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "platform/unicode.h"
#include "simulator/guid_text.h"
#include "simulator/session.h"

namespace simulator {
namespace {

using velmora::os::WlanAvailableNetwork;
using velmora::os::WlanBssEntry;
using velmora::os::WlanBssList;
using velmora::os::WlanInterfaceInfo;
using velmora::os::WlanInterfaceList;
using velmora::os::WlanNetworkList;
using velmora::os::WlanRadioState;
using velmora::os::WlanSsid;

constexpr std::uint32_t kTooMuch = 0xFFFFFFFF;
constexpr std::size_t kListHead = 8;  ///< of every list, before its items

/// Memory for a list of `count` items with `more` bytes behind them.
template <class List, class Item>
List* LendList(Session& session, std::size_t count, std::size_t more = 0) {
  return static_cast<List*>(session.Lend("WlanFreeMemory", kListHead + count * sizeof(Item) + more));
}

/// Where item `index` of a list lies.
template <class Item>
char* ItemAt(void* list, std::size_t index) {
  return static_cast<char*>(list) + kListHead + index * sizeof(Item);
}

/// Text of a field that always ends in a zero; under a fault the longest one.
void PutText(const std::string& text, Fault fault, std::span<char16_t> field) {
  std::u16string wide = velmora::unicode::Utf16FromUtf8(text);
  if (fault == Fault::kUnterminated) wide.assign(field.size(), u'A');
  std::ranges::copy(wide.substr(0, field.size() - 1), field.begin());
}

void PutSsid(const std::string& text, WlanSsid& ssid) {
  ssid.length = static_cast<std::uint32_t>(std::min(text.size(), sizeof ssid.bytes));
  std::memcpy(ssid.bytes, text.data(), ssid.length);
}

WlanAvailableNetwork RecordOf(const WifiNetwork& network, Fault fault) {
  WlanAvailableNetwork record{};
  PutText(network.profile_name, fault, record.profile_name);
  PutSsid(network.ssid, record.ssid);
  record.ssid.length = network.ssid_length.value_or(record.ssid.length);
  record.bss_type = network.bss_type;
  record.bssid_count = 1;
  record.connectable = network.connectable ? 1 : 0;
  record.signal_quality = network.signal_quality;
  record.security_enabled = network.security_enabled ? 1 : 0;
  if (fault == Fault::kUnterminated) {
    record.ssid.length = kTooMuch;
    std::ranges::fill(record.ssid.bytes, std::uint8_t{'A'});
  }
  return record;
}

WlanBssEntry RecordOf(const WifiBss& bss, std::size_t elements_offset, Fault fault) {
  WlanBssEntry record{};
  PutSsid(bss.ssid, record.ssid);
  std::copy_n(bss.bssid.data.begin(), std::min(bss.bssid.data.size(), sizeof record.bssid), record.bssid);
  record.bss_type = bss.bss_type;
  record.rssi = bss.rssi;
  record.ie_offset = bss.elements_offset.value_or(static_cast<std::uint32_t>(elements_offset));
  record.ie_size = bss.elements_size.value_or(static_cast<std::uint32_t>(bss.elements.data.size()));
  if (fault == Fault::kUnterminated) record.ie_size = kTooMuch;
  return record;
}

}  // namespace

WlanInterfaceList* LendInterfaces(Session& session, Fault fault) {
  const auto& interfaces = session.machine.wifi->interfaces;
  auto* list = LendList<WlanInterfaceList, WlanInterfaceInfo>(session, interfaces.size());
  list->count = static_cast<std::uint32_t>(interfaces.size());
  for (std::size_t i = 0; i < interfaces.size(); ++i) {
    WlanInterfaceInfo record{};
    record.guid = ParseGuid(interfaces[i].guid).value_or(GUID{});
    PutText(interfaces[i].description, fault, record.description);
    record.state = interfaces[i].state;
    std::memcpy(ItemAt<WlanInterfaceInfo>(list, i), &record, sizeof record);
  }
  return list;
}

WlanRadioState* LendRadioState(Session& session, const WifiInterface& wifi, Fault fault) {
  auto* state = static_cast<WlanRadioState*>(session.Lend("WlanFreeMemory", sizeof(WlanRadioState)));
  state->phy_count = fault == Fault::kUnterminated ? kTooMuch : 1;
  state->phys[0] = {.software_state = wifi.software_radio, .hardware_state = wifi.hardware_radio};
  return state;
}

WlanNetworkList* LendNetworks(Session& session, const WifiInterface& wifi, Fault fault) {
  const auto& networks = wifi.networks;
  auto* list = LendList<WlanNetworkList, WlanAvailableNetwork>(session, networks.size());
  list->count = static_cast<std::uint32_t>(networks.size());
  for (std::size_t i = 0; i < networks.size(); ++i) {
    const auto record = RecordOf(networks[i], fault);
    std::memcpy(ItemAt<WlanAvailableNetwork>(list, i), &record, sizeof record);
  }
  return list;
}

WlanBssList* LendAccessPoints(Session& session, const WifiInterface& wifi, const std::string& ssid,
                              std::uint32_t bss_type, Fault fault) {
  std::vector<WifiBss> found;
  std::size_t elements_size = 0;
  for (const auto& bss : wifi.access_points) {
    if (bss.ssid != ssid || bss.bss_type != bss_type) continue;
    found.push_back(bss);
    elements_size += bss.elements.data.size();
  }
  auto* list = LendList<WlanBssList, WlanBssEntry>(session, found.size(), elements_size);
  char* elements = ItemAt<WlanBssEntry>(list, found.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    char* item = ItemAt<WlanBssEntry>(list, i);
    const auto record = RecordOf(found[i], static_cast<std::size_t>(elements - item), fault);
    std::memcpy(item, &record, sizeof record);
    elements = std::copy(found[i].elements.data.begin(), found[i].elements.data.end(), elements);
  }
  list->total_size =
      static_cast<std::uint32_t>(kListHead + found.size() * sizeof(WlanBssEntry) + elements_size);
  list->count = wifi.access_point_count.value_or(static_cast<std::uint32_t>(found.size()));
  if (fault == Fault::kUnterminated) list->count = kTooMuch;
  return list;
}

}  // namespace simulator
