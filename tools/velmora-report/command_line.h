#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace report {

/// The Windows command line that a program's start-up code splits into exactly `arguments`, the first of
/// which names the program and holds no quote.
std::wstring CommandLine(const std::vector<std::wstring>& arguments);

}  // namespace report
