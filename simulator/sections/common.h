#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

/// A text that the firmware or the system may hold; a query for an absent one fails.
using Text = std::optional<std::string>;

}  // namespace simulator
