#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include "ostrine/windows/device_rules.h"
#include "ostrine/windows/thermal_zone.h"
#include "platform/ostrine/stringproc.h"

namespace ostrine {
namespace {

using testing::Optional;

TEST(ThermalZone, IsInTenthsOfAKelvin) {
  EXPECT_THAT(ThermalZoneTemperature(3132), Optional(40'050));
  EXPECT_THAT(ThermalZoneTemperature(2332), Optional(-39'950));
  EXPECT_THAT(ThermalZoneTemperature(3981), Optional(124'950));
}

TEST(ThermalZone, RefusesWhatALaptopCannotHave) {
  for (const std::uint32_t reading : {0u, 1u, 2331u, 2731u, 2732u, 3982u, 65535u, 0xFFFFFFFFu}) {
    EXPECT_EQ(ThermalZoneTemperature(reading), std::nullopt) << reading;
  }
}

TEST(DeviceRules, TakeForUnknownWhatWaitsForADriver) {
  for (const std::uint32_t code : {1u, 18u, 28u}) EXPECT_TRUE(LacksDriver(code)) << code;
  for (const std::uint32_t code : {0u, 10u, 22u, 31u, 43u, 45u}) EXPECT_FALSE(LacksDriver(code)) << code;
}

TEST(DeviceRules, CountMillisecondsFrom1970) {
  constexpr std::uint64_t k1970 = 116'444'736'000'000'000;
  EXPECT_EQ(UnixMilliseconds(k1970), 0u);
  EXPECT_EQ(UnixMilliseconds(k1970 - 1), 0u);
  EXPECT_EQ(UnixMilliseconds(0), 0u);
  EXPECT_EQ(UnixMilliseconds(k1970 + 19'999), 1u);
  EXPECT_EQ(UnixMilliseconds(132'828'768'000'000'000), 1'638'403'200'000u);
}

TEST(StringProcWindows, WidensTheNarrowCodePageAsTheSystemDoes) {
  EXPECT_EQ(StringProc::StringToWString("abc"), L"abc");
  EXPECT_EQ(StringProc::StringToWString(""), L"");
  EXPECT_EQ(StringProc::StringToWString(std::string("a\0b", 3)), std::wstring(L"a\0b", 3));
  EXPECT_EQ(StringProc::StringToWString(std::string(100'000, 'x')), std::wstring(100'000, L'x'));
  std::string every;
  for (int byte = 1; byte < 256; ++byte) every += static_cast<char>(byte);
  std::wstring expected(600, L'\0');
  const int length = MultiByteToWideChar(CP_ACP, 0, every.data(), static_cast<int>(every.size()),
                                         expected.data(), static_cast<int>(expected.size()));
  expected.resize(static_cast<std::size_t>(length));
  EXPECT_EQ(StringProc::StringToWString(every), expected);
}

}  // namespace
}  // namespace ostrine
