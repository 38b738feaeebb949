#include "platform/unicode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using velmora::unicode::PutWide;
using velmora::unicode::PutWideFromUtf8;
using velmora::unicode::TakeUtf8;
using velmora::unicode::Utf16FromUtf8;
using velmora::unicode::Utf8FromWide;
using velmora::unicode::WideFromUtf16;
using velmora::unicode::WideFromUtf8;

/// U+FFFD so many times.
std::wstring Replacements(std::size_t count) { return std::wstring(count, L'\xFFFD'); }

struct Pair {
  std::string_view utf8;
  std::wstring_view wide;
  std::u16string_view utf16;
};

/// The characters at both ends of each length of sequence, and around the surrogates.
constexpr std::array kEdges{
    Pair{"\x01", L"\x01", u"\x01"},
    Pair{"\x7F", L"\x7F", u"\x7F"},
    Pair{"\xC2\x80", L"\x80", u"\x80"},
    Pair{"\xDF\xBF", L"\x7FF", u"\x7FF"},
    Pair{"\xE0\xA0\x80", L"\x800", u"\x800"},
    Pair{"\xE2\x80\xB2", L"\x2032", u"\x2032"},
    Pair{"\xE4\xB8\xAD", L"\x4E2D", u"\x4E2D"},
    Pair{"\xED\x9F\xBF", L"\xD7FF", u"\xD7FF"},
    Pair{"\xEE\x80\x80", L"\xE000", u"\xE000"},
    Pair{"\xEF\xBF\xBD", L"\xFFFD", u"\xFFFD"},
    Pair{"\xEF\xBF\xBF", L"\xFFFF", u"\xFFFF"},
    Pair{"\xF0\x90\x80\x80", L"\U00010000", u"\U00010000"},
    Pair{"\xF0\x9F\x98\x80", L"\U0001F600", u"\U0001F600"},
    Pair{"\xF4\x8F\xBF\xBF", L"\U0010FFFF", u"\U0010FFFF"},
};

TEST(Unicode, WidensTheEdgesOfEveryLengthOfSequence) {
  for (const auto& edge : kEdges) EXPECT_EQ(WideFromUtf8(edge.utf8), edge.wide) << edge.utf8;
}

TEST(Unicode, NarrowsTheEdgesOfEveryLengthOfSequence) {
  for (const auto& edge : kEdges) EXPECT_EQ(Utf8FromWide(edge.wide), edge.utf8) << edge.utf8;
}

TEST(Unicode, TurnsTheEdgesIntoUtf16AndBack) {
  for (const auto& edge : kEdges) {
    EXPECT_EQ(Utf16FromUtf8(edge.utf8), edge.utf16) << edge.utf8;
    EXPECT_EQ(WideFromUtf16(edge.utf16), edge.wide) << edge.utf8;
  }
}

TEST(Unicode, GivesNothingForNothing) {
  EXPECT_EQ(WideFromUtf8(""), L"");
  EXPECT_EQ(WideFromUtf16({}), L"");
  EXPECT_EQ(Utf8FromWide(L""), "");
  EXPECT_EQ(Utf16FromUtf8(""), u"");
  EXPECT_EQ(PutWideFromUtf8("", {}), 0u);
}

TEST(Unicode, KeepsAnEmbeddedZeroInEveryDirection) {
  EXPECT_EQ(WideFromUtf8("a\0b"sv), L"a\0b"sv);
  EXPECT_EQ(WideFromUtf16(u"a\0b"sv), L"a\0b"sv);
  EXPECT_EQ(Utf8FromWide(L"a\0b"sv), "a\0b"sv);
  EXPECT_EQ(Utf16FromUtf8("a\0b"sv), u"a\0b"sv);
}

TEST(Unicode, ReplacesEachByteOfAnOverlongSequence) {
  EXPECT_EQ(WideFromUtf8("\xC0\x80"), Replacements(2));          // zero in two bytes
  EXPECT_EQ(WideFromUtf8("\xC1\xBF"), Replacements(2));          // U+007F
  EXPECT_EQ(WideFromUtf8("\xE0\x9F\xBF"), Replacements(3));      // U+07FF
  EXPECT_EQ(WideFromUtf8("\xF0\x8F\xBF\xBF"), Replacements(4));  // U+FFFF
}

TEST(Unicode, ReplacesSurrogatesThatAreWrittenInUtf8) {
  EXPECT_EQ(WideFromUtf8("\xED\xA0\x80"), Replacements(3));
  EXPECT_EQ(WideFromUtf8("\xED\xBF\xBF"), Replacements(3));
  EXPECT_EQ(WideFromUtf8("\xED\xA0\xBD\xED\xB8\x80"), Replacements(6)) << "a pair is no character either";
}

TEST(Unicode, ReplacesWhatLiesAboveTheLastCharacter) {
  EXPECT_EQ(WideFromUtf8("\xF4\x90\x80\x80"), Replacements(4));
  EXPECT_EQ(WideFromUtf8("\xF5\x80\x80\x80"), Replacements(4));
  EXPECT_EQ(WideFromUtf8("\xF8\x88\x80\x80\x80"), Replacements(5));
}

