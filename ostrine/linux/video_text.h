/// Texts of the kernel about video cards and displays. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ostrine/common/video.h"

namespace ostrine {

/// Size of the largest prefetchable memory region among the six of a PCI function, from its `resource` file
/// (a line "start end flags" each, hexadecimal); nothing when it has none. It is the window through which the
/// processor sees the card's memory.
std::optional<std::uint64_t> LargestWindow(std::string_view resource);

/// The picture size at the beginning of a list of modes: "1920x1080" in its first line, with or without
/// letters behind it.
std::optional<DisplaySize> FirstMode(std::string_view modes);

/// A size with a comma, "1920,1080", as frame buffers have it.
std::optional<DisplaySize> ParseVirtualSize(std::string_view text);

/// The day on which the kernel was built, "2024-11-01", from what it says about that: either of
///     #1 SMP PREEMPT_DYNAMIC Debian 6.1.115-1 (2024-11-01)
///     #45-Ubuntu SMP Fri Nov  1 12:02:04 UTC 2024
///     #1 SMP Fri, 01 Nov 2024 22:12:51 +0000
/// Nothing for any other form.
std::optional<std::string> KernelBuildDate(std::string_view version);

/// Of which kind a connector of a card is, by its name below the card's ("card1-eDP-1"): the lower the more
/// likely is it the display that a laptop's user looks at. Nothing for a name that is not a connector's.
enum class ConnectorRank { kBuiltIn, kOuter, kVirtual };
std::optional<ConnectorRank> RankConnector(std::string_view name);

}  // namespace ostrine
