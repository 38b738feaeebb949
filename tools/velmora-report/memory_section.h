#pragma once

#include "velmora-report/report.h"

namespace report {

/// Which memory modules the machine has, and how much memory is in use.
Section MemorySection();

}  // namespace report
