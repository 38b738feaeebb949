/// The machine's power supplies in sysfs: batteries, mains, chargers on USB ports.
#pragma once

#include <string>
#include <vector>

#include "ostrine/linux/sysfs.h"

namespace ostrine {

struct PowerSupply {
  Path folder;       ///< free of links
  std::string type;  ///< as the kernel calls it: "Battery", "Mains", "USB"...
};

/// The supplies in the natural order of their names ("BAT0" first), which stays from one start to the next.
/// Left out are those of other devices, such as a mouse, and empty bays.
std::vector<PowerSupply> ListPowerSupplies(const Path& root);

}  // namespace ostrine
