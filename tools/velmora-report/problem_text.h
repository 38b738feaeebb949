#pragma once

#include <cstdint>
#include <string>

namespace report {

/// What a configuration-manager problem code says, in a few words; "works" for 0, and for a code that is not
/// known that it is not.
std::string ProblemText(std::uint32_t code);

/// What a repair's error number says, in a few words.
std::string RepairErrorText(std::uint32_t error);

}  // namespace report
