#include "ostrine/common/battery_record.h"

namespace ostrine {
namespace {

/// Where the numbers stand in the two records.
enum InformationOffset : std::size_t { kCapabilities = 0, kDesign = 12, kFull = 16 };
enum StatusOffset : std::size_t { kPowerState = 0, kRemaining = 4, kVoltage = 8, kRate = 12 };

enum Capability : std::uint32_t {
  kIsShortTerm = 0x20000000,
  kCountsRelatively = 0x40000000,
  kIsSystemBattery = 0x80000000,
};

enum PowerState : std::uint32_t { kOnLine = 1, kDischarging = 2, kCharging = 4 };

/// Little-endian number at `offset`, which lies within the record.
std::uint32_t NumberAt(std::span<const std::uint8_t> record, std::size_t offset) noexcept {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < sizeof number; ++i) {
    number |= static_cast<std::uint32_t>(record[offset + i]) << (8 * i);
  }
  return number;
}

BatteryState StateOf(std::uint32_t power_state) noexcept {
  const bool is_charging = (power_state & kCharging) != 0;
  const bool is_discharging = (power_state & kDischarging) != 0;
  if (is_charging && is_discharging) return BatteryState::kUnknown;
  if (is_charging) return BatteryState::kCharging;
  if (is_discharging) return BatteryState::kDischarging;
  return (power_state & kOnLine) != 0 ? BatteryState::kIdle : BatteryState::kUnknown;
}

}  // namespace

std::optional<Battery> BatteryOfRecords(std::span<const std::uint8_t> information,
                                        std::span<const std::uint8_t> status) noexcept {
  if (information.size() < kBatteryInformationSize) return std::nullopt;
  const std::uint32_t capabilities = NumberAt(information, kCapabilities);
  const bool is_machines_own = (capabilities & kIsSystemBattery) != 0 && (capabilities & kIsShortTerm) == 0;
  if (!is_machines_own) return std::nullopt;

  const bool counts_energy = (capabilities & kCountsRelatively) == 0;
  Battery battery;
  if (counts_energy) {
    battery.design = NumberAt(information, kDesign);
    battery.full = NumberAt(information, kFull);
  }
  if (status.size() < kBatteryStatusSize) return battery;
  battery.voltage = NumberAt(status, kVoltage);
  if (counts_energy) {
    battery.remaining = NumberAt(status, kRemaining);
    const auto rate = static_cast<std::int32_t>(NumberAt(status, kRate));
    battery.rate = SignedRate(rate, StateOf(NumberAt(status, kPowerState)));
  }
  return battery;
}

}  // namespace ostrine
