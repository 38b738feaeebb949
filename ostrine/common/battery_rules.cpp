#include "ostrine/common/battery_rules.h"

#include <algorithm>

namespace ostrine {
namespace {

using Number = std::optional<std::uint32_t>;

constexpr std::int64_t kLeastUnknown = 0x80000000;

Number Known(const Number& number) noexcept { return number ? KnownNumber(*number) : std::nullopt; }

/// The sum of one energy over all batteries; nothing unless each of them knows it.
Number Sum(std::span<const Battery> batteries, Number Battery::* energy) noexcept {
  std::uint64_t sum = 0;
  bool is_any = false;
  for (const Battery& battery : batteries) {
    if (IsPhantom(battery)) continue;
    const Number known = Known(battery.*energy);
    if (!known) return std::nullopt;
    sum += *known;
    is_any = true;
  }
  return is_any ? KnownNumber(sum) : std::nullopt;
}

/// The same for the rate, which has a sign: two batteries of which one charges the other are at rest.
std::optional<std::int64_t> Rate(std::span<const Battery> batteries) noexcept {
  std::int64_t sum = 0;
  bool is_any = false;
  for (const Battery& battery : batteries) {
    if (IsPhantom(battery)) continue;
    if (!battery.rate || *battery.rate == INT32_MIN) return std::nullopt;
    sum += *battery.rate;
    is_any = true;
  }
  if (!is_any || sum <= -kLeastUnknown || sum >= kLeastUnknown) return std::nullopt;
  return sum;
}

Number RateAbove(std::optional<std::int64_t> rate) noexcept {
  if (!rate) return std::nullopt;
  return KnownNumber(static_cast<std::uint64_t>(std::max<std::int64_t>(*rate, 0)));
}

Number FirstVoltage(std::span<const Battery> batteries) noexcept {
  for (const Battery& battery : batteries) {
    const Number voltage = Known(battery.voltage);
    if (voltage.value_or(0) != 0) return voltage;
  }
  return std::nullopt;
}

Number Loss(Number full, Number design) noexcept {
  constexpr std::uint64_t kHundredthsOfPercent = 10'000;
  if (!full || design.value_or(0) == 0) return std::nullopt;
  const std::uint64_t lost = *design - std::min(*full, *design);
  return static_cast<std::uint32_t>((lost * kHundredthsOfPercent + *design / 2) / *design);
}

std::string FirstText(std::span<const Battery> batteries, std::string Battery::* text) {
  for (const Battery& battery : batteries) {
    if (!IsPhantom(battery) && !(battery.*text).empty()) return battery.*text;
  }
  return {};
}

}  // namespace

std::optional<std::uint32_t> KnownNumber(std::uint64_t number) noexcept {
  if (number >= static_cast<std::uint64_t>(kLeastUnknown)) return std::nullopt;
  return static_cast<std::uint32_t>(number);
}

bool IsPhantom(const Battery& battery) noexcept {
  const auto is_nothing = [](const Number& number) { return Known(number).value_or(0) == 0; };
  return is_nothing(battery.full) && is_nothing(battery.design) && is_nothing(battery.voltage);
}

std::optional<std::uint32_t> CombinedNumber(std::span<const Battery> batteries,
                                            BatteryNumber number) noexcept {
  switch (number) {
    case BatteryNumber::kPresent:
      if (std::ranges::all_of(batteries, IsPhantom)) return std::nullopt;
      return 1;
    case BatteryNumber::kRemaining:
      return Sum(batteries, &Battery::remaining);
    case BatteryNumber::kFull:
      return Sum(batteries, &Battery::full);
    case BatteryNumber::kDesign:
      return Sum(batteries, &Battery::design);
    case BatteryNumber::kVoltage:
      return FirstVoltage(batteries);
    case BatteryNumber::kLoss:
      return Loss(Sum(batteries, &Battery::full), Sum(batteries, &Battery::design));
    case BatteryNumber::kDischargeRate: {
      const auto rate = Rate(batteries);
      return RateAbove(rate ? std::optional(-*rate) : std::nullopt);
    }
    case BatteryNumber::kChargeRate:
      return RateAbove(Rate(batteries));
  }
  return std::nullopt;
}

std::string CombinedManufacturer(std::span<const Battery> batteries) {
  return FirstText(batteries, &Battery::manufacturer);
}

std::string CombinedName(std::span<const Battery> batteries) { return FirstText(batteries, &Battery::name); }

std::optional<std::int32_t> SignedRate(std::int64_t rate, BatteryState state) noexcept {
  if (rate <= -kLeastUnknown || rate >= kLeastUnknown) return std::nullopt;
  const auto number = static_cast<std::int32_t>(rate);
  const std::int32_t magnitude = number < 0 ? -number : number;
  switch (state) {
    case BatteryState::kCharging:
      return magnitude;
    case BatteryState::kDischarging:
      return -magnitude;
    case BatteryState::kIdle:
      return 0;
    case BatteryState::kUnknown:
      break;
  }
  return number;
}

}  // namespace ostrine
