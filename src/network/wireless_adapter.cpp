#include "network/wireless_adapter.h"

#include <optional>

#include "platform/os/text_tests.h"
#include "platform/ostrine/stringproc.h"
#include "velmora/networkcard.h"

namespace velmora::network {
namespace {

/// Types of adapters, as the list has them.
constexpr std::uint32_t kEthernet = 6;
constexpr std::uint32_t kWifi = 71;
constexpr std::uint32_t kMobileGsm = 243;
constexpr std::uint32_t kMobileCdma = 244;

bool IsIn(const std::string& text, const char* part) { return os::StrStrIA(text.c_str(), part) != nullptr; }
bool IsIn(const std::wstring& text, const std::wstring& part) {
  return os::StrStrIW(text.c_str(), part.c_str()) != nullptr;
}

/// The names by which the system knows the wireless card, asked for when they are needed.
class WirelessCardNames {
 public:
  bool Hold(const std::wstring& description) {
    if (!caption_) caption_ = card_.GetCaption(NETWORK_CARD_WIRELESS);
    if (IsIn(*caption_, description)) return true;
    if (!display_name_) display_name_ = card_.GetDisplayName(NETWORK_CARD_WIRELESS);
    return IsIn(*display_name_, description);
  }

 private:
  CNetworkCard card_;
  std::optional<std::wstring> caption_;
  std::optional<std::wstring> display_name_;
};

bool HasAddress(const os::AdapterInfo& adapter) {
  return !IsIn(std::string(FieldText(adapter.ip_addresses.address)), "0.0.0.0");
}

bool IsVirtual(const os::AdapterInfo& adapter) {
  return IsIn(std::string(FieldText(adapter.description)), "Virtual");
}

}  // namespace

WirelessAdapter FindWirelessAdapter(const AdapterList& adapters) {
  WirelessCardNames names;
  WirelessAdapter found;
  found.info = adapters.FindIf([&](const os::AdapterInfo& adapter) {
    found.description = StringProc::StringToWString(std::string(FieldText(adapter.description)));
    return names.Hold(found.description);
  });
  return found;
}

VpnAnswer FindOpenVpn(const AdapterList& adapters) {
  VpnAnswer answer;
  answer.is_open = adapters.FindIf([&](const os::AdapterInfo& adapter) {
    answer.description = FieldText(adapter.description);
    return IsIn(answer.description, "WAN Miniport");
  }) != nullptr;
  if (!answer.is_open) answer.description.clear();
  return answer;
}

bool IsOnMobileBroadbandOnly(const AdapterList& adapters) {
  bool is_wired_up = false;
  bool is_wifi_up = false;
  bool is_mobile_up = false;
  adapters.FindIf([&](const os::AdapterInfo& adapter) {
    if (!HasAddress(adapter)) return false;
    if (adapter.type == kEthernet) is_wired_up = true;
    if (adapter.type == kWifi && !IsVirtual(adapter)) is_wifi_up = true;
    if (adapter.type == kMobileGsm || adapter.type == kMobileCdma) is_mobile_up = true;
    return false;  // go on to the end
  });
  return is_mobile_up && !is_wired_up && !is_wifi_up;
}

}  // namespace velmora::network
