#include "platform/linux/config_text.h"

#include <algorithm>

namespace velmora::os {
namespace {

std::string_view Trimmed(std::string_view text) noexcept {
  constexpr std::string_view kBlanks = " \t\r";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::string_view Unquoted(std::string_view text) noexcept {
  const bool is_quoted =
      text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
  return is_quoted ? text.substr(1, text.size() - 2) : text;
}

/// Takes the first line off the front of `text`, which must not be empty.
std::string_view TakeLine(std::string_view& text) noexcept {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = Trimmed(text.substr(0, end));
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

/// The value when `line` is "key=value".
std::optional<std::string_view> ValueOf(std::string_view line, std::string_view key) noexcept {
  const std::size_t sign = line.find('=');
  if (sign == std::string_view::npos || Trimmed(line.substr(0, sign)) != key) return std::nullopt;
  return Unquoted(Trimmed(line.substr(sign + 1)));
}

}  // namespace

std::string KeyValue(std::string_view text, std::string_view key) {
  std::string_view value;
  while (!text.empty()) {
    const std::string_view line = TakeLine(text);
    const bool is_comment = line.starts_with('#') || line.starts_with(';');
    if (!is_comment) value = ValueOf(line, key).value_or(value);
  }
  return std::string(value);
}

std::string SectionValue(std::string_view text, std::string_view section, std::string_view key) {
  std::string_view value;
  bool is_inside = false;
  while (!text.empty()) {
    const std::string_view line = TakeLine(text);
    if (line.starts_with('#') || line.starts_with(';')) continue;
    const bool is_head = line.starts_with('[') && line.ends_with(']');
    if (is_head) {
      is_inside = line.substr(1, line.size() - 2) == section;
    } else if (is_inside) {
      value = ValueOf(line, key).value_or(value);
    }
  }
  return std::string(value);
}

}  // namespace velmora::os
