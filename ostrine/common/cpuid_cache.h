/// What CPUID tells about the caches of one core.
#pragma once

#include <vector>

#include "ostrine/common/cache.h"
#include "ostrine/common/cpuid.h"

namespace ostrine {

/// A cache as one core sees it.
struct CpuidCache {
  Cache cache;
  /// Logical processors that the processor's numbering gives this cache room for; a power of two on most, so
  /// that there may be fewer.
  std::uint32_t sharing = 1;
};

/// The caches of the core that the thread runs on, in the processor's order: from leaf 4, on AMD's processors
/// from leaf 0x8000001D, or on their older ones from leaves 0x80000005 and 0x80000006. Descriptors of leaf 2,
/// which only processors without 64 bits give alone, are not read.
std::vector<CpuidCache> ReadCpuidCaches(const CpuidSource& source);

/// The caches of `level` that a machine with `threads` logical processors has, all cores alike.
std::vector<Cache> CachesOfMachine(const std::vector<CpuidCache>& caches, unsigned int level,
                                   std::uint32_t threads);

}  // namespace ostrine
