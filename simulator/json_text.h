#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simulator {

/// One value of a JSON text. Which members count follows from its kind.
struct JsonValue {
  enum class Kind { kNull, kFlag, kNatural, kNegative, kFraction, kText, kList, kObject };

  Kind kind = Kind::kNull;
  bool flag = false;
  std::uint64_t natural = 0;
  std::int64_t negative = 0;
  std::string text;
  std::vector<JsonValue> values;  ///< of a list or an object, in their order

  std::string key;   ///< by which an object has it
  std::string path;  ///< JSON pointer, such as "/devices/3/name"
  int line = 1;      ///< where it stands, counted from 1
};

/// The text cannot be taken as JSON, or not as what it shall be: at which line, at which value, and why.
struct JsonError : std::runtime_error {
  JsonError(int at_line, std::string at_path, const std::string& what)
      : std::runtime_error(what), line(at_line), path(std::move(at_path)) {}
  JsonError(const JsonValue& at, const std::string& what) : JsonError(at.line, at.path, what) {}
  int line;
  std::string path;
};

/// Throws JsonError for text that is not JSON, names a field twice or nests more than 32 values.
JsonValue ParseJson(std::string_view json);

/// The text as JSON has it, in quotes. Throws std::invalid_argument for text that is not UTF-8.
std::string JsonQuoted(const std::string& text);

}  // namespace simulator
