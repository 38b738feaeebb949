#include "platform/os/text_tests.h"

#include <gtest/gtest.h>

#include <clocale>

namespace velmora::os {
namespace {

TEST(TextTestsOnLinux, FindAPartWithoutRegardToCase) {
  const wchar_t* text = L"Intel(R) SERIAL IO Host";
  EXPECT_EQ(StrStrIW(text, L"serial io"), text + 9);
  EXPECT_EQ(StrStrIW(text, L"missing"), nullptr);
  EXPECT_EQ(StrStrIW(text, L""), nullptr);
  const char* narrow = "wan MINIPORT";
  EXPECT_EQ(StrStrIA(narrow, "Miniport"), narrow + 4);
  EXPECT_EQ(StrStrIA(narrow, ""), nullptr);
}

TEST(TextTestsOnLinux, DoNotDependOnTheLocale) {
  for (const char* locale : {"C", "C.UTF-8"}) {
    ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr);
    EXPECT_NE(StrStrIW(L"\u00C4\u0416", L"\u00E4\u0436"), nullptr) << locale;
    EXPECT_NE(StrStrIA("\u00C4\u0416", "\u00E4\u0436"), nullptr) << locale;
  }
  std::setlocale(LC_ALL, "C");
}

TEST(TextTestsOnLinux, CompareWithoutRegardToCase) {
  EXPECT_EQ(StrCmpIW(L"PEAP", L"peap"), 0);
  EXPECT_LT(StrCmpIW(L"a", L"B"), 0);
  EXPECT_GT(StrCmpIW(L"ab", L"A"), 0);
}

}  // namespace
}  // namespace velmora::os
