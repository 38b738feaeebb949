#include "ostrine/common/cache.h"

#include <algorithm>
#include <limits>

namespace ostrine {

std::optional<std::uint32_t> TotalCacheSize(std::span<const Cache> caches) {
  constexpr std::uint64_t kKibibyte = 1024;
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
  std::uint64_t total = 0;
  for (const Cache& cache : caches) {
    if (cache.size / kKibibyte > kMost) return std::nullopt;
    total += cache.size;
    if (total / kKibibyte > kMost) return std::nullopt;
  }
  total /= kKibibyte;
  return total == 0 ? std::nullopt : std::optional(static_cast<std::uint32_t>(total));
}

std::optional<std::string> AssociativityText(const CacheWays& ways) {
  if (ways.full) return "Fully Associative";
  if (ways.count == 0) return std::nullopt;
  if (ways.count == 1) return "Direct Mapped";
  return std::to_string(ways.count) + "-way Set-Associative";
}

const Cache* MainCache(std::span<const Cache> caches) {
  if (caches.empty()) return nullptr;
  const auto holds_data = [](const Cache& cache) { return cache.kind != CacheKind::kInstruction; };
  const auto found = std::ranges::find_if(caches, holds_data);
  return found == caches.end() ? &caches.front() : &*found;
}

}  // namespace ostrine
