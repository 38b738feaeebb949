#pragma once

#include "velmora-report/report.h"

namespace report {

/// Which fixed disks the machine has, and how full they are.
Section DiskSection();

}  // namespace report
