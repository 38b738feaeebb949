/// How far the batteries are charged: the two-byte record of the battery's class, and the words by which a
/// firmware's method is asked for it. Pure functions.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace ostrine {

/// Percentages of the full charge capacity.
struct ChargeThresholds {
  std::uint8_t start = 0;  ///< charging starts when the charge is below
  std::uint8_t stop = 0;   ///< charging stops here

  bool operator==(const ChargeThresholds&) const = default;
};

inline constexpr std::size_t kThresholdRecordSize = 2;

/// Whether a battery can be charged so: the start, 0 to 99, lies below the stop, 1 to 100.
bool IsPossible(const ChargeThresholds& thresholds) noexcept;

/// The record's bytes: the start first.
std::array<std::uint8_t, kThresholdRecordSize> ToRecord(const ChargeThresholds& thresholds) noexcept;

/// None for a record of another size or of thresholds that are not possible.
std::optional<ChargeThresholds> ParseThresholdRecord(std::span<const std::uint8_t> record) noexcept;

/// Whether of two settings that are written one after the other the start goes first, so that at no moment
/// the start stands above the stop.
bool IsStartWrittenFirst(const ChargeThresholds& old, const ChargeThresholds& wanted) noexcept;

/// Words of the firmware's method (see docs/firmware-methods.md): one reads the thresholds, one sets them.
inline constexpr std::uint64_t kReadThresholdsWord = 0x0A02;
constexpr std::uint64_t SetThresholdsWord(const ChargeThresholds& thresholds) noexcept {
  return std::uint64_t{thresholds.stop} << 24 | std::uint64_t{thresholds.start} << 16 | 0x0A03;
}

/// The thresholds in the reply to kReadThresholdsWord: a status byte of 0, the start, the stop. None for any
/// other status and for thresholds that are not possible.
std::optional<ChargeThresholds> ParseThresholdReply(std::span<const std::uint8_t> reply) noexcept;

}  // namespace ostrine
