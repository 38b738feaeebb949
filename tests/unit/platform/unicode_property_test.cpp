/// What holds of the conversions for any text, shown on every character and on seeded random bytes.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "platform/unicode.h"
#include "tests/support/naive_utf8.h"

namespace {

namespace unicode = velmora::unicode;
using velmora::testing::NaiveDecode;
using velmora::testing::NaiveEncode;
using velmora::testing::NaiveWide;

std::u32string EveryCharacter() {
  std::u32string all;
  for (char32_t character = 0; character <= 0x10FFFF; ++character) {
    if (character < 0xD800 || character > 0xDFFF) all.push_back(character);
  }
  return all;
}

/// Bytes of which most begin, continue or nearly form a sequence.
std::string RandomBytes(std::mt19937& random) {
  static constexpr std::string_view kLikely =
      "a\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE2\xED\xEF\xF0\xF1\xF3\xF4\xF5\xFF";
  std::uniform_int_distribution<std::size_t> length(0, 12);
  std::uniform_int_distribution<std::size_t> likely(0, kLikely.size() - 1);
  std::uniform_int_distribution<int> any(0, 255);
  std::string bytes(length(random), '\0');
  for (char& byte : bytes) {
    byte = any(random) % 4 == 0 ? static_cast<char>(any(random)) : kLikely[likely(random)];
  }
  return bytes;
}

/// Units of which most are surrogates.
std::u16string RandomUnits(std::mt19937& random) {
  std::uniform_int_distribution<std::size_t> length(0, 8);
  std::uniform_int_distribution<int> any(0, 0xFFFF);
  std::u16string units(length(random), u'\0');
  for (char16_t& unit : units) {
    const int number = any(random);
    unit = static_cast<char16_t>(number % 3 == 0 ? number : 0xD800 + number % 0x800);
  }
  return units;
}

constexpr int kRounds = 20'000;

TEST(UnicodeProperty, EveryCharacterSurvivesTheWayThroughEveryForm) {
  const std::u32string all = EveryCharacter();
  const std::string utf8 = NaiveEncode(all);
  const auto wide = NaiveWide<std::wstring>(all);
  const auto utf16 = NaiveWide<std::u16string>(all);

  EXPECT_TRUE(unicode::WideFromUtf8(utf8) == wide);
  EXPECT_TRUE(unicode::Utf8FromWide(wide) == utf8);
  EXPECT_TRUE(unicode::Utf16FromUtf8(utf8) == utf16);
  EXPECT_TRUE(unicode::WideFromUtf16(utf16) == wide);
}

TEST(UnicodeProperty, AnyBytesReadAsTheTableOfTheStandardReadsThem) {
  std::mt19937 random(1);
  for (int round = 0; round < kRounds; ++round) {
    const std::string bytes = RandomBytes(random);
    const std::u32string characters = NaiveDecode(bytes);
    ASSERT_EQ(unicode::WideFromUtf8(bytes), NaiveWide<std::wstring>(characters))
        << testing::PrintToString(bytes);
    ASSERT_EQ(unicode::Utf16FromUtf8(bytes), NaiveWide<std::u16string>(characters))
        << testing::PrintToString(bytes);
  }
}

TEST(UnicodeProperty, TextThatWasReadOnceReadsTheSameAgain) {
  std::mt19937 random(2);
  for (int round = 0; round < kRounds; ++round) {
    const std::wstring read = unicode::WideFromUtf8(RandomBytes(random));
    ASSERT_EQ(unicode::WideFromUtf8(unicode::Utf8FromWide(read)), read);
  }
}

TEST(UnicodeProperty, AnyUtf16ReadsAsCharactersOnly) {
  std::mt19937 random(3);
  for (int round = 0; round < kRounds; ++round) {
    const std::u16string units = RandomUnits(random);
    const std::string utf8 = unicode::Utf8FromWide(unicode::WideFromUtf16(units));
    ASSERT_EQ(NaiveEncode(NaiveDecode(utf8)), utf8) << "what comes out is well-formed";
    ASSERT_LE(unicode::Utf16FromUtf8(utf8).size(), units.size());
    const bool is_unchanged = unicode::Utf16FromUtf8(utf8) == units;
    const bool has_replacement = utf8.find("\xEF\xBF\xBD") != std::string::npos;
    ASSERT_TRUE(is_unchanged || has_replacement);
  }
}

TEST(UnicodeProperty, WritingToABufferGivesTheSameTextOrSaysThatItDoesNotFit) {
  std::mt19937 random(4);
  for (int round = 0; round < kRounds; ++round) {
    const std::string bytes = RandomBytes(random);
    const std::wstring expected = unicode::WideFromUtf8(bytes);
    std::wstring buffer(random() % 14, L'x');
    const auto written = unicode::PutWideFromUtf8(bytes, buffer);
    ASSERT_EQ(written.has_value(), expected.size() <= buffer.size());
    if (written) {
      ASSERT_EQ(buffer.substr(0, *written), expected);
    }
  }
}

}  // namespace
