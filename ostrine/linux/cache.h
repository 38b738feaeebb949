/// The kernel's list of caches.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "ostrine/common/processor.h"

namespace ostrine {

/// The caches of `level` that `processors`, logical processors in ascending order, have in `folder`, the
/// kernel's folder of all processors, with a slash at its end. Each cache is named once, however many
/// processors share it, and with its ways only when the first processor's caches alone are asked for. Nothing
/// at all when a cache is not described in full: the others would not be the whole.
std::vector<Cache> ReadCaches(const std::string& folder, std::span<const std::uint32_t> processors,
                              unsigned int level, CacheExtent extent);

}  // namespace ostrine
