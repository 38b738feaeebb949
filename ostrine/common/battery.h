/// Device class 8: the batteries, taken as one, and the mains.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "ostrine/common/answer.h"
#include "ostrine/common/battery_rules.h"
#include "ostrine/common/charge_thresholds.h"

namespace ostrine {

/// Information ids of the class beside those of BatteryNumber.
enum class BatteryFact : unsigned int {
  kManufacturer = 1,  ///< text
  kName = 2,          ///< text
  kAcLine = 6,        ///< 1 on mains, 0 on batteries
  /// Read with a buffer of two bytes, which is how it differs from the rate of discharging.
  kThresholdsToRead = 9,
  kThresholdsToSet = 12,
};

/// What the running system tells about its power. Nothing is kept: every call asks the system anew.
class BatterySystem {
 public:
  virtual ~BatterySystem() = default;

  /// The machine's own batteries, in an order that stays; phantoms may be among them.
  virtual std::vector<Battery> Batteries() const = 0;

  /// Whether the machine runs on mains; nothing when the system does not tell.
  virtual std::optional<bool> IsOnMains() const = 0;

  /// Nothing when the machine has no thresholds, or the system does not show them.
  virtual std::optional<ChargeThresholds> Thresholds() const = 0;

  /// Sets possible thresholds and makes sure that they stand. False, and the old ones stand, when the machine
  /// has none or does not take them.
  virtual bool SetThresholds(const ChargeThresholds& thresholds) const = 0;
};

/// Answers the information ids of the class; `device` plays no part. Each system has its own.
bool QueryBattery(void* device, unsigned int information_id, Answer& answer);

/// Takes the thresholds, the one setting of the class. Each system has its own.
bool SetBattery(void* device, unsigned int information_id, std::span<const std::uint8_t> value);

/// The same for what `system` tells. A fact that it does not know is a failure.
bool AnswerBattery(const BatterySystem& system, unsigned int information_id, Answer& answer);
bool TakeBatterySetting(const BatterySystem& system, unsigned int information_id,
                        std::span<const std::uint8_t> value);

}  // namespace ostrine
