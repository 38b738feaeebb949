#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace simulator {

/// Where the values of a JSON text stand: JSON pointer ("/devices/3/name") to line number, counted from 1.
using JsonLines = std::map<std::string, int, std::less<>>;

/// The text cannot be taken as JSON: at which line, at which value, and why.
struct JsonSyntaxError : std::runtime_error {
  JsonSyntaxError(int at_line, std::string at_path, const std::string& what)
      : std::runtime_error(what), line(at_line), path(std::move(at_path)) {}
  int line;
  std::string path;
};

/// Finds the line of every value. Throws JsonSyntaxError for text that is not JSON, names a field twice or
/// nests more than 32 values.
JsonLines FindJsonLines(std::string_view json);

}  // namespace simulator
