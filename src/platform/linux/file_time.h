/// Times of files in the form that callers compare. Pure.
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/os/folders.h"

namespace velmora::os {

/// The time `seconds` and `nanoseconds` after 1970-01-01 UTC; the first or last time that the form has for
/// one before 1601 or beyond its end.
inline FileTime FileTimeOf(std::int64_t seconds, std::uint32_t nanoseconds) noexcept {
  constexpr std::int64_t kUnitsPerSecond = 10'000'000;
  constexpr std::int64_t kSecondsBefore1970 = 11'644'473'600;
  constexpr std::int64_t kLastSecond = INT64_MAX / kUnitsPerSecond - kSecondsBefore1970 - 1;
  std::uint64_t units = 0;
  if (seconds >= -kSecondsBefore1970) {
    units =
        static_cast<std::uint64_t>((std::min(seconds, kLastSecond) + kSecondsBefore1970) * kUnitsPerSecond) +
        nanoseconds / 100;
  }
  return {static_cast<std::uint32_t>(units), static_cast<std::uint32_t>(units >> 32)};
}

}  // namespace velmora::os
