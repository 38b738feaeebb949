/// Taking a device out of the system.
#pragma once

#include <chrono>
#include <cstdint>

#include "ostrine/linux/device.h"

namespace ostrine {

/// Removes the device, so that a rescan of its bus installs it afresh, and waits until it is gone.
///
/// 0 when it is gone; 50 for a bus from which the kernel cannot remove a device (only PCI functions and whole
/// USB devices can be); 5 when the caller may not; 0xE000020B when the device has gone before; 31 when it is
/// still there after `patience`, or the kernel has refused for another reason. Touches no other file than the
/// device's own `remove`, and creates none.
std::uint32_t RemoveDevice(const Device& device,
                           std::chrono::milliseconds patience = std::chrono::milliseconds(5000));

}  // namespace ostrine
