#include "inventory/memory_load.h"

namespace velmora {

float UsedFraction(std::uint64_t total, std::uint64_t available) {
  constexpr std::uint64_t kSteps = 10000;
  if (total <= kSteps) return 0.0F;
  const auto free_steps = static_cast<std::uint32_t>(available / (total / kSteps));
  return static_cast<float>(1.0 - static_cast<double>(static_cast<float>(free_steps)) / 10000.0);
}

}  // namespace velmora
