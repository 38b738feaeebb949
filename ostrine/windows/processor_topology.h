/// What Windows says of cores, logical processors and caches: readers of the records that
/// GetLogicalProcessorInformationEx fills.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "ostrine/common/processor.h"

namespace ostrine {

struct ProcessorCounts {
  std::uint32_t cores = 0;
  std::uint32_t threads = 0;  ///< logical processors, in all processor groups
};

/// The cores among `records` and their logical processors; nothing when there are none or a record is not
/// whole.
std::optional<ProcessorCounts> CountProcessors(std::span<const std::byte> records);

/// The caches of `level` among `records`; nothing at all when a record is not whole.
std::vector<Cache> ReadCaches(std::span<const std::byte> records, unsigned int level, CacheExtent extent);

}  // namespace ostrine
