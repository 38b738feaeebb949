#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>

namespace velmora {

/// The end of most log lines: the qualified name of the function that writes it, in brackets.
struct Within {
  explicit constexpr Within(std::string_view function) : name(function) {}
  std::string_view name;
};

/// A log line as it is built: text of one width, to which labels and values are appended.
///
/// Labels are ASCII literals and go into a line of either width. Numbers are written in decimal, also those
/// of one byte and enumerations; a flag is written as 1 or 0.
template <class Character>
class LogLine {
 public:
  LogLine& operator<<(std::basic_string_view<Character> text) {
    text_ += text;
    return *this;
  }
  LogLine& operator<<(const char* label) { return AppendAscii(label); }
  LogLine& operator<<(const Within& within) {
    return AppendAscii("(").AppendAscii(within.name).AppendAscii(")");
  }

  template <class Value>
    requires std::integral<Value> || std::is_enum_v<Value>
  LogLine& operator<<(Value value) {
    if constexpr (std::is_enum_v<Value>) {
      return *this << static_cast<std::underlying_type_t<Value>>(value);
    } else {
      using Wide = std::conditional_t<std::is_signed_v<Value>, long long, unsigned long long>;
      std::array<char, 24> digits{};
      const auto end = std::to_chars(digits.begin(), digits.end(), static_cast<Wide>(value)).ptr;
      return AppendAscii({digits.data(), end});
    }
  }

  const std::basic_string<Character>& Text() const { return text_; }

 private:
  LogLine& AppendAscii(std::string_view ascii) {
    text_.append(ascii.begin(), ascii.end());
    return *this;
  }

  std::basic_string<Character> text_;
};

using WideLine = LogLine<wchar_t>;
using NarrowLine = LogLine<char>;

}  // namespace velmora
