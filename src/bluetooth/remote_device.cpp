#include "bluetooth/remote_device.h"

#include "platform/text_search.h"

namespace velmora::bluetooth {

bool IsLowEnergy(std::wstring_view hardware_id) { return hardware_id.starts_with(L"BTHLE\\Dev"); }

bool IsRemote(std::wstring_view hardware_id) {
  return hardware_id.starts_with(L"BTHENUM\\Dev") || IsLowEnergy(hardware_id);
}

std::wstring_view AddressIn(std::wstring_view hardware_id) {
  const auto underscore = hardware_id.find(L'_');
  return underscore == std::wstring_view::npos ? std::wstring_view() : hardware_id.substr(underscore + 1);
}

bool SaysMouse(const std::wstring& type) { return FindIgnoringCase(type.c_str(), L"Mouse") != nullptr; }

}  // namespace velmora::bluetooth
