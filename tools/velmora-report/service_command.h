#pragma once

#include "velmora-report/commands.h"

namespace report {

extern const Command kServiceStart;
extern const Command kServiceStop;

}  // namespace report
