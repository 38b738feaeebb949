#include "ostrine/common/charge_thresholds.h"

namespace ostrine {

bool IsPossible(const ChargeThresholds& thresholds) noexcept {
  constexpr std::uint8_t kFull = 100;
  return thresholds.start < thresholds.stop && thresholds.stop <= kFull;
}

std::array<std::uint8_t, kThresholdRecordSize> ToRecord(const ChargeThresholds& thresholds) noexcept {
  return {thresholds.start, thresholds.stop};
}

std::optional<ChargeThresholds> ParseThresholdRecord(std::span<const std::uint8_t> record) noexcept {
  if (record.size() != kThresholdRecordSize) return std::nullopt;
  const ChargeThresholds thresholds{.start = record[0], .stop = record[1]};
  return IsPossible(thresholds) ? std::optional(thresholds) : std::nullopt;
}

bool IsStartWrittenFirst(const ChargeThresholds& old, const ChargeThresholds& wanted) noexcept {
  return wanted.start < old.stop;
}

std::optional<ChargeThresholds> ParseThresholdReply(std::span<const std::uint8_t> reply) noexcept {
  if (reply.size() < 1 + kThresholdRecordSize || reply[0] != 0) return std::nullopt;
  return ParseThresholdRecord(reply.subspan(1, kThresholdRecordSize));
}

}  // namespace ostrine
