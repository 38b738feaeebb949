/// Runs another program's command line for its output, to compare it with ours.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace ostrine::test {

/// What `command` prints, in English; nothing when it cannot be run or fails.
inline std::optional<std::string> OutputOf(const std::string& command) {
  std::FILE* const pipe = popen(("LC_ALL=C " + command + " 2>/dev/null").c_str(), "r");
  if (pipe == nullptr) return std::nullopt;
  std::string output;
  for (int letter = std::getc(pipe); letter != EOF; letter = std::getc(pipe))
    output += static_cast<char>(letter);
  return pclose(pipe) == 0 ? std::optional(output) : std::nullopt;
}

}  // namespace ostrine::test
