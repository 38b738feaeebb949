#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace simulator {

/// Where the values of a JSON text stand: JSON pointer ("/devices/3/name") to line number, counted from 1.
using JsonLines = std::map<std::string, int, std::less<>>;

/// The text is no JSON.
struct JsonSyntaxError : std::runtime_error {
  JsonSyntaxError(int at_line, const std::string& what) : std::runtime_error(what), line(at_line) {}
  int line;
};

/// Finds the line of every value. Throws JsonSyntaxError.
JsonLines FindJsonLines(std::string_view json);

}  // namespace simulator
