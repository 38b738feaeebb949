#pragma once

#include "velmora-report/bluetooth_state.h"

namespace report {

/// What brings an adapter back that stands as it does.
enum class BluetoothRemedy {
  kNotNeeded,     ///< it is there, and works or can be switched on
  kDriverRepair,  ///< it is there and fails: its driver is to be repaired, not the way to it
  kRescan,        ///< it lost its driver: looking for hardware may find it one
  kUsbRepair,     ///< a USB device fails that may be it: that is uninstalled and looked for again
  kNone,          ///< there is nothing that could be it
};

BluetoothRemedy RemedyFor(const BluetoothState& state);

/// What the remedy does, after "Would "; empty for one that does nothing.
std::string Intention(BluetoothRemedy remedy);

/// Why the remedy does nothing, as a sentence; empty for one that does something, and for an adapter that
/// works.
std::string Advice(BluetoothRemedy remedy, const BluetoothState& state);

}  // namespace report
