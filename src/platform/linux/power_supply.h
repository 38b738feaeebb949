/// What the system's power supplies, taken together, say about the machine's power. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/os/system_status.h"

namespace velmora::os {

/// One supply as the kernel shows it; what it does not tell is empty or absent. Energies are in microwatt
/// hours, charges in microampere hours, powers in microwatts, currents in microamperes, voltages in
/// microvolts.
struct PowerSupply {
  std::string type;    ///< "Battery", "Mains", "USB", "Wireless", "UPS"...
  std::string scope;   ///< "Device" for the battery of a mouse or the like
  std::string status;  ///< of a battery: "Charging", "Discharging", "Full", "Not charging", "Unknown"
  std::optional<std::int64_t> present;
  std::optional<std::int64_t> online;
  std::optional<std::int64_t> capacity;  ///< percent
  std::optional<std::int64_t> energy_now;
  std::optional<std::int64_t> energy_full;
  std::optional<std::int64_t> charge_now;
  std::optional<std::int64_t> charge_full;
  std::optional<std::int64_t> power_now;
  std::optional<std::int64_t> current_now;
  std::optional<std::int64_t> voltage_now;
};

/// The power status that `supplies` amount to.
///
/// Supplies of accessories and bays without a battery are left out. Several batteries count as one, by their
/// energy; batteries that tell only a percentage by the mean of the percentages. A machine without a battery
/// is on mains. The times are known only while a battery that tells its rate is discharging.
PowerStatus SummarisePower(std::span<const PowerSupply> supplies) noexcept;

/// What a system that does not show its supplies is known to say: nothing.
PowerStatus UnknownPower() noexcept;

}  // namespace velmora::os
