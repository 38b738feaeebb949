#include "velmora-report/utf8.h"

namespace report {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool StartsPair(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool EndsPair(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// Takes the next character off the front of `text`. Where wide characters have two bytes, one may be a pair.
char32_t TakeCharacter(std::wstring_view& text) {
  const auto first = static_cast<char32_t>(text.front());
  text.remove_prefix(1);
  if (sizeof(wchar_t) == 2 && StartsPair(first) && !text.empty()) {
    const auto second = static_cast<char32_t>(text.front());
    if (EndsPair(second)) {
      text.remove_prefix(1);
      return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
    }
  }
  return StartsPair(first) || EndsPair(first) || first > 0x10FFFF ? kReplacement : first;
}

void Append(char32_t character, std::string& utf8) {
  const auto following = [character](int shift) {
    return static_cast<char>(0x80 | (character >> shift & 0x3F));
  };
  if (character < 0x80) {
    utf8 += static_cast<char>(character);
  } else if (character < 0x800) {
    utf8 += {static_cast<char>(0xC0 | character >> 6), following(0)};
  } else if (character < 0x10000) {
    utf8 += {static_cast<char>(0xE0 | character >> 12), following(6), following(0)};
  } else {
    utf8 += {static_cast<char>(0xF0 | character >> 18), following(12), following(6), following(0)};
  }
}

/// How many bytes a character has that begins with `first`; 0 for one that begins none.
std::size_t SizeOfCharacter(unsigned char first) {
  if (first < 0x80) return 1;
  if (first < 0xC2 || first > 0xF4) return 0;
  if (first < 0xE0) return 2;
  return first < 0xF0 ? 3 : 4;
}

/// Takes the next character off the front of `text`, or one byte that belongs to none.
char32_t TakeUtf8(std::string_view& text) {
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const auto byte = [&text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const std::size_t size = SizeOfCharacter(byte(0));
  char32_t character = size == 1 ? byte(0) : byte(0) & (0x7FU >> size);
  std::size_t at = 1;
  while (at < size && at < text.size() && (byte(at) & 0xC0) == 0x80)
    character = character << 6 | (byte(at++) & 0x3F);
  const bool is_whole = size != 0 && at == size && character >= kSmallest[size] && character <= 0x10FFFF &&
                        !StartsPair(character) && !EndsPair(character);
  text.remove_prefix(is_whole ? size : 1);
  return is_whole ? character : kReplacement;
}

void AppendWide(char32_t character, std::wstring& wide) {
  if (sizeof(wchar_t) == 2 && character >= 0x10000) {
    wide += static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10));
    wide += static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
  } else {
    wide += static_cast<wchar_t>(character);
  }
}

}  // namespace

std::wstring FromUtf8(std::string_view text) {
  std::wstring wide;
  while (!text.empty()) AppendWide(TakeUtf8(text), wide);
  return wide;
}

std::string ToUtf8(std::wstring_view text) {
  std::string utf8;
  utf8.reserve(text.size());
  while (!text.empty()) Append(TakeCharacter(text), utf8);
  return utf8;
}

std::string ToUtf8(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    Append(code < 0x80 ? code : kReplacement, utf8);
  }
  return utf8;
}

}  // namespace report
