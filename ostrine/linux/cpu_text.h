/// The kernel's notations for facts about processors: pure readers of texts that are not trusted.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ostrine/common/processor_load.h"

namespace ostrine {

/// Processor numbers are below this, the most that a kernel can be built for.
inline constexpr std::uint32_t kProcessorLimit = 8192;

/// An unsigned decimal number that is the whole of `text`.
std::optional<std::uint64_t> ParseNumber(std::string_view text);

/// The numbers of a list such as "0-3,8,10-11", in its order. Nothing for an empty or malformed list, one
/// that does not ascend, and for numbers past the limit.
std::optional<std::vector<std::uint32_t>> ParseProcessorList(std::string_view text);

/// Bytes of a size such as "48K".
std::optional<std::uint64_t> ParseCacheSize(std::string_view text);

/// The value of `key` at its first place among the "key : value" lines of /proc/cpuinfo; nothing when it is
/// missing or empty.
std::optional<std::string> ProcessorInfoValue(std::string_view text, std::string_view key);

/// The highest clock in MHz, rounded, of the processors that /proc/cpuinfo lists.
std::optional<std::uint32_t> HighestListedClock(std::string_view text);

/// Time of all processors together from the first line of /proc/stat. Waiting for a disk is idle time; time
/// that a hypervisor gave to others is counted as busy.
std::optional<ProcessorTime> ParseProcessorTime(std::string_view text);

}  // namespace ostrine
