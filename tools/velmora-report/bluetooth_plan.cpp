#include "velmora-report/bluetooth_plan.h"

#include "velmora-report/utf8.h"

namespace report {
namespace {

constexpr std::uint64_t kDisabledProblem = 22;

}  // namespace

BluetoothRemedy RemedyFor(const BluetoothState& state) {
  if (!state.hardware_id.empty()) {
    const bool works_or_is_off = state.problem_code == 0 || state.problem_code == kDisabledProblem;
    return works_or_is_off ? BluetoothRemedy::kNotNeeded : BluetoothRemedy::kDriverRepair;
  }
  if (state.is_unknown) return BluetoothRemedy::kRescan;
  return state.is_failing_in_usb ? BluetoothRemedy::kUsbRepair : BluetoothRemedy::kNone;
}

std::string Intention(BluetoothRemedy remedy) {
  switch (remedy) {
    case BluetoothRemedy::kRescan:
      return "have the system look for hardware";
    case BluetoothRemedy::kUsbRepair:
      return "uninstall the first USB device that fails and have the system look for hardware";
    default:
      return {};
  }
}

std::string Advice(BluetoothRemedy remedy, const BluetoothState& state) {
  switch (remedy) {
    case BluetoothRemedy::kNotNeeded:
      return state.problem_code == kDisabledProblem ? "Switch it on where it was switched off." : "";
    case BluetoothRemedy::kDriverRepair:
      return "Its driver may help itself: repair reset --kind bluetooth --id \"" + ToUtf8(state.hardware_id) +
             "\".";
    case BluetoothRemedy::kNone:
      return "Nothing here could be it: it may be switched off in the firmware, or broken.";
    default:
      return {};
  }
}

}  // namespace report
