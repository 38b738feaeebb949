#include "ostrine/common/memory.h"
#include "ostrine/common/firmware.h"

namespace ostrine {

MemoryModules ReadMemoryModulesOfMachine() {
  const auto table = ReadFirmwareTable();
  if (!table) return std::nullopt;
  return ReadMemoryModules(table->View());
}

}  // namespace ostrine
