#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace simulator {

/// A text that the firmware or the system may hold; a query for an absent one fails.
using Text = std::optional<std::string>;

/// Bytes as they cross; a machine file has them as pairs of hexadecimal digits, blanks between pairs allowed.
struct Bytes {
  std::vector<std::uint8_t> data;

  bool operator==(const Bytes&) const = default;
};

/// The bytes as a machine file has them: "00 1A 2B".
std::string HexText(const Bytes& bytes);

/// An error number that a call of the system gives. 0: the call succeeds.
using Error = std::uint32_t;

}  // namespace simulator
