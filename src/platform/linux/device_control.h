/// Device requests on the system whose file tree begins at a root folder; the root is "/" but in tests.
#pragma once

#include <filesystem>

#include "platform/os/device_control.h"

namespace velmora::os {

/// CreateFileW on `root`. The one Windows device that has a counterpart is the Bluetooth reset driver
/// "\\.\IBTRSTD", in any letter case: it is there while the system has a Bluetooth adapter, and takes the
/// request 0x002211FC, which switches that adapter off and on again. Whatever else is opened is not there.
Handle OpenDevice(const std::filesystem::path& root, const wchar_t* name);

}  // namespace velmora::os
