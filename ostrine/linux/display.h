/// The display that the user looks at, below a root folder, by what the kernel noted when it was connected
/// and switched on. A card that sleeps has no display and is left alone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ostrine/common/edid.h"
#include "ostrine/common/video.h"
#include "ostrine/linux/sysfs.h"

namespace ostrine {

/// Folder of the connector: of those that have a display which is on, the built-in one, else the first. Empty
/// when there is none.
Path FindConnector(const Path& root);

/// Size of the picture: the mode that the connected display asks for, which the kernel lists first and
/// systems choose; on a machine without connectors that of its frame buffer.
std::optional<DisplaySize> ReadDisplaySize(const Path& root);

/// By the display's own word, where the picture has the size that the display is made for.
std::optional<std::uint32_t> ReadDisplayRate(const Path& root);

/// Of the console's frame buffer.
std::optional<std::uint32_t> ReadDisplayDepth(const Path& root);

std::optional<std::string> ReadMonitorCaption(const Path& root);

}  // namespace ostrine
