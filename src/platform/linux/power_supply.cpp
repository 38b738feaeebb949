#include "platform/linux/power_supply.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace velmora::os {
namespace {

constexpr std::uint8_t kUnknown = 255;
constexpr std::uint32_t kUnknownTime = 0xFFFFFFFF;
constexpr std::uint8_t kOnBattery = 0;
constexpr std::uint8_t kOnMains = 1;
constexpr std::uint8_t kHigh = 1;
constexpr std::uint8_t kLow = 2;
constexpr std::uint8_t kCritical = 4;
constexpr std::uint8_t kCharging = 8;
constexpr std::uint8_t kNoBattery = 128;

constexpr double kMicro = 1e-6;
constexpr double kSecondsPerHour = 3600;

/// A product of two readings that only together make a power or an energy.
std::optional<double> Product(std::optional<std::int64_t> amount, std::optional<std::int64_t> voltage) {
  if (!amount || !voltage || *voltage <= 0) return std::nullopt;
  return static_cast<double>(*amount) * static_cast<double>(*voltage) * kMicro;
}

std::optional<double> Either(std::optional<std::int64_t> direct, std::optional<std::int64_t> amount,
                             std::optional<std::int64_t> voltage) {
  if (direct) return static_cast<double>(*direct);
  return Product(amount, voltage);
}

/// What is counted of all batteries together.
struct Batteries {
  int count = 0;
  int with_energy = 0;
  int with_percentage = 0;
  double energy = 0;
  double full_energy = 0;
  double power = 0;
  double percentages = 0;
  bool is_charging = false;
  bool is_discharging = false;
  bool is_kept = false;  ///< says that it is neither charging nor discharging
};

bool IsAccessory(const PowerSupply& supply) { return supply.scope == "Device"; }

bool IsBattery(const PowerSupply& supply) {
  return supply.type == "Battery" && !IsAccessory(supply) && supply.present.value_or(1) != 0;
}

bool FeedsTheMachine(const PowerSupply& supply) {
  const std::string_view type = supply.type;
  return !IsAccessory(supply) && (type == "Mains" || type == "Wireless" || type.starts_with("USB"));
}

void Count(const PowerSupply& battery, Batteries& sum) {
  const auto energy = Either(battery.energy_now, battery.charge_now, battery.voltage_now);
  const auto full = Either(battery.energy_full, battery.charge_full, battery.voltage_now);
  const auto power = Either(battery.power_now, battery.current_now, battery.voltage_now);
  const bool tells_energy = energy && full && *energy >= 0 && *full > 0;
  ++sum.count;
  if (tells_energy) {
    ++sum.with_energy;
    sum.energy += std::min(*energy, *full);
    sum.full_energy += *full;
  }
  if (battery.capacity && *battery.capacity >= 0 && *battery.capacity <= 100) {
    ++sum.with_percentage;
    sum.percentages += static_cast<double>(*battery.capacity);
  } else if (tells_energy) {
    ++sum.with_percentage;
    sum.percentages += 100 * std::min(*energy, *full) / *full;
  }
  if (power) sum.power += std::abs(*power);  // some drivers report a discharge as a negative rate
  sum.is_charging |= battery.status == "Charging";
  sum.is_discharging |= battery.status == "Discharging";
  sum.is_kept |= battery.status == "Full" || battery.status == "Not charging";
}

std::uint8_t Percentage(const Batteries& batteries) {
  double percentage = 0;
  if (batteries.count > 0 && batteries.with_energy == batteries.count) {
    percentage = 100 * batteries.energy / batteries.full_energy;
  } else if (batteries.with_percentage > 0) {
    percentage = batteries.percentages / batteries.with_percentage;
  } else {
    return kUnknown;
  }
  return static_cast<std::uint8_t>(std::clamp(std::lround(percentage), 0L, 100L));
}

std::uint8_t AcLine(std::span<const PowerSupply> supplies, const Batteries& batteries) {
  bool has_mains = false;
  for (const PowerSupply& supply : supplies) {
    if (!FeedsTheMachine(supply)) continue;
    if (supply.online.value_or(0) > 0) return kOnMains;
    has_mains |= supply.type == "Mains" && supply.online;
  }
  if (batteries.count == 0) return kOnMains;
  if (batteries.is_discharging || has_mains) return kOnBattery;
  return batteries.is_charging || batteries.is_kept ? kOnMains : kUnknown;
}

std::uint8_t BatteryFlag(const Batteries& batteries, std::uint8_t percentage) {
  if (batteries.count == 0) return kNoBattery;
  if (percentage == kUnknown && !batteries.is_charging) return kUnknown;
  int flag = batteries.is_charging ? kCharging : 0;
  if (percentage != kUnknown) {
    if (percentage > 66) flag |= kHigh;
    if (percentage < 33) flag |= kLow;
    if (percentage < 5) flag |= kCritical;
  }
  return static_cast<std::uint8_t>(flag);
}

std::uint32_t SecondsOf(double energy, double power) {
  const double seconds = energy / power * kSecondsPerHour;
  return seconds < kUnknownTime ? static_cast<std::uint32_t>(seconds) : kUnknownTime;
}

}  // namespace

PowerStatus UnknownPower() noexcept { return {kUnknown, kUnknown, kUnknown, 0, kUnknownTime, kUnknownTime}; }

PowerStatus SummarisePower(std::span<const PowerSupply> supplies) noexcept {
  Batteries batteries;
  for (const PowerSupply& supply : supplies) {
    if (IsBattery(supply)) Count(supply, batteries);
  }
  PowerStatus status = UnknownPower();
  status.ac_line_status = AcLine(supplies, batteries);
  status.battery_life_percent = Percentage(batteries);
  status.battery_flag = BatteryFlag(batteries, status.battery_life_percent);
  const bool can_last_be_told = batteries.is_discharging && batteries.power > 0 &&
                                batteries.with_energy == batteries.count &&
                                status.ac_line_status == kOnBattery;
  if (can_last_be_told) {
    status.battery_life_time = SecondsOf(batteries.energy, batteries.power);
    status.battery_full_life_time = SecondsOf(batteries.full_energy, batteries.power);
  }
  return status;
}

}  // namespace velmora::os
