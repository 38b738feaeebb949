#pragma once

#include "velmora-report/commands.h"

namespace report {

extern const Command kFilesList;
extern const Command kFilesPrune;

}  // namespace report
