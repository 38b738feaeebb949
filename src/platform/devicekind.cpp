#include "velmora/devicekind.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/guard.h"
#include "platform/os/text_tests.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "platform/ostrine/wmi.h"
#include "velmora/audio.h"
#include "velmora/biometric.h"
#include "velmora/networkcard.h"

using velmora::setup_class::kBluetooth;
using velmora::setup_class::kDisplay;
using velmora::setup_class::kKeyboard;

namespace {

std::wstring VersionById(const std::wstring& hardware_id, const GUID& setup_class) {
  return CDeviceInformention().GetDeviceStrInfoByHardwareID(hardware_id, setup_class, PROP_DRIVER_VERSION);
}

/// The last one counts here, where CBluetooth takes the first: hosts rely on both.
std::wstring BluetoothVersion() {
  const auto ids = CDeviceInformention().GetDeviceHardwareID(kBluetooth);
  const auto found = std::find_if(ids.rbegin(), ids.rend(), [](const std::wstring& id) {
    return id.starts_with(L"USB") || id.starts_with(L"QCA_SHB");
  });
  return found == ids.rend() ? std::wstring() : VersionById(*found, kBluetooth);
}

std::wstring KeyboardId() {
  const auto ids = CDeviceInformention().GetDeviceHardwareID(kKeyboard);
  const auto found =
      std::ranges::find_if(ids, [](const std::wstring& id) { return id.starts_with(L"ACPI"); });
  return found == ids.end() ? std::wstring() : *found;
}

/// Whether WMI calls the display adapter of this description internal. A description with an apostrophe would
/// end the text in the query and change what is asked: nobody is asked then.
bool IsBuiltIn(const std::wstring& description) {
  if (description.find(L'\'') != std::wstring::npos) return false;
  const auto converter = CWMI(L"ROOT\\CIMV2")
                             .SelectStr(L"SELECT AdapterDACType FROM Win32_VideoController WHERE Caption ='" +
                                            description + L"'",
                                        L"AdapterDACType");
  return velmora::os::StrStrIW(converter.c_str(), L"Internal") != nullptr;
}

std::wstring DisplayVersion() {
  auto ids = CDeviceInformention().GetDeviceHardwareID(kDisplay);
  std::erase_if(ids, [](const std::wstring& id) { return !id.starts_with(L"PCI"); });
  if (ids.size() == 1) return VersionById(ids.front(), kDisplay);
  if (ids.size() != 2) return {};
  const auto description =
      CDeviceInformention().GetDeviceStrInfoByHardwareID(ids.front(), kDisplay, PROP_DESCRIPTION);
  return VersionById(IsBuiltIn(description) ? ids.front() : ids.back(), kDisplay);
}

std::wstring VersionOf(stDEVICE_DRIVER_TYPE kind) {
  switch (kind) {
    case emDEVICE_WIRELESS:
      return CNetworkCard().GetDriverVersion(NETWORK_CARD_WIRELESS);
    case emDEVICE_BLUETOOTH:
      return BluetoothVersion();
    case emDEVICE_FINGERPRINT:
      return CBiometric().GetDriverVersion();
    case emDEVICE_AUDIO:
      return CAudioCard().GetDriverVersion();
    case emDEVICE_KEYBOARD:
      return KeyboardId();
    case emDEVICE_DISPLAY:
      return DisplayVersion();
    default:
      return {};
  }
}

}  // namespace

std::wstring GetDeviceDriverVersion(stDEVICE_DRIVER_TYPE kind) {
  if (kind > emDEVICE_DISPLAY) return {};
  return velmora::Answer(std::wstring(), [=] { return VersionOf(kind); });
}
