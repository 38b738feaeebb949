#include "platform/text_search.h"

#include <string_view>

#include "platform/case_folding.h"
#include "platform/unicode.h"

namespace velmora {
namespace {

/// Takes the next character off the front of UTF-8 `text` and folds it. A byte that belongs to no character
/// gives a number that no character has.
char32_t TakeFolded(std::string_view& text) noexcept {
  constexpr char32_t kBrokenBytes = 0x110000;
  const std::string_view before = text;
  const char32_t character = unicode::TakeUtf8(text);
  const bool is_broken = character == unicode::kReplacement && !before.starts_with("\xEF\xBF\xBD");
  if (is_broken) {
    text = before.substr(1);
    return kBrokenBytes + static_cast<unsigned char>(before[0]);
  }
  if (character > 0xFFFF) return character;  // FoldCase knows no letter there
  return static_cast<char32_t>(FoldCase(static_cast<wchar_t>(character)));
}

bool StartsIgnoringCase(std::string_view text, std::string_view part) noexcept {
  while (!part.empty()) {
    if (text.empty() || TakeFolded(text) != TakeFolded(part)) return false;
  }
  return true;
}

bool StartsIgnoringCase(const wchar_t* text, const wchar_t* part) noexcept {
  for (; *part != 0; ++text, ++part) {
    if (FoldCase(*text) != FoldCase(*part)) return false;  // also where `text` ends
  }
  return true;
}

}  // namespace

const wchar_t* FindIgnoringCase(const wchar_t* text, const wchar_t* part) noexcept {
  if (text == nullptr || part == nullptr || *part == 0) return nullptr;
  for (; *text != 0; ++text) {
    if (StartsIgnoringCase(text, part)) return text;
  }
  return nullptr;
}

const char* FindIgnoringCase(const char* text, const char* part) noexcept {
  if (text == nullptr || part == nullptr || *part == 0) return nullptr;
  const std::string_view wanted(part);
  for (std::string_view rest(text); !rest.empty(); TakeFolded(rest)) {
    if (StartsIgnoringCase(rest, wanted)) return rest.data();
  }
  return nullptr;
}

int CompareIgnoringCase(const wchar_t* left, const wchar_t* right) noexcept {
  for (; FoldCase(*left) == FoldCase(*right); ++left, ++right) {
    if (*left == 0) return 0;
  }
  return FoldCase(*left) < FoldCase(*right) ? -1 : 1;
}

const wchar_t* FindExtension(const wchar_t* path) noexcept {
  const wchar_t* point = nullptr;
  for (; *path != 0; ++path) {
    if (*path == L'\\') point = nullptr;
    if (*path == L'.') point = path;
  }
  return point != nullptr ? point : path;
}

}  // namespace velmora
