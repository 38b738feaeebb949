/// The Wi-Fi radio, and the access points around it.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>

#include "network/access_point.h"
#include "network/adapter_list.h"
#include "network/wifi_client.h"
#include "network/wireless_adapter.h"
#include "network/wps_element.h"
#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/os/last_error.h"
#include "velmora/networkadapter.h"

using velmora::Answer;
using velmora::LogDebug;
using velmora::LogDebugNarrow;
using velmora::Within;

namespace network = velmora::network;
namespace os = velmora::os;

namespace {

constexpr std::uint32_t kRadioState = 4;  // of the questions to an interface
constexpr std::uint32_t kWithAdHocProfiles = 1;
constexpr std::uint32_t kRadioOn = 1;
constexpr std::uint32_t kRadioOff = 2;
constexpr std::uint32_t kNotFound = 1168;  // what the Wi-Fi service says of an interface that is not there

static_assert(offsetof(os::WlanBssList, items) == network::kAccessPointListHead);
static_assert(sizeof(os::WlanBssEntry) == network::kAccessPointEntry);
static_assert(offsetof(os::WlanBssEntry, bssid) == network::kAccessPointAddress);
static_assert(offsetof(os::WlanBssEntry, ie_offset) == network::kElementsOffset);
static_assert(offsetof(os::WlanBssEntry, ie_size) == network::kElementsSize);
static_assert(offsetof(os::WlanRadioState, phys) == 4 && sizeof(os::WlanPhyRadioState) == 12);

/// The error of the step that failed; where none did and there is nothing to switch all the same, that.
std::uint32_t ErrorOfFailedStep() {
  const auto error = os::LastError();
  return error != 0 ? error : kNotFound;
}

std::uint32_t SwitchRadio(bool on) {
  const network::WifiClient client;
  const GUID* const wifi = client.FirstInterface();
  if (wifi == nullptr) return ErrorOfFailedStep();
  const os::WlanPhyRadioState state{.phy_index = 0, .software_state = on ? kRadioOn : kRadioOff};
  return os::WlanSetInterface(client.Handle(), *wifi, kRadioState, sizeof state, &state);
}

unsigned char ReadRadio() {
  const network::WifiClient client;
  const GUID* const wifi = client.FirstInterface();
  if (wifi == nullptr) return 0;
  std::uint32_t size = 0;
  network::WifiMemory<void> data;
  if (os::WlanQueryInterface(client.Handle(), *wifi, kRadioState, size, data.Receive()) != 0) return 0;
  // The count of PHYs and the first of them, which the service may give without room for the others.
  struct {
    std::uint32_t phy_count;
    os::WlanPhyRadioState first;
  } record{};
  if (!data || sizeof record > size) return 0;
  std::memcpy(&record, data.Get(), sizeof record);
  return record.phy_count == 0 ? 0 : static_cast<unsigned char>(record.first.software_state & 0xFF);
}

/// The network of that name in a list; null when there is none.
const os::WlanAvailableNetwork* FindNetwork(const os::WlanNetworkList& list, const std::string& ssid) {
  const auto* const first = reinterpret_cast<const os::WlanAvailableNetwork*>(
      reinterpret_cast<const std::byte*>(&list) + offsetof(os::WlanNetworkList, items));
  const auto* const end = first + list.count;
  const auto* const found = std::find_if(first, end, [&](const os::WlanAvailableNetwork& candidate) {
    return network::NetworkName(candidate.ssid.bytes) == ssid;
  });
  return found != end ? found : nullptr;
}

/// What was learnt of an access point. Whole or not at all, so that running out of memory leaves no half.
struct Identity {
  bool is_network_found = false;
  bool is_point_found = false;
  std::string head;
  std::string last;
  network::AccessPointTexts texts;
};

void ReadFirstPoint(const os::WlanBssList& list, Identity& identity) {
  const std::span bytes(reinterpret_cast<const std::uint8_t*>(&list), list.total_size);
  const auto point = network::FirstAccessPoint(bytes);
  if (!point) return;
  const std::span address(point->address);
  identity.head = network::HexDigits(address.first<3>());
  identity.last = network::HexDigits(address.last<3>());
  identity.texts = network::ReadAccessPointTexts(point->elements);
  identity.is_point_found = true;
}

Identity FindIdentity(const std::string& ssid) {
  Identity identity;
  const network::WifiClient client;
  const GUID* const wifi = client.FirstInterface();
  if (wifi == nullptr) return identity;
  network::WifiMemory<os::WlanNetworkList> networks;
  if (os::WlanGetAvailableNetworkList(client.Handle(), *wifi, kWithAdHocProfiles, networks.Receive()) != 0)
    return identity;
  if (!networks || ssid.empty()) return identity;
  const auto* const wanted = FindNetwork(*networks.Get(), ssid);
  if (wanted == nullptr) return identity;
  identity.is_network_found = true;
  network::WifiMemory<os::WlanBssList> points;
  const auto result = os::WlanGetNetworkBssList(client.Handle(), *wifi, wanted->ssid, wanted->bss_type,
                                                wanted->security_enabled != 0, points.Receive());
  if (result == 0 && points) ReadFirstPoint(*points.Get(), identity);
  return identity;
}

}  // namespace

unsigned char CNetworkAdapter::GetWifiSwitchState() {
  return Answer(static_cast<unsigned char>(0), ReadRadio);
}

unsigned long CNetworkAdapter::SetWifiSwitchState(bool on) {
  LogDebug([&](auto& line) {
    line << "SetWifiSwitchState :state=" << on << Within("CNetworkAdapter::SetWifiSwitchState");
  });
  const std::uint32_t result = Answer(os::kErrorGeneralFailure, [&] { return SwitchRadio(on); });
  LogDebug([&](auto& line) {
    line << "SetWifiSwitchState :dwResult=" << result << Within("CNetworkAdapter::SetWifiSwitchState");
  });
  return result;
}

int CNetworkAdapter::GetWirelessGateWayIP(std::string& gateway) {
  gateway.clear();
  std::wstring description;
  const int result = Answer(0, [&] {
    const network::AdapterList adapters;
    auto found = network::FindWirelessAdapter(adapters);
    if (found.info == nullptr) return 0;
    gateway = network::FieldText(found.info->gateways.address);
    description.swap(found.description);
    return 1;
  });
  if (result != 0) {
    LogDebug([&](auto& line) {
      line << "CNetworkAdapter::GetWirelessGateWayIP:Desc=" << description
           << Within("CNetworkAdapter::GetWirelessGateWayIP");
    });
  }
  return result;
}

void CNetworkAdapter::GetMacBySsid(std::string& macHeadSix, std::string& macLastSix, const std::string& ssid,
                                   std::string& manufacturer, std::string& model) {
  macHeadSix.clear();
  macLastSix.clear();
  model.clear();
  auto identity = Answer(Identity{}, [&] { return FindIdentity(ssid); });
  if (!identity.is_network_found) return;
  if (identity.is_point_found) {
    macHeadSix.swap(identity.head);
    macLastSix.swap(identity.last);
    manufacturer.swap(identity.texts.manufacturer);
    model.swap(identity.texts.model);
    LogDebugNarrow([&](auto& line) {
      line << "Manufacture=" << manufacturer << ", Model=" << model
           << Within("CNetworkAdapter::GetMacBySsid");
    });
  }
  LogDebug([&](auto& line) {
    line << "MacHeadSix.length=" << macHeadSix.size() << ", strMacLastSix.length=" << macLastSix.size()
         << Within("CNetworkAdapter::GetMacBySsid");
  });
}
