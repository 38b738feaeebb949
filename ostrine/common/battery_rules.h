/// What several batteries amount to as the one that the battery's class reports. Pure functions.
///
/// Units: energies in mWh, powers in mW, voltages in mV.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace ostrine {

/// One battery as it reports itself. What it does not tell is absent; a marker of the system's battery
/// interface that stands for "unknown" may stand in a number and is told from one here.
struct Battery {
  std::string manufacturer;
  std::string name;
  std::optional<std::uint32_t> remaining;
  std::optional<std::uint32_t> full;
  std::optional<std::uint32_t> design;
  std::optional<std::uint32_t> voltage;
  std::optional<std::int32_t> rate;  ///< above zero while charging, below while discharging

  bool operator==(const Battery&) const = default;
};

/// The numbers of the class that come from the batteries; the values are the information ids.
enum class BatteryNumber : unsigned int {
  kPresent = 0,
  kRemaining = 3,
  kFull = 4,
  kDesign = 5,
  kVoltage = 7,
  kLoss = 8,  ///< hundredths of a percent of the design capacity that are lost
  kDischargeRate = 9,
  kChargeRate = 10,
};

/// `number` unless it is one that no battery has: the markers 0xFFFFFFFF and 0x80000000, and all else from
/// 0x80000000 on.
std::optional<std::uint32_t> KnownNumber(std::uint64_t number) noexcept;

/// Whether the entry is one of an empty bay or of a battery that does not answer: it tells neither a capacity
/// nor a voltage. Such a one is not counted.
bool IsPhantom(const Battery& battery) noexcept;

/// What `batteries` together have for `number`; nothing when there is none that is no phantom.
///
/// Energies and rates are added up, and nothing comes of them unless every battery knows its own. The voltage
/// is that of the first battery which tells it: batteries are not connected in a row. A battery that holds
/// more than its design has lost nothing.
std::optional<std::uint32_t> CombinedNumber(std::span<const Battery> batteries,
                                            BatteryNumber number) noexcept;

/// The texts of the class are those of the first battery that has them; empty when none has.
std::string CombinedManufacturer(std::span<const Battery> batteries);
std::string CombinedName(std::span<const Battery> batteries);

/// What a battery says of itself beside a rate.
enum class BatteryState { kUnknown, kCharging, kDischarging, kIdle };

/// The rate with the sign that the state gives it. Drivers and firmware disagree about the sign, not about
/// the state; only where the state is unknown the sign is believed. An idle battery has no rate, whatever was
/// left standing.
std::optional<std::int32_t> SignedRate(std::int64_t rate, BatteryState state) noexcept;

}  // namespace ostrine
