#pragma once

#include "velmora-report/report.h"

namespace report {

/// The Bluetooth adapter with its state, and the remote devices. With an adapter there is, this takes the
/// time of an inquiry.
Section BluetoothSection();

}  // namespace report
