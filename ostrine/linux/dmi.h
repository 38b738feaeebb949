/// The firmware's tables and texts as the kernel shows them, below a root folder.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "ostrine/common/baseboard.h"
#include "ostrine/common/firmware.h"

namespace ostrine {

/// The table below `root`: readable by the superuser only.
std::optional<FirmwareTable> ReadFirmwareTableBelow(const std::filesystem::path& root);

/// Text of `fact` below `root`: of the table, or, where that cannot be read, the kernel's own copy. Of the
/// copies the serial number too is the superuser's alone.
std::optional<std::string> ReadBaseboardTextBelow(const std::filesystem::path& root, BaseboardFact fact);

}  // namespace ostrine
