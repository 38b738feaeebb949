#include "ostrine/linux/power_supplies.h"

#include <utility>

#include "ostrine/linux/bus_devices.h"

namespace ostrine {

std::vector<PowerSupply> ListPowerSupplies(const Path& root) {
  const Path devices = DevicesFolder(root);
  std::vector<PowerSupply> supplies;
  if (devices.empty()) return supplies;
  const Path entries = root / "sys/class/power_supply";
  for (const std::string& name : EntryNames(entries)) {
    Path folder = ResolveBelow(entries / name, devices);
    if (folder.empty() || CleanAttribute(folder / "scope") == "Device") continue;
    if (NumberAttribute(folder / "present").value_or(1) == 0) continue;
    std::string type = CleanAttribute(folder / "type");
    supplies.push_back({std::move(folder), std::move(type)});
  }
  return supplies;
}

}  // namespace ostrine
