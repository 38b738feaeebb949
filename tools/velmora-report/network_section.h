#pragma once

#include "velmora-report/report.h"

namespace report {

/// The wireless adapter, its radio and its address, and whether the machine reaches the internet.
Section NetworkSection();

}  // namespace report
