/// Power and memory of the system whose file tree begins at a root folder; the root is "/" but in tests.
#pragma once

#include <filesystem>

#include "platform/os/system_status.h"

namespace velmora::os {

/// GetSystemPowerStatus on `root`. A system that shows no supplies at all has an unknown status; one whose
/// supplies cannot be read is a failure.
bool ReadPowerStatus(const std::filesystem::path& root, PowerStatus& status);

/// GlobalMemoryStatusEx on `root`. The page file is what Windows calls so, memory and swap space together;
/// the virtual sizes are those of the calling process's address space.
bool ReadMemoryStatus(const std::filesystem::path& root, MemoryStatus& status);

}  // namespace velmora::os
