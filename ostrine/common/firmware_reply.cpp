#include "ostrine/common/firmware_reply.h"

namespace ostrine {
namespace {

constexpr std::uint8_t kValid = 0;

constexpr std::uint8_t LowByte(std::uint64_t value) { return static_cast<std::uint8_t>(value & 0xFF); }

/// 1 for a number below zero. A magnitude of 0 has no sign.
constexpr std::uint8_t Sign(std::int64_t value) { return value < 0 ? 1 : 0; }

}  // namespace

std::optional<ElectricChannel> SplitChannel(std::uint64_t selector) noexcept {
  if (selector > 0x3F) return std::nullopt;
  return ElectricChannel{.is_battery = (selector & 0x20) != 0,
                         .is_current = (selector & 0x10) != 0,
                         .number = static_cast<std::uint8_t>(selector & 0x0F)};
}

std::optional<FirmwareReply> FanReply(std::int64_t revolutions_a_minute) noexcept {
  constexpr std::int64_t kFastest = 30000;
  if (revolutions_a_minute < 0 || revolutions_a_minute > kFastest) return std::nullopt;
  const auto speed = static_cast<std::uint64_t>(revolutions_a_minute);
  return FirmwareReply{kValid, LowByte(speed), LowByte(speed >> 8)};
}

std::optional<FirmwareReply> TemperatureReply(std::int64_t thousandths_of_degree) noexcept {
  constexpr std::int64_t kColdest = -55'000;
  constexpr std::int64_t kHottest = 125'000;
  if (thousandths_of_degree < kColdest || thousandths_of_degree > kHottest) return std::nullopt;
  const std::int64_t degrees =
      thousandths_of_degree < 0 ? (thousandths_of_degree - 500) / 1000 : (thousandths_of_degree + 500) / 1000;
  const auto magnitude = static_cast<std::uint64_t>(degrees < 0 ? -degrees : degrees);
  return FirmwareReply{kValid, Sign(degrees), LowByte(magnitude)};
}

std::optional<FirmwareReply> ElectricReply(std::int64_t thousandths) noexcept {
  constexpr std::int64_t kMost = 0xFFFF;
  if (thousandths < -kMost || thousandths > kMost) return std::nullopt;
  const auto magnitude = static_cast<std::uint64_t>(thousandths < 0 ? -thousandths : thousandths);
  return FirmwareReply{kValid, Sign(thousandths), LowByte(magnitude >> 8), LowByte(magnitude)};
}

FirmwareReply SwitchReply(bool on) noexcept { return {kValid, static_cast<std::uint8_t>(on ? 1 : 0)}; }

}  // namespace ostrine
