#pragma once

#include "velmora-report/report.h"

namespace report {

/// The audio device, its state, and where its driver comes from.
Section AudioSection();

}  // namespace report
