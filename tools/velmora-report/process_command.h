#pragma once

#include "velmora-report/commands.h"

namespace report {

extern const Command kProcessEnd;

}  // namespace report
