#include "velmora/keyboard.h"

#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/os/text_tests.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"

using velmora::setup_class::kKeyboard;

namespace {

std::wstring DisplayName(const std::wstring& hardware_id) {
  return CDeviceInformention().GetDeviceStrInfoByHardwareID(hardware_id, kKeyboard, PROP_DISPLAY_NAME);
}

/// The firmware describes a built-in keyboard; external ones come by another bus.
bool IsBuiltIn(const std::wstring& hardware_id) {
  return velmora::os::StrStrIW(hardware_id.c_str(), L"ACPI\\") != nullptr;
}

std::wstring NameOfKeyboard() {
  const auto hardware_ids = CDeviceInformention().GetDeviceHardwareID(kKeyboard);
  for (const auto& hardware_id : hardware_ids) {
    if (!IsBuiltIn(hardware_id)) continue;
    auto name = DisplayName(hardware_id);
    if (!name.empty()) return name;
  }
  return hardware_ids.empty() ? std::wstring() : DisplayName(hardware_ids.front());
}

}  // namespace

CKeyBoard::CKeyBoard() = default;
CKeyBoard::~CKeyBoard() = default;

std::wstring CKeyBoard::GetKeyBoardName() {
  auto name = velmora::Answer(std::wstring(), NameOfKeyboard);
  velmora::LogDebug([&](auto& line) {
    line << "wszDescription=" << name << velmora::Within("CKeyBoard::GetKeyBoardName");
  });
  return name;
}
