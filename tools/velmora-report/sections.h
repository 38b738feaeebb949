#pragma once

#include "velmora-report/report.h"

namespace report {

/// Asks the library for everything that the program tells, section after section.
Report ReadMachine();

}  // namespace report
