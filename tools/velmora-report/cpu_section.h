#pragma once

#include "velmora-report/report.h"

namespace report {

/// What processor the machine has and how busy it is.
Section CpuSection();

}  // namespace report
