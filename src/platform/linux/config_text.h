/// Values in the text files by which services and desktops keep their settings. Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora::os {

/// The value of the last line "KEY=value", without blanks and quotes around it; empty when there is none.
/// What follows "#" or ";" at the beginning of a line is a comment.
std::string KeyValue(std::string_view text, std::string_view key);

/// The same of the lines that stand below "[section]", of which there may be several.
std::string SectionValue(std::string_view text, std::string_view section, std::string_view key);

}  // namespace velmora::os
