// The desktop's display, as the system that runs the tests has it.
#include <windows.h>

#include <gtest/gtest.h>

#include <vector>

#include "../edid_bytes.h"
#include "ostrine/common/video.h"
#include "ostrine/windows/video_rules.h"

namespace ostrine {
namespace {

/// Name by which the display system knows the first monitor; empty without a desktop.
std::wstring MonitorInterface() {
  DISPLAY_DEVICEW adapter{};
  adapter.cb = sizeof adapter;
  DISPLAY_DEVICEW monitor{};
  monitor.cb = sizeof monitor;
  const bool found = EnumDisplayDevicesW(nullptr, 0, &adapter, 0) &&
                     EnumDisplayDevicesW(adapter.DeviceName, 0, &monitor, EDD_GET_DEVICE_INTERFACE_NAME);
  return found ? monitor.DeviceID : L"";
}

/// Only Wine's registry may be written by a test.
bool IsWine() {
  const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
  return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
}

/// The monitor's description, as long as the object lives.
class WrittenEdid {
 public:
  WrittenEdid(const std::wstring& instance, const std::vector<std::uint8_t>& bytes)
      : path_(L"SYSTEM\\CurrentControlSet\\Enum\\" + instance + L"\\Device Parameters") {
    EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, path_.c_str(), L"EDID", REG_BINARY, bytes.data(),
                              static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
  }
  WrittenEdid(const WrittenEdid&) = delete;
  WrittenEdid& operator=(const WrittenEdid&) = delete;
  ~WrittenEdid() { RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, path_.c_str(), L"EDID"); }

 private:
  std::wstring path_;
};

TEST(DisplayWindows, HasTheModeThatTheSystemIsIn) {
  DEVMODEW mode{};
  mode.dmSize = sizeof mode;
  if (!EnumDisplaySettingsW(nullptr, ENUM_CURRENT_SETTINGS, &mode)) GTEST_SKIP() << "there is no desktop";
  EXPECT_EQ(ReadDisplaySize(), (DisplaySize{mode.dmPelsWidth, mode.dmPelsHeight}));
  EXPECT_EQ(ReadDisplayDepth(), mode.dmBitsPerPel);
  if (mode.dmDisplayFrequency > 1) {
    EXPECT_EQ(ReadDisplayRate(), mode.dmDisplayFrequency);
  }
}

TEST(DisplayWindows, NamesTheMonitorByItsOwnDescription) {
  const std::wstring instance = MonitorInstance(MonitorInterface());
  if (!IsWine() || instance.empty()) GTEST_SKIP() << "no monitor whose description a test may write";
  {
    const WrittenEdid edid(instance, test::EdidBytes{.maker = "DEL", .name = "DELL U2415"}.Build());
    EXPECT_EQ(ReadMonitorCaption(), "DELL U2415");
  }
  {
    const WrittenEdid edid(instance, test::EdidBytes{}.Build());
    EXPECT_EQ(ReadMonitorCaption(), "AUO3DED");
  }
  {
    const WrittenEdid spoilt(instance, std::vector<std::uint8_t>(128, 0xAB));
    EXPECT_EQ(ReadMonitorCaption(), std::nullopt);
  }
  EXPECT_EQ(ReadMonitorCaption(), std::nullopt);
}

}  // namespace
}  // namespace ostrine
