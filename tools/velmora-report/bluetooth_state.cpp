#include "velmora-report/bluetooth_state.h"

#include <velmora/bluetooth.h>

namespace report {

BluetoothState ReadBluetoothState() {
  CBluetooth bluetooth;
  BluetoothState state{.hardware_id = bluetooth.GetHardwareID()};
  if (!state.hardware_id.empty()) {
    state.problem_code = bluetooth.GetDeviceErrorState();
    return state;
  }
  unsigned long usb_problem_code = 0;
  state.is_unknown = bluetooth.IsInUnKownClass() != 0;
  state.is_failing_in_usb = bluetooth.IsInUSBClassEx(usb_problem_code) != 0;
  state.usb_problem_code = usb_problem_code;
  return state;
}

std::string Sentence(const BluetoothState& state) {
  constexpr std::uint64_t kDisabled = 22;
  if (!state.hardware_id.empty()) {
    if (state.problem_code == 0) return "The adapter works.";
    if (state.problem_code == kDisabled) return "The adapter is switched off.";
    return "The adapter fails with problem code " + std::to_string(state.problem_code) + ".";
  }
  if (state.is_unknown) return "The adapter is lost: it stands among the devices without a driver.";
  if (state.is_failing_in_usb) {
    return "No adapter is there, but a USB device fails with problem code " +
           std::to_string(state.usb_problem_code) + ": that may be it.";
  }
  return "There is no adapter.";
}

}  // namespace report
