/// The processor's caches, whoever told of them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace ostrine {

enum class CacheKind { kData, kInstruction, kUnified };

/// How many places of a cache may hold one line of memory.
struct CacheWays {
  std::uint32_t count = 0;  ///< 0 when not known
  bool full = false;        ///< every place may; `count` plays no part then
};

/// One cache, of however many the machine has.
struct Cache {
  unsigned int level = 0;  ///< 1 to 3; greater ones are nobody's question
  CacheKind kind = CacheKind::kUnified;
  std::uint64_t size = 0;  ///< in bytes
  CacheWays ways;
};

/// Size of all of `caches` together in KiB; nothing when that is 0 or more than a number holds.
std::optional<std::uint32_t> TotalCacheSize(std::span<const Cache> caches);

/// `ways` in the words of SMBIOS, such as "8-way Set-Associative"; nothing when they are not known.
std::optional<std::string> AssociativityText(const CacheWays& ways);

/// The cache that stands for a level: the first that holds data, for a level of nothing but instructions the
/// first of all. Null when there is none.
const Cache* MainCache(std::span<const Cache> caches);

}  // namespace ostrine
