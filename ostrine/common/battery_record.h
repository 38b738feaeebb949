/// The records of the system's battery interface, as their bytes. Pure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "ostrine/common/battery_rules.h"

namespace ostrine {

inline constexpr std::size_t kBatteryInformationSize = 36;
inline constexpr std::size_t kBatteryStatusSize = 16;

/// The battery that its information and its status describe; its texts are left empty. Without a whole status
/// what it holds, its voltage and its rate are unknown. A battery that counts in percent has no energies.
///
/// None when the information is cut short, and for a battery that is none of the machine's own: another
/// device's, or one that only bridges a power failure.
std::optional<Battery> BatteryOfRecords(std::span<const std::uint8_t> information,
                                        std::span<const std::uint8_t> status) noexcept;

}  // namespace ostrine
