#pragma once

namespace velmora::benchmarks {

/// How many times this thread has allocated memory.
long Allocations();

}  // namespace velmora::benchmarks
