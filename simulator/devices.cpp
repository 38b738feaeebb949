/// What removal and rescans make of devices.
#include "simulator/sections/devices.h"

namespace simulator {

bool IsPresent(const Device& device) {
  if (!device.rescans_since_removal) return true;
  return device.after_removal.returns && *device.rescans_since_removal >= device.after_removal.returns_after;
}

std::uint32_t TakeProblemCode(Device& device) {
  const std::uint32_t code = PresentProblemCode(device);
  auto& next = device.next_problem_codes;
  if (!next.empty()) next.erase(next.begin());
  return code;
}

std::uint32_t PresentProblemCode(const Device& device) {
  if (!device.next_problem_codes.empty()) return device.next_problem_codes.front();
  const auto& heals_after = device.after_removal.heals_after;
  const bool is_healed =
      device.rescans_since_removal && heals_after && *device.rescans_since_removal >= *heals_after;
  return is_healed ? 0 : device.problem_code;
}

Error Remove(Device& device) {
  if (device.removal_error == 0) device.rescans_since_removal = 0;
  return device.removal_error;
}

void Rescan(std::vector<Device>& devices) {
  for (auto& device : devices) {
    if (device.rescans_since_removal) ++*device.rescans_since_removal;
  }
}

}  // namespace simulator
