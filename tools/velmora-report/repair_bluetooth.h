/// The repair of a Bluetooth adapter that is lost or does not answer.
#pragma once

#include "velmora-report/repair.h"

namespace report {

extern const RepairVerb kBluetoothVerb;

}  // namespace report
