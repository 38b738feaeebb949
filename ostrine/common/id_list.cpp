#include "ostrine/common/id_list.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace ostrine {
namespace {

std::string_view TakeLine(std::string_view& text) {
  std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::optional<unsigned> DigitValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
  return std::nullopt;
}

/// Takes four hexadecimal digits and the blanks after them.
std::optional<std::uint16_t> TakeNumber(std::string_view& line) {
  constexpr std::size_t kDigits = 4;
  if (line.size() <= kDigits || line[kDigits] != ' ') return std::nullopt;
  unsigned value = 0;
  for (const char c : line.substr(0, kDigits)) {
    const auto digit = DigitValue(c);
    if (!digit) return std::nullopt;
    value = value << 4 | *digit;
  }
  line.remove_prefix(std::min(line.find_first_not_of(' ', kDigits), line.size()));
  return static_cast<std::uint16_t>(value);
}

bool TakeNumber(std::string_view& line, std::uint16_t wanted) { return TakeNumber(line) == wanted; }

}  // namespace

ListedNames FindListedNames(std::string_view list, const ListedNumbers& numbers) noexcept {
  ListedNames names;
  bool in_vendor = false;
  bool in_device = false;
  while (!list.empty()) {
    std::string_view line = TakeLine(list);
    if (line.empty() || line.front() == '#') continue;
    const std::size_t depth = std::min(line.find_first_not_of('\t'), line.size());
    line.remove_prefix(depth);
    if (depth == 0) {
      if (in_vendor) break;  // every vendor stands there once
      in_vendor = TakeNumber(line, numbers.vendor);
      if (in_vendor) names.vendor = line;
    } else if (depth == 1 && in_vendor) {
      if (in_device) break;
      in_device = TakeNumber(line, numbers.device);
      if (in_device) names.device = line;
    } else if (depth == 2 && in_device && numbers.subsystem_vendor != 0) {
      if (TakeNumber(line, numbers.subsystem_vendor) && TakeNumber(line, numbers.subsystem_device)) {
        names.subsystem = line;
        break;
      }
    }
  }
  return names;
}

}  // namespace ostrine
