#pragma once

#include "velmora-report/report.h"

namespace report {

/// Which internal network cards the machine has, of which kind they are, and whether they work.
Section NetworkCardSection();

}  // namespace report
