#pragma once

#include <cstdint>

namespace velmora {

/// The used fraction of `total` bytes of which `available` are free, to four decimal places: the total is cut
/// into ten thousand steps, and whole free steps count. 0 for a total of ten thousand bytes or less.
float UsedFraction(std::uint64_t total, std::uint64_t available);

}  // namespace velmora
