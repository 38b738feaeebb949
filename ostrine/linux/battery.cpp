#include "ostrine/linux/battery.h"

#include <utility>

#include "ostrine/linux/charge_control.h"
#include "ostrine/linux/power_supplies.h"
#include "ostrine/linux/system_root.h"

namespace ostrine {
namespace {

using Amount = std::optional<std::int64_t>;

constexpr std::int64_t kMicroInMilli = 1000;

/// `micro` in thousandths of what it counts; nothing for a number below zero or one that nothing has.
std::optional<std::uint32_t> Milli(const Amount& micro) noexcept {
  if (!micro || *micro < 0) return std::nullopt;
  return KnownNumber(static_cast<std::uint64_t>(*micro / kMicroInMilli));
}

/// The product in thousandths of a watt or watt hour. Nothing without a voltage, nor when it is beyond any
/// battery.
Amount MilliProduct(const Amount& micro_amperes, const Amount& microvolts) noexcept {
  constexpr std::int64_t kMicroMicroInMilli = 1'000'000'000;
  if (!micro_amperes || microvolts.value_or(0) <= 0) return std::nullopt;
  std::int64_t product = 0;
  if (__builtin_mul_overflow(*micro_amperes, *microvolts, &product)) return std::nullopt;
  return product / kMicroMicroInMilli;
}

std::optional<std::uint32_t> Energy(const Amount& energy, const Amount& charge,
                                    const Amount& microvolts) noexcept {
  if (energy) return Milli(energy);
  const Amount product = MilliProduct(charge, microvolts);
  if (!product || *charge < 0) return std::nullopt;
  return KnownNumber(static_cast<std::uint64_t>(*product));
}

BatteryState StateOf(std::string_view status) noexcept {
  if (status == "Charging") return BatteryState::kCharging;
  if (status == "Discharging") return BatteryState::kDischarging;
  if (status == "Full" || status == "Not charging") return BatteryState::kIdle;
  return BatteryState::kUnknown;
}

std::optional<std::int32_t> Rate(const BatteryAttributes& battery) noexcept {
  const BatteryState state = StateOf(battery.status);
  if (battery.power_now) return SignedRate(*battery.power_now / kMicroInMilli, state);
  const Amount rate = MilliProduct(battery.current_now, battery.voltage_now);
  return rate ? SignedRate(*rate, state) : std::nullopt;
}

BatteryAttributes ReadAttributes(const Path& folder) {
  const auto number = [&](const char* name) { return NumberAttribute(folder / name); };
  return {.status = CleanAttribute(folder / "status"),
          .energy_now = number("energy_now"),
          .energy_full = number("energy_full"),
          .energy_full_design = number("energy_full_design"),
          .charge_now = number("charge_now"),
          .charge_full = number("charge_full"),
          .charge_full_design = number("charge_full_design"),
          .power_now = number("power_now"),
          .current_now = number("current_now"),
          .voltage_now = number("voltage_now"),
          .voltage_min_design = number("voltage_min_design")};
}

bool IsBattery(const PowerSupply& supply) { return supply.type == "Battery"; }

/// Whether the supply feeds the machine from outside.
bool IsFeed(const PowerSupply& supply) {
  return supply.type == "Mains" || supply.type == "Wireless" || supply.type.starts_with("USB");
}

/// What the states of the batteries say about the mains; a machine without any has nothing else to run on.
std::optional<bool> IsOnMainsByBatteries(const std::vector<PowerSupply>& supplies) {
  bool is_any = false;
  bool is_kept = false;
  for (const PowerSupply& supply : supplies) {
    if (!IsBattery(supply)) continue;
    is_any = true;
    const BatteryState state = StateOf(CleanAttribute(supply.folder / "status"));
    if (state == BatteryState::kDischarging) return false;
    is_kept |= state != BatteryState::kUnknown;
  }
  if (is_any && !is_kept) return std::nullopt;
  return true;
}

std::vector<Path> BatteryFolders(const Path& root) {
  std::vector<Path> folders;
  for (PowerSupply& supply : ListPowerSupplies(root)) {
    if (IsBattery(supply)) folders.push_back(std::move(supply.folder));
  }
  return folders;
}

}  // namespace

Battery BatteryOf(const BatteryAttributes& attributes) noexcept {
  const Amount voltage =
      attributes.voltage_min_design.value_or(0) > 0 ? attributes.voltage_min_design : attributes.voltage_now;
  Battery battery;
  battery.remaining = Energy(attributes.energy_now, attributes.charge_now, voltage);
  battery.full = Energy(attributes.energy_full, attributes.charge_full, voltage);
  battery.design = Energy(attributes.energy_full_design, attributes.charge_full_design, voltage);
  battery.voltage = Milli(attributes.voltage_now);
  battery.rate = Rate(attributes);
  return battery;
}

std::vector<Battery> SysfsBatteries::Batteries() const {
  std::vector<Battery> batteries;
  for (const Path& folder : BatteryFolders(root_)) {
    Battery battery = BatteryOf(ReadAttributes(folder));
    battery.manufacturer = CleanAttribute(folder / "manufacturer");
    battery.name = CleanAttribute(folder / "model_name");
    batteries.push_back(std::move(battery));
  }
  return batteries;
}

std::optional<bool> SysfsBatteries::IsOnMains() const {
  if (!Exists(root_ / "sys/class/power_supply")) return std::nullopt;
  const auto supplies = ListPowerSupplies(root_);
  bool is_mains_off = false;
  for (const PowerSupply& supply : supplies) {
    if (!IsFeed(supply)) continue;
    const auto online = NumberAttribute(supply.folder / "online");
    if (online.value_or(0) > 0) return true;
    is_mains_off |= supply.type == "Mains" && online;
  }
  if (is_mains_off) return false;
  return IsOnMainsByBatteries(supplies);
}

std::optional<ChargeThresholds> SysfsBatteries::Thresholds() const {
  return ReadChargeControl(BatteryFolders(root_));
}

bool SysfsBatteries::SetThresholds(const ChargeThresholds& thresholds) const {
  return SetChargeControl(BatteryFolders(root_), thresholds);
}

bool QueryBattery(void* /*device*/, unsigned int information_id, Answer& answer) {
  return AnswerBattery(SysfsBatteries(SystemRoot()), information_id, answer);
}

bool SetBattery(void* /*device*/, unsigned int information_id, std::span<const std::uint8_t> value) {
  return TakeBatterySetting(SysfsBatteries(SystemRoot()), information_id, value);
}

}  // namespace ostrine
