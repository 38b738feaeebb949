#pragma once

namespace velmora::logging {

/// How much a line matters: the results of operations, or calls of the system that failed.
enum class Level { kDebug, kError };

}  // namespace velmora::logging
