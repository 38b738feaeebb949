/// How Windows's own forms of a video card's facts read. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ostrine/common/video_rules.h"

namespace ostrine {

/// What a display adapter's first hardware ID says about it: one on PCI has a vendor; one of Hyper-V's bus is
/// that virtual machine's own; one that the firmware describes is a part of the processor; any other is
/// software.
VideoCardTraits TraitsOfHardwareId(std::wstring_view hardware_id);

/// Memory in bytes from the two values that drivers write: the one of eight bytes wins, as the one of four
/// cannot hold more than 4 GiB. Nothing when neither has its length, or is 0.
std::optional<std::uint64_t> MemoryOfDriverValues(std::span<const std::uint8_t> long_size,
                                                  std::span<const std::uint8_t> short_size);

/// "2022-02-14" for a time in units of 100 nanoseconds since 1601; empty for 0, which stands for none, and
/// for a year of more than four digits.
std::string DateText(std::uint64_t file_time);

/// Registry path, below "Enum", of the monitor that the display system names by its interface:
/// "\\?\DISPLAY#AUO3DED#4&1234&0&UID265988#{...}" is "DISPLAY\AUO3DED\4&1234&0&UID265988". Empty for a name
/// of another form.
std::wstring MonitorInstance(std::wstring_view interface_name);

}  // namespace ostrine
