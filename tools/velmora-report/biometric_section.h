#pragma once

#include "velmora-report/report.h"

namespace report {

/// The fingerprint reader and the platform's own devices, and which of them do not work.
Section BiometricSection();

}  // namespace report
