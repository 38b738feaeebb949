/// A memory module, whoever told of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ostrine/common/smbios.h"

namespace ostrine {

struct MemoryModule {
  std::uint32_t slot = 0;  ///< tells the module's slot from the others; the firmware's handle or the like
  std::string locator;     ///< texts byte for byte as the firmware has them; empty where it has none
  std::string manufacturer;
  std::string serial_number;
  std::string part_number;
  std::optional<std::uint64_t> capacity;  ///< in bytes
  std::uint32_t speed = 0;                ///< in MT/s, 0 where the firmware does not know
};

/// The modules of a firmware's table in its order: of all memory devices those that are there and serve as
/// system memory, as far as the table tells.
std::vector<MemoryModule> ReadMemoryModules(const smbios::TableView& table);

}  // namespace ostrine
