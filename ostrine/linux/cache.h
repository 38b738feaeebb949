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
/// processors share it. When the first processor's alone are asked for they end with the one that holds data,
/// and come with their ways or, where those are not told, with their size; else with their size. Nothing at
/// all when a cache is not described so far: the others would not be the whole.
std::vector<Cache> ReadCaches(const std::string& folder, std::span<const std::uint32_t> processors,
                              unsigned int level, CacheExtent extent);

}  // namespace ostrine
