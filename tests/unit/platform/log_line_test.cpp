#include "platform/log_line.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <locale>
#include <string>
#include <string_view>

namespace {

using velmora::NarrowLine;
using velmora::WideLine;
using velmora::Within;

template <class... Values>
std::wstring Wide(const Values&... values) {
  WideLine line;
  (line << ... << values);
  return line.Text();
}

template <class... Values>
std::string Narrow(const Values&... values) {
  NarrowLine line;
  (line << ... << values);
  return line.Text();
}

TEST(LogLine, IsEmptyAtFirst) {
  EXPECT_EQ(WideLine().Text(), L"");
  EXPECT_EQ(NarrowLine().Text(), "");
}

TEST(LogLine, PutsLabelValuesAndFunctionOneAfterTheOther) {
  EXPECT_EQ(Wide("CBattery::GetBatteryPercent: dwPercent=", 87UL, ", LastError=", 0U,
                 Within("CBattery::GetBatteryPercent")),
            L"CBattery::GetBatteryPercent: dwPercent=87, LastError=0(CBattery::GetBatteryPercent)");
}

TEST(LogLine, TakesTextOfItsOwnWidthInEveryForm) {
  EXPECT_EQ(Wide(std::wstring(L"a"), std::wstring_view(L"b"), L"c"), L"abc");
  EXPECT_EQ(Narrow(std::string("a"), std::string_view("b"), "c"), "abc");
}

TEST(LogLine, TakesALabelInALineOfEitherWidth) {
  EXPECT_EQ(Wide("hardid="), L"hardid=");
  EXPECT_EQ(Narrow("hardid="), "hardid=");
}

TEST(LogLine, KeepsTextThatIsNotAscii) {
  EXPECT_EQ(Wide(std::wstring(L"\u2032\u4E2D\U0001F600")), L"\u2032\u4E2D\U0001F600");
  EXPECT_EQ(Narrow(std::string("\xE2\x80\xB2\xFF")), "\xE2\x80\xB2\xFF");
}

TEST(LogLine, KeepsAZeroInsideAText) { EXPECT_EQ(Wide(std::wstring(L"a\0b", 3)), std::wstring(L"a\0b", 3)); }

TEST(LogLine, WritesTheLargestAndSmallestNumbersInDecimal) {
  EXPECT_EQ(Wide(std::numeric_limits<std::uint64_t>::max()), L"18446744073709551615");
  EXPECT_EQ(Wide(std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
  EXPECT_EQ(Wide(std::numeric_limits<std::uint32_t>::max()), L"4294967295");
  EXPECT_EQ(Narrow(-1), "-1");
  EXPECT_EQ(Narrow(0), "0");
}

TEST(LogLine, WritesANumberOfOneByteAsANumber) {
  EXPECT_EQ(Wide(std::uint8_t{65}), L"65");
  EXPECT_EQ(Wide(std::int8_t{-1}), L"-1");
  EXPECT_EQ(Narrow('A'), "65");
}

TEST(LogLine, WritesAFlagAsOneOrZero) { EXPECT_EQ(Wide(true, false), L"10"); }

TEST(LogLine, WritesAnEnumerationAsItsNumber) {
  enum Plain { kPlain = 3 };
  enum class Scoped : std::int32_t { kScoped = -4 };
  EXPECT_EQ(Wide(kPlain, " ", Scoped::kScoped), L"3 -4");
}

TEST(LogLine, DoesNotCareForTheProcessLocale) {
  struct Grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
  EXPECT_EQ(Narrow(1234567), "1234567");
  std::locale::global(before);
}

}  // namespace
