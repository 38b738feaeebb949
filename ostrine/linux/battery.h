/// The batteries as the kernel's power supplies show them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ostrine/common/battery.h"
#include "ostrine/linux/sysfs.h"

namespace ostrine {

/// What the kernel says of one battery, as it says it: energies in microwatt hours, charges in microampere
/// hours, powers in microwatts, currents in microamperes, voltages in microvolts.
struct BatteryAttributes {
  std::string status;  ///< "Charging", "Discharging", "Full", "Not charging", "Unknown"
  std::optional<std::int64_t> energy_now;
  std::optional<std::int64_t> energy_full;
  std::optional<std::int64_t> energy_full_design;
  std::optional<std::int64_t> charge_now;
  std::optional<std::int64_t> charge_full;
  std::optional<std::int64_t> charge_full_design;
  std::optional<std::int64_t> power_now;
  std::optional<std::int64_t> current_now;
  std::optional<std::int64_t> voltage_now;
  std::optional<std::int64_t> voltage_min_design;
};

/// The battery's numbers; its texts are left empty. A battery that counts charge is taken at its design
/// voltage, by which its maker and other systems count it too and which does not change from one question to
/// the next, and only without one at its present voltage. Numbers below zero and those that no battery has
/// are left out.
Battery BatteryOf(const BatteryAttributes& attributes) noexcept;

/// The power below a root folder.
class SysfsBatteries : public BatterySystem {
 public:
  explicit SysfsBatteries(Path root) : root_(std::move(root)) {}

  std::vector<Battery> Batteries() const override;

  /// Mains and chargers on USB ports count. Without one that tells, what the batteries do; a machine that has
  /// neither runs on mains.
  std::optional<bool> IsOnMains() const override;

  std::optional<ChargeThresholds> Thresholds() const override;
  bool SetThresholds(const ChargeThresholds& thresholds) const override;

 private:
  Path root_;
};

}  // namespace ostrine
