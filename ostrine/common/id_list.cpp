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

/// Goes down a list line by line: into the vendor that is looked for, into its device, to the subsystem.
class Search {
 public:
  explicit Search(const ListedNumbers& numbers) : numbers_(numbers) {}

  /// False once nothing that is looked for can follow.
  bool Continue(std::string_view line) {
    const std::size_t depth = std::min(line.find_first_not_of('\t'), line.size());
    line.remove_prefix(depth);
    if (depth == 0) return ContinueAt(in_vendor_, numbers_.vendor, names_.vendor, line);
    if (depth == 1 && in_vendor_) return ContinueAt(in_device_, numbers_.device, names_.device, line);
    return depth != 2 || !in_device_ || !IsSubsystem(line);
  }

  const ListedNames& names() const { return names_; }

 private:
  /// Every vendor, and every device of a vendor, stands there once.
  static bool ContinueAt(bool& inside, std::uint16_t number, std::string_view& name, std::string_view line) {
    if (inside) return false;
    inside = TakeNumber(line, number);
    if (inside) name = line;
    return true;
  }

  bool IsSubsystem(std::string_view line) {
    if (numbers_.subsystem_vendor == 0 || !TakeNumber(line, numbers_.subsystem_vendor) ||
        !TakeNumber(line, numbers_.subsystem_device)) {
      return false;
    }
    names_.subsystem = line;
    return true;
  }

  const ListedNumbers& numbers_;
  ListedNames names_;
  bool in_vendor_ = false;
  bool in_device_ = false;
};

}  // namespace

ListedNames FindListedNames(std::string_view list, const ListedNumbers& numbers) noexcept {
  Search search(numbers);
  while (!list.empty()) {
    const std::string_view line = TakeLine(list);
    if (line.empty() || line.front() == '#') continue;
    if (!search.Continue(line)) break;
  }
  return search.names();
}

}  // namespace ostrine
