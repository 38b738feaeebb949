/// The remote Bluetooth devices that this machine knows.
#pragma once

#include <vector>

#include "ostrine/linux/device.h"

namespace ostrine {

/// Devices that are paired or connected, as the Bluetooth service lists them, in the order of its paths. None
/// when the service does not run or does not answer in time. The longest list that is read has 1024 devices.
std::vector<Device> ListRemoteBluetoothDevices(const Path& root);

}  // namespace ostrine
