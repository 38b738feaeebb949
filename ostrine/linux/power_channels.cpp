// Voltages and currents of USB ports and batteries, in the order of their names. A current that leaves a
// battery is below zero.
#include <optional>
#include <string>
#include <utility>

#include "ostrine/linux/firmware_method.h"
#include "ostrine/linux/last_error.h"
#include "ostrine/linux/power_supplies.h"

namespace ostrine {
namespace {

constexpr std::int64_t kMicrosPerMilli = 1000;

/// Folder of the battery or port with this number; empty when there is none.
Path FindSupply(const Path& root, bool is_battery, std::uint8_t number) {
  int seen = 0;
  for (PowerSupply& supply : ListPowerSupplies(root)) {
    if (supply.type != (is_battery ? "Battery" : "USB")) continue;
    if (seen++ == number) return std::move(supply.folder);
  }
  return {};
}

/// Millivolts. A battery without a voltage does not answer, whatever it says; an idle port has none.
std::optional<std::int64_t> Voltage(const Path& supply, bool is_battery) {
  const auto microvolts = NumberAttribute(supply / "voltage_now");
  if (!microvolts || *microvolts < 0 || (is_battery && *microvolts == 0)) return std::nullopt;
  return *microvolts / kMicrosPerMilli;
}

/// Milliamperes without their direction; batteries that count energy state the power instead.
std::optional<std::int64_t> CurrentMagnitude(const Path& supply) {
  constexpr std::int64_t kMost = 1'000'000'000;  // a thousand amperes or watts: no reading
  if (const auto current = NumberAttribute(supply / "current_now")) {
    if (*current > kMost || *current < -kMost) return std::nullopt;
    return *current / kMicrosPerMilli;
  }
  const auto power = NumberAttribute(supply / "power_now");
  const auto voltage = Voltage(supply, true);
  if (!power || !voltage || *voltage == 0 || *power > kMost || *power < -kMost) return std::nullopt;
  return *power / *voltage;
}

std::optional<std::int64_t> Current(const Path& supply) {
  const auto current = CurrentMagnitude(supply);
  if (!current) return std::nullopt;
  // Drivers disagree about the sign, not about the direction.
  const std::string status = CleanAttribute(supply / "status");
  const std::int64_t magnitude = *current < 0 ? -*current : *current;
  if (status == "Discharging") return -magnitude;
  if (status == "Charging") return magnitude;
  return current;
}

}  // namespace

FirmwareAnswer ReadElectric(const Path& root, const ElectricChannel& channel) {
  const Path supply = FindSupply(root, channel.is_battery, channel.number);
  if (supply.empty()) return {.error = kErrorNotFound};
  const auto value = channel.is_current ? Current(supply) : Voltage(supply, channel.is_battery);
  return value ? AnswerOf(ElectricReply(*value)) : FirmwareAnswer{.error = kErrorInvalidData};
}

}  // namespace ostrine
