/// The memory modules as Linux lets them be read, below a root folder.
#pragma once

#include <filesystem>
#include <string_view>

#include "ostrine/common/memory.h"

namespace ostrine {

/// The modules of the firmware's table, which only the superuser may read; for everybody else those that the
/// device manager took from it when the machine started.
MemoryModules ReadMemoryModulesBelow(const std::filesystem::path& root);

/// The modules among the device manager's properties of the firmware's tables, lines such as
/// "E:MEMORY_DEVICE_0_LOCATOR=DIMM 0". Texts come without the blanks around them, and speeds past 65534 MT/s
/// are not known there. Nothing where the properties tell of no slot.
MemoryModules ParseMemoryProperties(std::string_view text);

}  // namespace ostrine
