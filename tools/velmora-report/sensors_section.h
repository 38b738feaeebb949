#pragma once

#include "velmora-report/report.h"

namespace report {

/// What the machine's sensors read now.
Section SensorsSection();

}  // namespace report
