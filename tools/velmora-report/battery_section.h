#pragma once

#include "velmora-report/report.h"

namespace report {

/// What battery the machine has, how worn it is, and what it does now.
Section BatterySection();

}  // namespace report
