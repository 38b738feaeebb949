/// The two attributes by which some drivers let the charge of a battery be limited.
#pragma once

#include <optional>
#include <vector>

#include "ostrine/common/charge_thresholds.h"
#include "ostrine/linux/sysfs.h"

namespace ostrine {

/// The thresholds of the first of these batteries that has both. Nothing when none has, when they cannot be
/// read, and when what stands there is not possible.
std::optional<ChargeThresholds> ReadChargeControl(const std::vector<Path>& batteries);

/// Sets the thresholds of every battery that has both, in an order in which the start never stands above the
/// stop, and reads them back. False, and the old ones stand again, when none has, when they may not be
/// written, and when the driver does not take them or makes others of them. No file is ever made.
bool SetChargeControl(const std::vector<Path>& batteries, const ChargeThresholds& wanted);

}  // namespace ostrine
