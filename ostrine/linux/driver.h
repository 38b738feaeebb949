/// Who drives a device, and in what state it is.
#pragma once

#include <cstdint>
#include <string>

#include "ostrine/linux/device.h"

namespace ostrine {

struct Driver {
  std::string name;    ///< empty: none
  std::string module;  ///< empty: built into the kernel, or outside it
  Path program;        ///< a driver outside the kernel: its file
};

/// The driver that the device is bound to. Fingerprint readers on USB have theirs outside the kernel; it
/// counts as theirs when it is installed.
Driver DriverOf(const Path& root, const Device& device);

/// The version that the driver's module states, else that of the kernel which it is part of; empty without a
/// driver, and for one outside the kernel.
std::string DriverVersion(const Path& root, const Driver& driver);

/// When the driver's file was put where it is, in milliseconds since 1970 UTC; for a driver that is built
/// into the kernel, the kernel's list of such. 0 when the file cannot be found.
std::uint64_t DriverInstallTime(const Path& root, const Driver& driver);

/// The configuration manager's number for the device's state:
///   22  switched off: a USB device that is not authorised, a device that the firmware has disabled
///   10  cannot start: the firmware calls it broken, or the kernel's power management has failed on it
///    0  works: a driver is bound; a remote Bluetooth device; or what works without a driver (bridges, parts
///    of
///       the board, and firmware-described devices that the firmware does not call present in full)
///   28  no driver
std::uint32_t ProblemCode(const Path& root, const Device& device);

}  // namespace ostrine
