#pragma once

#include "velmora-report/report.h"

namespace report {

/// Which built-in devices the firmware has switched on.
Section FirmwareSwitchesSection();

}  // namespace report
