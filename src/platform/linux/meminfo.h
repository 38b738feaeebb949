/// What `/proc/meminfo` says. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velmora::os {

/// Sizes in bytes.
struct MemoryFacts {
  std::uint64_t total = 0;
  std::uint64_t available = 0;  ///< never more than `total`
  std::uint64_t swap_total = 0;
  std::uint64_t swap_free = 0;  ///< never more than `swap_total`
};

/// Reads the text; nothing when it does not tell a total above 0 and what of it is available. A kernel too
/// old to state what is available is taken at free, buffers and cached together.
std::optional<MemoryFacts> ParseMeminfo(std::string_view text) noexcept;

}  // namespace velmora::os
