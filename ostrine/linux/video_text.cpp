#include "ostrine/linux/video_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <vector>

namespace ostrine {
namespace {

std::string_view TakeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  return line;
}

/// The words of `text`, between which blanks and commas stand.
std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  constexpr std::string_view kBetween = " ,";
  for (;;) {
    text.remove_prefix(std::min(text.find_first_not_of(kBetween), text.size()));
    if (text.empty()) return words;
    words.push_back(text.substr(0, text.find_first_of(kBetween)));
    text.remove_prefix(words.back().size());
  }
}

template <class Number>
std::optional<Number> ParseAll(std::string_view digits, int base = 10) {
  Number number{};
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::optional<std::uint64_t> ParseAddress(std::string_view word) {
  if (!word.starts_with("0x")) return std::nullopt;
  return ParseAll<std::uint64_t>(word.substr(2), 16);
}

/// Two numbers above 0 with `between` between them; what follows the second counts only if `whole`.
std::optional<DisplaySize> ParseSize(std::string_view text, char between, bool whole) {
  const char* const end = text.data() + text.size();
  DisplaySize size;
  const auto width = std::from_chars(text.data(), end, size.width);
  if (width.ec != std::errc() || width.ptr == end || *width.ptr != between) return std::nullopt;
  const auto height = std::from_chars(width.ptr + 1, end, size.height);
  if (height.ec != std::errc() || (whole && height.ptr != end)) return std::nullopt;
  if (size.width == 0 || size.height == 0) return std::nullopt;
  return size;
}

struct Date {
  unsigned int year = 0;
  unsigned int month = 0;
  unsigned int day = 0;
};

bool IsLikely(const Date& date) {
  return date.year >= 1991 && date.year <= 9999 && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
         date.day <= 31;
}

std::string ToText(const Date& date) {
  const auto two = [](unsigned int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  return std::to_string(date.year) + "-" + two(date.month) + "-" + two(date.day);
}

/// "(2024-11-01)".
std::optional<Date> ParseBracketed(std::string_view word) {
  constexpr std::size_t kLength = 12;
  if (word.size() != kLength || word[0] != '(' || word[5] != '-' || word[8] != '-' || word[11] != ')') {
    return std::nullopt;
  }
  const auto year = ParseAll<unsigned int>(word.substr(1, 4));
  const auto month = ParseAll<unsigned int>(word.substr(6, 2));
  const auto day = ParseAll<unsigned int>(word.substr(9, 2));
  if (!year || !month || !day) return std::nullopt;
  return Date{.year = *year, .month = *month, .day = *day};
}

/// 1 to 12 for the name of a month, 0 for any other word.
unsigned int MonthOf(std::string_view word) {
  constexpr std::array<std::string_view, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const auto found = std::find(kMonths.begin(), kMonths.end(), word);
  return found == kMonths.end() ? 0 : static_cast<unsigned int>(found - kMonths.begin()) + 1;
}

/// "Nov 1 12:02:04 UTC 2024" or "1 Nov 2024 22:12:51", of which the month is word `at`.
Date DateAround(const std::vector<std::string_view>& words, std::size_t at) {
  const auto number = [&](std::size_t position) {
    return position < words.size() ? ParseAll<unsigned int>(words[position]).value_or(0) : 0;
  };
  const bool is_day_first = at > 0 && number(at - 1) != 0;
  Date date{.month = MonthOf(words[at])};
  date.day = is_day_first ? number(at - 1) : number(at + 1);
  for (std::size_t i = at + 1; i < words.size(); ++i) {
    if (words[i].size() == 4 && number(i) != 0) date.year = number(i);
  }
  return date;
}

}  // namespace

std::optional<std::uint64_t> LargestWindow(std::string_view resource) {
  constexpr int kRegions = 6;
  constexpr std::uint64_t kMemory = 0x200;
  constexpr std::uint64_t kPrefetchable = 0x2000;
  std::optional<std::uint64_t> largest;
  for (int i = 0; i < kRegions && !resource.empty(); ++i) {
    const auto words = Words(TakeLine(resource));
    if (words.size() != 3) continue;
    const auto start = ParseAddress(words[0]);
    const auto end = ParseAddress(words[1]);
    const auto flags = ParseAddress(words[2]);
    if (!start || !end || !flags || *end <= *start) continue;
    if ((*flags & kMemory) == 0 || (*flags & kPrefetchable) == 0) continue;
    // A region that spans all 64 bits is none.
    if (const std::uint64_t size = *end - *start + 1; size > largest.value_or(0)) largest = size;
  }
  return largest;
}

std::optional<DisplaySize> FirstMode(std::string_view modes) {
  return ParseSize(TakeLine(modes), 'x', false);
}

std::optional<DisplaySize> ParseVirtualSize(std::string_view text) { return ParseSize(text, ',', true); }

std::optional<std::string> KernelBuildDate(std::string_view version) {
  const auto words = Words(version);
  for (std::size_t i = 0; i < words.size(); ++i) {
    auto date = ParseBracketed(words[i]);
    if (!date && MonthOf(words[i]) != 0) date = DateAround(words, i);
    if (date && IsLikely(*date)) return ToText(*date);
  }
  return std::nullopt;
}

std::optional<ConnectorRank> RankConnector(std::string_view name) {
  constexpr std::array kBuiltIn{"eDP-", "LVDS-", "DSI-"};
  const std::size_t dash = name.find('-');
  if (!name.starts_with("card") || dash == std::string_view::npos) return std::nullopt;
  const std::string_view connector = name.substr(dash + 1);
  if (connector.starts_with("Virtual-")) return ConnectorRank::kVirtual;
  const bool is_built_in = std::any_of(kBuiltIn.begin(), kBuiltIn.end(),
                                       [&](const char* start) { return connector.starts_with(start); });
  return is_built_in ? ConnectorRank::kBuiltIn : ConnectorRank::kOuter;
}

}  // namespace ostrine
