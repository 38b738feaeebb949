/// Rescanning of the hardware of the system whose file tree begins at a root folder; the root is "/" but in
/// tests.
#pragma once

#include <filesystem>

#include "platform/os/configuration_manager.h"

namespace velmora::os {

/// Has the PCI bus looked through for functions that are there but unknown, then every device of the PCI, USB
/// and HID buses that has no driver offered to the drivers again, and returns when all of that is done.
///
/// Succeeds when the PCI bus, or on a machine without one the USB bus, took the request. Devices whose port
/// or authorisation somebody switched off stay off: that is a decision, not a fault.
ConfigResult RescanHardware(const std::filesystem::path& root);

}  // namespace velmora::os
