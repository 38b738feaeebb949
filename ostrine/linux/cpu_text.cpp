#include "ostrine/linux/cpu_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <memory>

namespace ostrine {
namespace {

/// Cuts `rest` at the first `separator`: what stood before it is returned, what follows it is left.
std::string_view TakeUntil(std::string_view& rest, char separator) {
  const std::size_t end = rest.find(separator);
  const std::string_view part = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return part;
}

std::string_view WithoutBlanks(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const std::size_t start = text.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kBlanks) + 1 - start);
}

/// The value of a line "key : value" of /proc/cpuinfo; nothing for a line with another key.
std::optional<std::string_view> ValueIn(std::string_view line, std::string_view key) {
  if (!line.starts_with(key)) return std::nullopt;  // nearly every line, of which there are many
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos || WithoutBlanks(line.substr(0, colon)) != key) return std::nullopt;
  return WithoutBlanks(line.substr(colon + 1));
}

/// MHz such as "2299.998", rounded.
std::optional<std::uint32_t> ParseClock(std::string_view text) {
  const auto whole = ParseNumber(TakeUntil(text, '.'));
  if (!whole || *whole >= std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  const bool rounds_up = !text.empty() && text.front() >= '5' && text.front() <= '9';
  return static_cast<std::uint32_t>(*whole) + (rounds_up ? 1 : 0);
}

}  // namespace

std::optional<std::uint64_t> ParseNumber(std::string_view text) {
  std::uint64_t number = 0;
  const char* const start = std::to_address(text.begin());
  const char* const end = start + text.size();
  const auto [stop, error] = std::from_chars(start, end, number);
  return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::optional<std::vector<std::uint32_t>> ParseProcessorList(std::string_view text) {
  if (text.empty()) return std::nullopt;
  std::vector<std::uint32_t> numbers;
  std::uint64_t next = 0;
  do {
    // A comma must have a range behind it.
    const bool ends_with_comma = !text.empty() && text.back() == ',';
    std::string_view range = TakeUntil(text, ',');
    if (text.empty() && ends_with_comma) return std::nullopt;
    const bool is_range = range.find('-') != std::string_view::npos;
    const auto first = ParseNumber(TakeUntil(range, '-'));
    const auto last = is_range ? ParseNumber(range) : first;
    if (!first || !last || *first < next || *last < *first || *last >= kProcessorLimit) return std::nullopt;
    for (next = *first; next <= *last; ++next) numbers.push_back(static_cast<std::uint32_t>(next));
  } while (!text.empty());
  return numbers;
}

std::optional<std::uint64_t> ParseCacheSize(std::string_view text) {
  constexpr std::uint64_t kKibibyte = 1024;
  if (!text.ends_with('K')) return std::nullopt;
  text.remove_suffix(1);
  const auto size = ParseNumber(text);
  if (!size || *size == 0 || *size > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  return *size * kKibibyte;
}

std::optional<std::string> ProcessorInfoValue(std::string_view text, std::string_view key) {
  while (!text.empty()) {
    const auto value = ValueIn(TakeUntil(text, '\n'), key);
    if (value) return value->empty() ? std::nullopt : std::optional<std::string>(*value);
  }
  return std::nullopt;
}

std::optional<std::uint32_t> HighestListedClock(std::string_view text) {
  std::uint32_t highest = 0;
  while (!text.empty()) {
    const auto value = ValueIn(TakeUntil(text, '\n'), "cpu MHz");
    if (value) highest = std::max(highest, ParseClock(*value).value_or(0));
  }
  return highest == 0 ? std::nullopt : std::optional(highest);
}

std::optional<ProcessorTime> ParseProcessorTime(std::string_view text) {
  // user, nice, system, idle, waiting for disks, two kinds of interrupts, stolen. What guests of this machine
  // took follows, and is counted in the first two already.
  constexpr std::size_t kColumns = 8;
  constexpr std::size_t kIdle = 3;
  constexpr std::size_t kWaiting = 4;
  constexpr std::size_t kLeastColumns = kIdle + 1;  // very old kernels have no more
  std::string_view line = TakeUntil(text, '\n');
  if (TakeUntil(line, ' ') != "cpu") return std::nullopt;

  std::array<std::uint64_t, kColumns> columns{};
  std::size_t count = 0;
  ProcessorTime time;
  while (count < kColumns && !line.empty()) {
    const std::string_view column = TakeUntil(line, ' ');
    if (column.empty()) continue;
    const auto number = ParseNumber(column);
    if (!number || *number > std::numeric_limits<std::uint64_t>::max() / kColumns) return std::nullopt;
    columns.at(count++) = *number;
    time.total += *number;
  }
  if (count < kLeastColumns) return std::nullopt;
  time.busy = time.total - columns[kIdle] - columns[kWaiting];
  return time;
}

}  // namespace ostrine
