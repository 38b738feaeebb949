#include "ostrine/windows/thermal_zone.h"

namespace ostrine {

std::optional<std::int64_t> ThermalZoneTemperature(std::uint32_t reading) noexcept {
  constexpr std::int64_t kFreezingPoint = 273'150;
  constexpr std::int64_t kLeast = -40'000;
  constexpr std::int64_t kMost = 125'000;
  if (reading == 2731 || reading == 2732) return std::nullopt;
  const std::int64_t temperature = static_cast<std::int64_t>(reading) * 100 - kFreezingPoint;
  if (temperature < kLeast || temperature > kMost) return std::nullopt;
  return temperature;
}

}  // namespace ostrine
