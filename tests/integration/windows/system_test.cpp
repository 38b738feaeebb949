/// Status, text, adapters, internet settings, clock and device control, as this system has them.
#include <windows.h>

#include <gtest/gtest.h>
#include <wininet.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

#include "platform/os/adapters.h"
#include "platform/os/bluetooth_radio.h"
#include "platform/os/clock.h"
#include "platform/os/device_control.h"
#include "platform/os/internet_settings.h"
#include "platform/os/last_error.h"
#include "platform/os/system_status.h"
#include "platform/os/text_tests.h"
#include "platform/os/wifi.h"

namespace velmora::os {
namespace {

TEST(SystemStatus, TellsWhatTheSystemTellsOfPower) {
  PowerStatus status{};
  SYSTEM_POWER_STATUS expected{};
  ASSERT_TRUE(GetSystemPowerStatus(status));
  ASSERT_TRUE(::GetSystemPowerStatus(&expected));
  EXPECT_EQ(status.ac_line_status, expected.ACLineStatus);
  EXPECT_EQ(status.battery_flag, expected.BatteryFlag);
  EXPECT_EQ(status.battery_life_percent, expected.BatteryLifePercent);
}

TEST(SystemStatus, TellsMemoryToARecordOfTheRightLength) {
  MemoryStatus status{.length = sizeof status};
  ASSERT_TRUE(GlobalMemoryStatusEx(status));
  EXPECT_GT(status.total_physical, 0u);
  EXPECT_LE(status.available_physical, status.total_physical);
  EXPECT_LE(status.memory_load, 100u);
  status.length = sizeof status - 1;
  EXPECT_FALSE(GlobalMemoryStatusEx(status));
  EXPECT_EQ(LastError(), kErrorInvalidParameter);
}

TEST(Adapters, AreListedInsideTheCallersBuffer) {
  std::uint32_t size = 0;
  const std::uint32_t result = GetAdaptersInfo(nullptr, size);
  if (result == 232) GTEST_SKIP() << "this machine has no adapter";
  ASSERT_EQ(result, kErrorBufferOverflow);
  ASSERT_GE(size, sizeof(AdapterInfo));
  std::vector<AdapterInfo> list(size / sizeof(AdapterInfo) + 4);
  size = static_cast<std::uint32_t>(list.size() * sizeof(AdapterInfo));
  ASSERT_EQ(GetAdaptersInfo(list.data(), size), 0u);
  int count = 0;
  for (const AdapterInfo* adapter = list.data(); adapter != nullptr; adapter = adapter->next) {
    ASSERT_GE(adapter, list.data());
    ASSERT_LT(adapter, list.data() + list.size());
    EXPECT_NE(adapter->name[0], '\0');
    EXPECT_LE(adapter->address_length, 8u);
    ++count;
  }
  EXPECT_GT(count, 0);
}

TEST(Clock, CountsFrom1970AndSleeps) {
  const std::int64_t before = SystemTime();
  EXPECT_GT(before, 16'000'000'000'000'000) << "before 2020";
  Sleep(30);
  EXPECT_GE(SystemTime() - before, 250'000);
}

TEST(InternetSettings, TellTheAccessTypeToABufferThatIsLargeEnough) {
  std::array<unsigned char, 4096> buffer{};
  std::uint32_t size = buffer.size();
  ASSERT_TRUE(InternetQueryOptionW(38, buffer.data(), size)) << LastError();
  std::uint32_t access = 0;
  std::memcpy(&access, buffer.data(), sizeof access);
  EXPECT_TRUE(access == 1 || access == 3) << access;
  size = 1;
  EXPECT_FALSE(InternetQueryOptionW(38, buffer.data(), size));
  EXPECT_EQ(LastError(), kErrorInsufficientBuffer);
  EXPECT_GT(size, 1u);
}

TEST(InternetSettings, TellHowTheMachineIsConnected) {
  std::uint32_t flags = 0;
  const int connected = InternetGetConnectedState(flags, 0);
  DWORD expected_flags = 0;
  EXPECT_EQ(connected, ::InternetGetConnectedState(&expected_flags, 0));
  EXPECT_EQ(flags, expected_flags);
}

TEST(TextTests, FindPartsInEitherCase) {
  const wchar_t text[] = L"USB\\Vid_8087";
  EXPECT_EQ(StrStrIW(text, L"vid_"), text + 4);
  EXPECT_EQ(StrStrIW(text, L"pid_"), nullptr);
  EXPECT_EQ(StrStrIW(text, L""), nullptr);
  EXPECT_EQ(StrStrIW(L"", L"a"), nullptr);
  const char narrow[] = "Bluetooth LE";
  EXPECT_EQ(StrStrIA(narrow, "bluetooth"), narrow);
  EXPECT_EQ(StrStrIA(narrow, ""), nullptr);
}

TEST(TextTests, CompareWithoutRegardToCase) {
  EXPECT_EQ(StrCmpIW(L"OEM12.INF", L"oem12.inf"), 0);
  EXPECT_LT(StrCmpIW(L"a", L"B"), 0);
  EXPECT_GT(StrCmpIW(L"b", L"A"), 0);
  EXPECT_NE(StrCmpIW(L"", L"a"), 0);
}

TEST(DeviceControl, OpensNoDeviceThatIsMissing) {
  EXPECT_EQ(CreateFileW(L"\\\\.\\VELMORANOSUCH", 0, 0, 3, 0), InvalidHandle());
  EXPECT_EQ(LastError(), kErrorFileNotFound);
}

TEST(DeviceControl, FailsOnADeviceThatDoesNotKnowTheRequest) {
  const Handle device = CreateFileW(L"\\\\.\\NUL", 0xC0000000, 3, 3, 0);
  ASSERT_NE(device, InvalidHandle()) << LastError();
  std::uint32_t returned = 7;
  SetLastError(0);
  EXPECT_FALSE(DeviceIoControl(device, 0x002211FC, nullptr, 0, nullptr, 0, &returned));
  EXPECT_NE(LastError(), 0u);
  EXPECT_FALSE(DeviceIoControl(device, 0x002211FC, nullptr, 0, nullptr, 0, nullptr));
  EXPECT_TRUE(CloseHandle(device));
}

TEST(Wifi, OfThisSystemAnswersForReal) {
  Handle client = nullptr;
  std::uint32_t negotiated = 0;
  const std::uint32_t opened = WlanOpenHandle(2, negotiated, client);
  if (opened != 0) GTEST_SKIP() << "this machine has no Wi-Fi service: error " << opened;
  WlanInterfaceList* list = nullptr;
  EXPECT_EQ(WlanEnumInterfaces(client, list), 0u);
  ASSERT_NE(list, nullptr);
  EXPECT_LE(list->count, 64u);
  WlanFreeMemory(list);
  EXPECT_EQ(WlanCloseHandle(client), 0u);
}

TEST(Bluetooth, OfThisSystemAnswersForReal) {
  Handle radio = nullptr;
  SetLastError(0);
  const Handle find = BluetoothFindFirstRadio({.size = 4}, radio);
  if (find == nullptr) {
    EXPECT_NE(LastError(), 0u);
    EXPECT_EQ(radio, nullptr);
  } else {
    EXPECT_TRUE(CloseHandle(radio));
    EXPECT_TRUE(BluetoothFindRadioClose(find));
  }
}

}  // namespace
}  // namespace velmora::os
