/// What the firmware says about a device's state.
#pragma once

#include "ostrine/linux/sysfs.h"

namespace ostrine {

/// The bits of a device's `status`. Without that file the firmware does not say, and all but `is_stated`
/// hold.
struct AcpiStatus {
  bool is_present = true;
  bool is_enabled = true;
  bool is_shown = true;
  bool is_working = true;
  bool is_stated = false;
};

inline AcpiStatus ReadAcpiStatus(const Path& node) {
  const auto status = NumberAttribute(node / "status");
  if (!status) return {};
  return {.is_present = (*status & 1) != 0,
          .is_enabled = (*status & 2) != 0,
          .is_shown = (*status & 4) != 0,
          .is_working = (*status & 8) != 0,
          .is_stated = true};
}

}  // namespace ostrine
