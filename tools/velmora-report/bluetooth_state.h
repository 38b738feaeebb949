/// How the machine's Bluetooth adapter stands, as the library tells it.
#pragma once

#include <cstdint>
#include <string>

namespace report {

struct BluetoothState {
  std::wstring hardware_id;            ///< empty while no adapter stands in the Bluetooth class
  std::uint64_t problem_code = 0;      ///< of the adapter; 0 works, 22 is switched off
  bool is_unknown = false;             ///< lost, and among the devices without a driver
  bool is_failing_in_usb = false;      ///< lost, and a device of the USB class fails
  std::uint64_t usb_problem_code = 0;  ///< that device's
};

BluetoothState ReadBluetoothState();

/// The state in one sentence.
std::string Sentence(const BluetoothState& state);

}  // namespace report
