/// UTF-8 read straight off the table of well-formed byte sequences in the Unicode standard: slow, obvious,
/// and written without a look at the product's decoder, so that the two can be held against each other.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::testing {

/// One row of the standard's table: the range of each byte. Rows that are shorter than four bytes end early.
struct WellFormedRow {
  struct Range {
    unsigned char lowest;
    unsigned char highest;
  };
  std::vector<Range> bytes;
};

inline const std::vector<WellFormedRow>& WellFormedRows() {
  static const std::vector<WellFormedRow> rows{
      {{{0x00, 0x7F}}},
      {{{0xC2, 0xDF}, {0x80, 0xBF}}},
      {{{0xE0, 0xE0}, {0xA0, 0xBF}, {0x80, 0xBF}}},
      {{{0xE1, 0xEC}, {0x80, 0xBF}, {0x80, 0xBF}}},
      {{{0xED, 0xED}, {0x80, 0x9F}, {0x80, 0xBF}}},
      {{{0xEE, 0xEF}, {0x80, 0xBF}, {0x80, 0xBF}}},
      {{{0xF0, 0xF0}, {0x90, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}},
      {{{0xF1, 0xF3}, {0x80, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}},
      {{{0xF4, 0xF4}, {0x80, 0x8F}, {0x80, 0xBF}, {0x80, 0xBF}}},
  };
  return rows;
}

/// How many bytes at the front of `text` agree with `row`.
inline std::size_t Agreeing(const WellFormedRow& row, std::string_view text) {
  std::size_t count = 0;
  while (count < row.bytes.size() && count < text.size()) {
    const auto byte = static_cast<unsigned char>(text[count]);
    if (byte < row.bytes[count].lowest || byte > row.bytes[count].highest) break;
    ++count;
  }
  return count;
}

/// The number that a well-formed sequence stands for.
inline char32_t NumberOf(std::string_view sequence) {
  constexpr std::array kLeadBits{0x7F, 0x1F, 0x0F, 0x07};
  auto number = static_cast<char32_t>(sequence[0] & kLeadBits[sequence.size() - 1]);
  for (const char byte : sequence.substr(1)) number = number * 64 + static_cast<char32_t>(byte & 0x3F);
  return number;
}

/// Characters of UTF-8 text; each maximal part of a broken sequence counts as one U+FFFD.
inline std::u32string NaiveDecode(std::string_view text) {
  std::u32string characters;
  while (!text.empty()) {
    std::size_t longest = 1;
    char32_t character = 0xFFFD;
    for (const auto& row : WellFormedRows()) {
      const std::size_t agreeing = Agreeing(row, text);
      if (agreeing == row.bytes.size()) character = NumberOf(text.substr(0, agreeing));
      if (agreeing > longest) longest = agreeing;
    }
    characters.push_back(character);
    text.remove_prefix(longest);
  }
  return characters;
}

/// UTF-8 of characters, each of which must be one.
inline std::string NaiveEncode(std::u32string_view characters) {
  std::string text;
  const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  for (const char32_t character : characters) {
    if (character <= 0x7F) {
      put(character);
      continue;
    }
    const int following = character <= 0x7FF ? 1 : character <= 0xFFFF ? 2 : 3;
    constexpr std::array<char32_t, 4> kLeads{0, 0xC0, 0xE0, 0xF0};
    put(kLeads[static_cast<std::size_t>(following)] + (character >> (6 * following)));
    for (int i = following - 1; i >= 0; --i) put(0x80 + (character >> (6 * i)) % 64);
  }
  return text;
}

/// Characters in the units of `Text`, pairs of surrogates where those have two bytes.
template <class Text>
Text NaiveWide(std::u32string_view characters) {
  using Unit = typename Text::value_type;
  Text wide;
  for (const char32_t character : characters) {
    if (sizeof(Unit) == 2 && character > 0xFFFF) {
      wide.push_back(static_cast<Unit>(0xD7C0 + character / 0x400));
      wide.push_back(static_cast<Unit>(0xDC00 + character % 0x400));
    } else {
      wide.push_back(static_cast<Unit>(character));
    }
  }
  return wide;
}

}  // namespace velmora::testing
