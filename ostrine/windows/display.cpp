#include <windows.h>

#include <vector>

#include "ostrine/common/edid.h"
#include "ostrine/common/video.h"
#include "ostrine/windows/video_rules.h"

namespace ostrine {
namespace {

/// The adapter that the desktop's first display hangs on; its name is empty when there is no desktop.
DISPLAY_DEVICEW PrimaryAdapter() {
  DISPLAY_DEVICEW adapter{};
  adapter.cb = sizeof adapter;
  for (DWORD i = 0; EnumDisplayDevicesW(nullptr, i, &adapter, 0); ++i) {
    if ((adapter.StateFlags & DISPLAY_DEVICE_PRIMARY_DEVICE) != 0) return adapter;
  }
  return {};
}

std::optional<DEVMODEW> CurrentMode() {
  const DISPLAY_DEVICEW adapter = PrimaryAdapter();
  DEVMODEW mode{};
  mode.dmSize = sizeof mode;
  if (adapter.DeviceName[0] == L'\0' ||
      !EnumDisplaySettingsW(adapter.DeviceName, ENUM_CURRENT_SETTINGS, &mode)) {
    return std::nullopt;
  }
  return mode;
}

/// A binary value of a key of the local machine; none when there is no such value.
std::vector<std::uint8_t> RegistryBytes(const std::wstring& key, const wchar_t* name) {
  constexpr DWORD kRoom = 32768;  // 256 blocks
  std::vector<std::uint8_t> bytes(kRoom);
  DWORD size = kRoom;
  const LSTATUS status =
      RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, RRF_RT_REG_BINARY, nullptr, bytes.data(), &size);
  bytes.resize(status == ERROR_SUCCESS && size <= kRoom ? size : 0);
  return bytes;
}

}  // namespace

std::optional<DisplaySize> ReadDisplaySize() {
  const auto mode = CurrentMode();
  if (!mode || mode->dmPelsWidth == 0 || mode->dmPelsHeight == 0) return std::nullopt;
  return DisplaySize{.width = mode->dmPelsWidth, .height = mode->dmPelsHeight};
}

std::optional<std::uint32_t> ReadDisplayRate() {
  const auto mode = CurrentMode();
  // 0 and 1 stand for the hardware's default, whatever that is.
  if (!mode || mode->dmDisplayFrequency <= 1) return std::nullopt;
  return mode->dmDisplayFrequency;
}

std::optional<std::uint32_t> ReadDisplayDepth() {
  const auto mode = CurrentMode();
  if (!mode || mode->dmBitsPerPel == 0) return std::nullopt;
  return mode->dmBitsPerPel;
}

std::optional<std::string> ReadMonitorCaption() {
  const DISPLAY_DEVICEW adapter = PrimaryAdapter();
  DISPLAY_DEVICEW monitor{};
  monitor.cb = sizeof monitor;
  if (adapter.DeviceName[0] == L'\0' ||
      !EnumDisplayDevicesW(adapter.DeviceName, 0, &monitor, EDD_GET_DEVICE_INTERFACE_NAME)) {
    return std::nullopt;
  }
  const std::wstring instance = MonitorInstance(monitor.DeviceID);
  if (instance.empty()) return std::nullopt;
  const std::wstring key = L"SYSTEM\\CurrentControlSet\\Enum\\" + instance + L"\\Device Parameters";
  const auto edid = ParseEdid(RegistryBytes(key, L"EDID"));
  std::string caption = edid ? MonitorCaption(*edid) : std::string();
  if (caption.empty()) return std::nullopt;
  return caption;  // ASCII, which is the same in every narrow code page
}

}  // namespace ostrine
