#include "velmora-report/utf8.h"

#include <gtest/gtest.h>

namespace {

using report::ToUtf8;

TEST(Utf8, KeepsAsciiAndInnerZeros) {
  EXPECT_EQ(ToUtf8(L""), "");
  EXPECT_EQ(ToUtf8(L"20XW004AGE"), "20XW004AGE");
  EXPECT_EQ(ToUtf8(std::wstring_view(L"a\0b", 3)), std::string("a\0b", 3));
}

TEST(Utf8, WritesCharactersOfEveryLength) {
  EXPECT_EQ(ToUtf8(L"\x7F"), "\x7F");
  EXPECT_EQ(ToUtf8(L"\x80"), "\xC2\x80");
  EXPECT_EQ(ToUtf8(L"\x7FF"), "\xDF\xBF");
  EXPECT_EQ(ToUtf8(L"\x800"), "\xE0\xA0\x80");
  EXPECT_EQ(ToUtf8(L"\xD7FF"), "\xED\x9F\xBF");
  EXPECT_EQ(ToUtf8(L"\xE000"), "\xEE\x80\x80");
  EXPECT_EQ(ToUtf8(L"\xFFFF"), "\xEF\xBF\xBF");
  EXPECT_EQ(ToUtf8(L"\U00010000"), "\xF0\x90\x80\x80");
  EXPECT_EQ(ToUtf8(L"\U0010FFFF"), "\xF4\x8F\xBF\xBF");
}

TEST(Utf8, ReplacesLoneSurrogates) {
  const std::wstring first(1, static_cast<wchar_t>(0xD83D));
  const std::wstring second(1, static_cast<wchar_t>(0xDE00));

  EXPECT_EQ(ToUtf8(first), "\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(second), "\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(first + L"x"), "\xEF\xBF\xBDx");
  EXPECT_EQ(ToUtf8(second + first), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Utf8, ReplacesNumbersThatAreNoCharacter) {
  for (const unsigned long long number : {0x110000ULL, 0x7FFFFFFFULL, 0xFFFFFFFFULL}) {
    const auto character = static_cast<wchar_t>(number);
    // Where a wide character has two bytes, none is greater than every character.
    const bool fits = sizeof(wchar_t) == 4;
    EXPECT_EQ(ToUtf8({&character, fits ? 1U : 0U}), fits ? "\xEF\xBF\xBD" : "") << number;
  }
}

TEST(Utf8, KeepsOfBytesOfAnUnknownCodePageWhatIsAscii) {
  EXPECT_EQ(ToUtf8(std::string_view()), "");
  EXPECT_EQ(ToUtf8(std::string_view("a\0\x7F\r", 4)), std::string("a\0\x7F\r", 4));
  EXPECT_EQ(ToUtf8(std::string_view("\x80 caf\xC3\xA9 \xFF")),
            "\xEF\xBF\xBD caf\xEF\xBF\xBD\xEF\xBF\xBD \xEF\xBF\xBD");
}

TEST(FromUtf8, GivesBackWhatToUtf8Wrote) {
  for (const std::wstring text :
       {L"", L"20XW004AGE", L"caf\xE9 \u0436 \u4E2D", L"\U0001F5A5", L"\x7FF\x800\xFFFF"})
    EXPECT_EQ(report::FromUtf8(ToUtf8(text)), text);
  EXPECT_EQ(report::FromUtf8(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
}

TEST(FromUtf8, ReplacesEachByteThatBelongsToNoCharacter) {
  EXPECT_EQ(report::FromUtf8("\xFF"), L"\xFFFD");
  EXPECT_EQ(report::FromUtf8("a\x80z"), L"a\xFFFDz");
  EXPECT_EQ(report::FromUtf8("\xC0\xAF"), L"\xFFFD\xFFFD") << "too long for its character";
  EXPECT_EQ(report::FromUtf8("\xE4\xB8"), L"\xFFFD\xFFFD") << "cut off";
  EXPECT_EQ(report::FromUtf8("\xED\xA0\x80"), L"\xFFFD\xFFFD\xFFFD") << "half of a pair";
  EXPECT_EQ(report::FromUtf8("\xF4\x90\x80\x80"), L"\xFFFD\xFFFD\xFFFD\xFFFD") << "beyond the last";
}

}  // namespace
