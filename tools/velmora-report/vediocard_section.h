#pragma once

#include "velmora-report/report.h"

namespace report {

/// Which video cards the machine has, and what its display shows.
Section VediocardSection();

}  // namespace report
