#pragma once

#include "velmora-report/report.h"

namespace report {

/// The mainboard and the BIOS.
Section BaseboardSection();

}  // namespace report
