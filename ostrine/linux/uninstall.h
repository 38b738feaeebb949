/// Taking a device out of the system.
#pragma once

#include <chrono>
#include <cstdint>

#include "ostrine/linux/device.h"

namespace ostrine {

/// Takes the device out, so that a rescan installs it afresh, and waits until it is gone.
///
/// A PCI function is removed from its bus. A USB device is taken from the driver that has configured it: its
/// interfaces and their drivers go, it is listed no more, and offering it to the drivers again brings it
/// back; the kernel's removal of a USB device would shut its port for good.
///
/// 0 when it is gone; 50 for a bus from which the kernel cannot take a device; 5 when the caller may not;
/// 0xE000020B when it has gone before; 31 when it is still there after `patience`, or the kernel has refused
/// for another reason. Touches no other file than the one that takes this device out, and creates none.
std::uint32_t RemoveDevice(const Device& device,
                           std::chrono::milliseconds patience = std::chrono::milliseconds(5000));

}  // namespace ostrine
