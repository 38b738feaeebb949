/// The repairs of device drivers.
#pragma once

#include "velmora-report/repair.h"

namespace report {

/// Uninstalls a device and waits until it is back and works.
extern const RepairVerb kResetVerb;

/// Uninstalls a device.
extern const RepairVerb kUninstallVerb;

/// Has the system look for hardware that it does not know.
extern const RepairVerb kRescanVerb;

}  // namespace report
