#pragma once

#include "velmora-report/report.h"

namespace report {

/// All devices of the machine, class by class.
Section DevicesSection();

}  // namespace report
