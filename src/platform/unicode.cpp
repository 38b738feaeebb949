#include "platform/unicode.h"

#include <algorithm>

namespace velmora::unicode {
namespace {

constexpr char32_t kLastCharacter = 0x10FFFF;

constexpr bool IsSurrogate(char32_t value) { return value >= 0xD800 && value <= 0xDFFF; }
constexpr bool IsHighSurrogate(char32_t value) { return value >= 0xD800 && value <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t value) { return value >= 0xDC00 && value <= 0xDFFF; }

constexpr char32_t Combine(char32_t high, char32_t low) {
  return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

/// What a first byte tells about its sequence: how many bytes follow, and which second bytes may.
struct Lead {
  int following = 0;
  unsigned char lowest_second = 0x80;
  unsigned char highest_second = 0xBF;
  unsigned char payload = 0;
  bool valid = true;
};

constexpr Lead ReadLead(unsigned char byte) {
  const auto low_bits = [byte](unsigned mask) { return static_cast<unsigned char>(byte & mask); };
  if (byte < 0x80) return {.payload = byte};
  if (byte >= 0xC2 && byte <= 0xDF) return {.following = 1, .payload = low_bits(0x1F)};
  if (byte == 0xE0) return {.following = 2, .lowest_second = 0xA0, .payload = low_bits(0x0F)};
  if (byte == 0xED) return {.following = 2, .highest_second = 0x9F, .payload = low_bits(0x0F)};
  if (byte >= 0xE1 && byte <= 0xEF) return {.following = 2, .payload = low_bits(0x0F)};
  if (byte == 0xF0) return {.following = 3, .lowest_second = 0x90, .payload = low_bits(0x07)};
  if (byte >= 0xF1 && byte <= 0xF3) return {.following = 3, .payload = low_bits(0x07)};
  if (byte == 0xF4) return {.following = 3, .highest_second = 0x8F, .payload = low_bits(0x07)};
  return {.valid = false};
}

/// Takes the next character off the front of UTF-16 or UTF-32 `units`, which must not be empty.
template <class Unit>
char32_t TakeWide(std::span<const Unit>& units) noexcept {
  const auto first = static_cast<char32_t>(units[0]);
  units = units.subspan(1);
  if constexpr (sizeof(Unit) == 2) {
    if (IsHighSurrogate(first) && !units.empty() && IsLowSurrogate(units[0])) {
      const char32_t second = units[0];
      units = units.subspan(1);
      return Combine(first, second);
    }
  }
  return IsSurrogate(first) || first > kLastCharacter ? kReplacement : first;
}

/// Appends `character` as one or two units of two bytes.
template <class Text>
void AppendUtf16(char32_t character, Text& text) {
  using Unit = typename Text::value_type;
  if (character < 0x10000) {
    text.push_back(static_cast<Unit>(character));
    return;
  }
  text.push_back(static_cast<Unit>(0xD800 + ((character - 0x10000) >> 10)));
  text.push_back(static_cast<Unit>(0xDC00 + ((character - 0x10000) & 0x3FF)));
}

void AppendUtf8(char32_t character, std::string& text) {
  const auto put = [&text](char32_t byte) {
    text.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
  };
  const auto put_following = [&](int shift) { put(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | (character >> 6));
    put_following(0);
  } else if (character < 0x10000) {
    put(0xE0 | (character >> 12));
    put_following(6);
    put_following(0);
  } else {
    put(0xF0 | (character >> 18));
    put_following(12);
    put_following(6);
    put_following(0);
  }
}

/// Moves the ASCII at the front of `from`, most often all of it, to the end of `to` in one step.
template <class From, class To>
void MoveAscii(From& from, To& to) {
  using Unit = typename To::value_type;
  const auto end =
      std::find_if(from.begin(), from.end(), [](auto unit) { return static_cast<char32_t>(unit) >= 0x80; });
  const auto count = static_cast<std::size_t>(end - from.begin());
  const std::size_t before = to.size();
  to.resize(before + count);
  std::transform(from.begin(), end, to.begin() + static_cast<std::ptrdiff_t>(before),
                 [](auto unit) { return static_cast<Unit>(unit); });
  from = From(from.data() + count, from.size() - count);
}

}  // namespace

char32_t TakeUtf8(std::string_view& text) noexcept {
  const Lead lead = ReadLead(static_cast<unsigned char>(text[0]));
  text.remove_prefix(1);
  if (!lead.valid) return kReplacement;
  char32_t character = lead.payload;
  for (int i = 0; i < lead.following; ++i) {
    const unsigned char lowest = i == 0 ? lead.lowest_second : 0x80;
    const unsigned char highest = i == 0 ? lead.highest_second : 0xBF;
    if (text.empty()) return kReplacement;
    const auto byte = static_cast<unsigned char>(text[0]);
    if (byte < lowest || byte > highest) return kReplacement;
    character = (character << 6) | (byte & 0x3FU);
    text.remove_prefix(1);
  }
  return character;
}

std::size_t PutWide(char32_t character, std::span<wchar_t> output) noexcept {
  const bool is_pair = sizeof(wchar_t) == 2 && character >= 0x10000;
  const std::size_t needed = is_pair ? 2 : 1;
  if (needed > output.size()) return 0;
  if (is_pair) {
    output[0] = static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10));
    output[1] = static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
  } else {
    output[0] = static_cast<wchar_t>(character);
  }
  return needed;
}

std::optional<std::size_t> PutWideFromUtf8(std::string_view text, std::span<wchar_t> output) noexcept {
  std::size_t written = 0;
  while (!text.empty()) {
    const std::size_t units = PutWide(TakeUtf8(text), output.subspan(written));
    if (units == 0) return std::nullopt;
    written += units;
  }
  return written;
}

void AppendWide(char32_t character, std::wstring& text) {
  if constexpr (sizeof(wchar_t) == 2) {
    AppendUtf16(character, text);
  } else {
    text.push_back(static_cast<wchar_t>(character));
  }
}

std::wstring WideFromUtf8(std::string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  for (MoveAscii(text, wide); !text.empty(); MoveAscii(text, wide)) AppendWide(TakeUtf8(text), wide);
  return wide;
}

std::wstring WideFromUtf16(std::span<const char16_t> text) {
  std::wstring wide;
  wide.reserve(text.size());
  while (!text.empty()) AppendWide(TakeWide(text), wide);
  return wide;
}

std::string Utf8FromWide(std::wstring_view text) {
  std::string narrow;
  narrow.reserve(text.size());
  std::span<const wchar_t> units(text);
  for (MoveAscii(units, narrow); !units.empty(); MoveAscii(units, narrow))
    AppendUtf8(TakeWide(units), narrow);
  return narrow;
}

std::u16string Utf16FromUtf8(std::string_view text) {
  std::u16string wide;
  wide.reserve(text.size());
  while (!text.empty()) AppendUtf16(TakeUtf8(text), wide);
  return wide;
}

}  // namespace velmora::unicode
