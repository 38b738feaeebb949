#include "platform/linux/meminfo.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>

namespace velmora::os {
namespace {

/// The value of "name:   12345 kB" in bytes. A line of that name which says anything else counts as missing.
std::optional<std::uint64_t> Size(std::string_view text, std::string_view name) noexcept {
  constexpr std::uint64_t kUnit = 1024;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!line.starts_with(name) || !line.substr(name.size()).starts_with(':')) continue;

    line.remove_prefix(name.size() + 1);
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    std::uint64_t number = 0;
    const auto [rest, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    line.remove_prefix(static_cast<std::size_t>(rest - line.data()));
    const bool fits = number <= std::numeric_limits<std::uint64_t>::max() / kUnit;
    if (error != std::errc() || line != " kB" || !fits) return std::nullopt;
    return number * kUnit;
  }
  return std::nullopt;
}

std::optional<std::uint64_t> Available(std::string_view text) noexcept {
  if (const auto stated = Size(text, "MemAvailable")) return stated;
  const auto free = Size(text, "MemFree");
  if (!free) return std::nullopt;
  std::uint64_t sum = *free;
  for (const auto part : {Size(text, "Buffers"), Size(text, "Cached")}) {
    const std::uint64_t added = part.value_or(0);
    if (added > std::numeric_limits<std::uint64_t>::max() - sum) return std::nullopt;
    sum += added;
  }
  return sum;
}

}  // namespace

std::optional<MemoryFacts> ParseMeminfo(std::string_view text) noexcept {
  const auto total = Size(text, "MemTotal");
  const auto available = Available(text);
  if (!total || *total == 0 || !available) return std::nullopt;
  MemoryFacts facts;
  facts.total = *total;
  facts.available = std::min(*available, *total);
  facts.swap_total = Size(text, "SwapTotal").value_or(0);
  facts.swap_free = std::min(Size(text, "SwapFree").value_or(0), facts.swap_total);
  return facts;
}

}  // namespace velmora::os
