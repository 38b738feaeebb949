#include "network/card_rules.h"

namespace velmora::network {

bool IsInternal(std::wstring_view hardware_id) noexcept {
  return hardware_id.starts_with(L"PCI") || hardware_id.starts_with(L"QCMS");
}

std::optional<Medium> MediumOf(NETWORK_CARD_TYPE type) noexcept {
  switch (type) {
    case NETWORK_CARD_WIRELESS:
      return Medium::kNative80211;
    case NETWORK_CARD_WIRED:
      return Medium::kEthernet;
    case NETWORK_CARD_MOBILE:
      return Medium::kWirelessWan;
  }
  return std::nullopt;
}

std::wstring ClassKeyPath(int number) {
  constexpr int kFirstOfTwoDigits = 10;
  std::wstring path =
      L"SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e972-e325-11ce-bfc1-08002be10318}\\00";
  if (number < kFirstOfTwoDigits) path += L'0';
  return path += std::to_wstring(number);
}

KeyMatch KeyMatchFor(std::uint32_t processor_kind) noexcept {
  constexpr std::uint32_t kArm = 3;
  return processor_kind == kArm ? KeyMatch::kInstanceId : KeyMatch::kComponentId;
}

const wchar_t* ValueNameOf(KeyMatch match) noexcept {
  return match == KeyMatch::kInstanceId ? L"DeviceInstanceID" : L"ComponentId";
}

}  // namespace velmora::network
