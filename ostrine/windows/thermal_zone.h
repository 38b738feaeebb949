/// The ACPI thermal zones' readings, as "MSAcpi_ThermalZoneTemperature" has them. Pure.
#pragma once

#include <cstdint>
#include <optional>

namespace ostrine {

/// Thousandths of a degree Celsius for `reading`, in tenths of a kelvin. None for a reading that a running
/// laptop cannot have: below -40 or above 125 degrees, and the freezing point itself in either of the forms
/// that it takes (2731, 2732), which is what firmware without a working sensor reports for ever.
std::optional<std::int64_t> ThermalZoneTemperature(std::uint32_t reading) noexcept;

}  // namespace ostrine
