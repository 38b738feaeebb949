#include "bluetooth/adapter_id.h"

#include <algorithm>

namespace velmora::bluetooth {
namespace {

/// Adapters that hang on a serial line of the processor's chip have no USB numbers.
constexpr std::wstring_view kSerialFamily = L"QCA_SHB";

bool IsAdapter(std::wstring_view hardware_id) {
  return hardware_id.starts_with(L"USB") || hardware_id.starts_with(kSerialFamily);
}

}  // namespace

std::wstring ChooseAdapterId(const std::vector<std::wstring>& hardware_ids) {
  const auto adapter = std::ranges::find_if(hardware_ids, IsAdapter);
  return adapter == hardware_ids.end() ? std::wstring() : *adapter;
}

bool IsLostUsbAdapter(std::wstring_view hardware_id) { return hardware_id.starts_with(L"USB\\VID_8087"); }

bool IsLostAdapter(std::wstring_view hardware_id) {
  return IsLostUsbAdapter(hardware_id) || hardware_id.starts_with(kSerialFamily);
}

}  // namespace velmora::bluetooth
