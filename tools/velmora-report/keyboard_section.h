#pragma once

#include "velmora-report/report.h"

namespace report {

/// The keyboard's name.
Section KeyboardSection();

}  // namespace report
