#pragma once

#include <string>
#include <vector>

namespace report {

/// The whole program: does what `arguments`, without the program's name, ask for, and returns the exit
/// status.
int Run(const std::vector<std::string>& arguments) noexcept;

}  // namespace report
