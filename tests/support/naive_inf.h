#pragma once

#include <optional>
#include <sstream>
#include <string>

namespace velmora::devices::test {

/// The INF scan as its rule is told: the whole file in memory, line by line.
inline std::optional<std::string> NaiveForeignLine(const std::string& file) {
  std::istringstream lines(file);
  bool is_in_models = false;
  for (std::string line; std::getline(lines, line);) {
    const bool names_model = line.find("AUDIO\\FUNC_01&VEN_10EC") != std::string::npos;
    if (!names_model && is_in_models) return std::nullopt;
    if (!names_model) continue;
    is_in_models = true;
    if (line.find("SUBSYS_7B2D") == std::string::npos) return line;
  }
  return std::nullopt;
}

}  // namespace velmora::devices::test