TEST(Unicode, ReplacesBytesThatBeginNothing) {
  for (int byte = 0x80; byte <= 0xFF; ++byte) {
    EXPECT_EQ(WideFromUtf8(std::string(1, static_cast<char>(byte))), Replacements(1)) << byte;
  }
}

TEST(Unicode, ReplacesASequenceThatEndsTooEarlyOnceWhereverItIsCut) {
  for (const std::string_view whole : {"\xC3\xA9"sv, "\xE2\x82\xAC"sv, "\xF0\x9F\x98\x80"sv}) {
    for (std::size_t kept = 1; kept < whole.size(); ++kept) {
      const std::string cut(whole.substr(0, kept));
      EXPECT_EQ(WideFromUtf8(cut), Replacements(1)) << kept << " bytes at the end";
      EXPECT_EQ(WideFromUtf8("a" + cut + "b"), L"a" + Replacements(1) + L"b")
          << kept << " bytes before a letter";
      EXPECT_EQ(WideFromUtf8(cut + "\xC3\xA9"), Replacements(1) + L"\xE9")
          << kept << " bytes before a sequence";
    }
  }
}

TEST(Unicode, TakesOneCharacterAndLeavesTheRest) {
  std::string_view text = "\xE2\x82\xAC!";
  EXPECT_EQ(TakeUtf8(text), U'\x20AC');
  EXPECT_EQ(text, "!");
  EXPECT_EQ(TakeUtf8(text), U'!');
  EXPECT_TRUE(text.empty());
}

TEST(Unicode, TakesABrokenSequenceUpToTheByteThatBreaksIt) {
  std::string_view text = "\xE2\x82z";
  EXPECT_EQ(TakeUtf8(text), velmora::unicode::kReplacement);
  EXPECT_EQ(text, "z");
}

TEST(Unicode, ReplacesALoneSurrogateOfUtf16) {
  using Units = std::array<char16_t, 3>;
  EXPECT_EQ(WideFromUtf16(Units{u'a', 0xD83D, u'b'}), L"a" + Replacements(1) + L"b");
  EXPECT_EQ(WideFromUtf16(Units{u'a', 0xDE00, u'b'}), L"a" + Replacements(1) + L"b");
  EXPECT_EQ(WideFromUtf16(Units{u'a', u'b', 0xD83D}), L"ab" + Replacements(1)) << "cut off at the end";
  EXPECT_EQ(WideFromUtf16(Units{0xDE00, 0xD83D, u'b'}), Replacements(2) + L"b") << "the wrong way round";
  EXPECT_EQ(WideFromUtf16(Units{0xD83D, 0xD83D, 0xDE00}), Replacements(1) + L"\U0001F600")
      << "the second one begins a pair";
}

TEST(Unicode, ReplacesALoneSurrogateOfWideText) {
  EXPECT_EQ(Utf8FromWide(std::wstring{L'a', wchar_t{0xD83D}}), "a\xEF\xBF\xBD");
  EXPECT_EQ(Utf8FromWide(std::wstring{wchar_t{0xDE00}, L'a'}),
            "\xEF\xBF\xBD"
            "a");
}

TEST(Unicode, ReplacesAWideNumberThatIsNoCharacter) {
  if constexpr (sizeof(wchar_t) == 4) {
    EXPECT_EQ(Utf8FromWide(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
    EXPECT_EQ(Utf8FromWide(std::wstring(1, static_cast<wchar_t>(-1))), "\xEF\xBF\xBD");
    const std::wstring surrogates{static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    EXPECT_EQ(Utf8FromWide(surrogates), "\xEF\xBF\xBD\xEF\xBF\xBD")
        << "wide units of four bytes form no pairs";
  } else {
    EXPECT_EQ(Utf8FromWide(std::wstring(1, static_cast<wchar_t>(0xFFFF))), "\xEF\xBF\xBF")
        << "every other unit of two bytes is a character";
  }
}

TEST(Unicode, PutsACharacterOnlyWhereItFits) {
  constexpr std::size_t kUnits = sizeof(wchar_t) == 2 ? 2 : 1;
  std::array<wchar_t, 3> output{L'x', L'x', L'x'};

  EXPECT_EQ(PutWide(U'\U0001F600', std::span(output).first(kUnits - 1)), 0u);
  EXPECT_THAT(output, testing::Each(L'x')) << "nothing is written in part";
  EXPECT_EQ(PutWide(U'\U0001F600', output), kUnits);
  EXPECT_EQ(std::wstring_view(output.data(), kUnits), L"\U0001F600");
  EXPECT_EQ(output[kUnits], L'x');
}

TEST(Unicode, FillsAnOutputThatIsJustLargeEnough) {
  std::array<wchar_t, 3> output{L'x', L'x', L'x'};
  EXPECT_EQ(PutWideFromUtf8("\xC3\xA9"
                            "a",
                            std::span(output).first(2)),
            2u);
  EXPECT_EQ(std::wstring_view(output.data(), 3),
            L"\xE9"
            "ax");
}

TEST(Unicode, RefusesAnOutputThatIsOneUnitTooSmall) {
  std::array<wchar_t, 2> output{};
  EXPECT_EQ(PutWideFromUtf8("abc", output), std::nullopt);
  EXPECT_EQ(PutWideFromUtf8("a", {}), std::nullopt);
}

}  // namespace
