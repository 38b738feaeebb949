/// Small rules about devices. Pure.
#pragma once

#include <cstdint>

namespace ostrine {

/// Whether a problem code says that a device waits for a driver: it is not configured (1), its driver is to
/// be installed again (18), or none is installed (28). A driver that is there and fails has other codes.
constexpr bool LacksDriver(std::uint32_t problem_code) noexcept {
  return problem_code == 1 || problem_code == 18 || problem_code == 28;
}

/// Milliseconds since 1970-01-01 00:00 UTC for a time in units of 100 nanoseconds since 1601; 0 for one
/// before 1970.
constexpr std::uint64_t UnixMilliseconds(std::uint64_t file_time) noexcept {
  constexpr std::uint64_t kUnitsInMillisecond = 10'000;
  constexpr std::uint64_t kFrom1601To1970 = 116'444'736'000'000'000;
  return file_time < kFrom1601To1970 ? 0 : (file_time - kFrom1601To1970) / kUnitsInMillisecond;
}

}  // namespace ostrine
