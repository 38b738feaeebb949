/// Device class 13: the memory modules.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "ostrine/common/answer.h"
#include "ostrine/common/memory_module.h"

namespace ostrine {

/// The facts of the class; the numbers are its information ids. All but the count are facts of one module.
enum class MemoryFact : unsigned int {
  kCount = 0,
  kLocator = 1,       ///< text
  kManufacturer = 2,  ///< text
  kSerialNumber = 3,  ///< text
  kPartNumber = 4,    ///< text
  kCapacity = 5,      ///< in bytes, a number of eight bytes
  kSpeed = 6,         ///< in MT/s, 0 where the firmware does not know
};

/// Gives a table of the modules: eight bytes, the second four of which are the number of modules, then
/// sixteen bytes a module, with the module's number at offset 8. Fails where the modules cannot be read.
bool PrepareMemory(void** table);

/// Answers the information ids of MemoryFact: the count for no device, the others for a module's place in the
/// table. Fails for a module that is not in that place any more.
bool QueryMemory(void* device, unsigned int information_id, Answer& answer);

/// What both functions do with the `modules` that the machine has now; nothing where they cannot be read.
using MemoryModules = std::optional<std::vector<MemoryModule>>;
bool MakeMemoryTable(const MemoryModules& modules, void** table);
bool AnswerMemory(const MemoryModules& modules, const void* device, unsigned int information_id,
                  Answer& answer);

/// The modules of this machine, read afresh. Each system has its own.
MemoryModules ReadMemoryModulesOfMachine();

}  // namespace ostrine
