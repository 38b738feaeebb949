#include "ostrine/common/memory.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "platform/ostrine/device_record.h"

namespace ostrine {
namespace {

using velmora::hal::kMemoryEntrySize;
using velmora::hal::kTableHeadSize;

struct TableHead {
  std::uint32_t reserved = 0;
  std::uint32_t count = 0;
};
static_assert(sizeof(TableHead) == kTableHeadSize);

/// A module's place in the table, and what to recognise it by: later the machine may have other modules.
struct TableEntry {
  std::uint32_t count = 0;  ///< modules of the whole table
  std::uint32_t slot = 0;
  std::uint32_t number = 0;
  std::uint32_t zero = 0;
};
static_assert(sizeof(TableEntry) == kMemoryEntrySize && offsetof(TableEntry, number) == 8);

/// The module that `device` was made for; null where the machine does not have it any more, or never had.
const MemoryModule* FindModule(const std::vector<MemoryModule>& modules, const void* device) {
  TableEntry entry;
  std::memcpy(&entry, device, sizeof entry);
  if (entry.count != modules.size() || entry.number >= modules.size() || entry.zero != 0) return nullptr;
  const MemoryModule& module = modules[entry.number];
  return module.slot == entry.slot ? &module : nullptr;
}

bool AnswerModule(const MemoryModule& module, MemoryFact fact, Answer& answer) {
  switch (fact) {
    case MemoryFact::kLocator:
      return answer.NarrowText(module.locator);
    case MemoryFact::kManufacturer:
      return answer.NarrowText(module.manufacturer);
    case MemoryFact::kSerialNumber:
      return answer.NarrowText(module.serial_number);
    case MemoryFact::kPartNumber:
      return answer.NarrowText(module.part_number);
    case MemoryFact::kCapacity:
      return module.capacity && answer.LongNumber(*module.capacity);
    case MemoryFact::kSpeed:
      return answer.Number(module.speed);
    case MemoryFact::kCount:
      break;
  }
  return false;
}

}  // namespace

bool PrepareMemory(void** table) { return MakeMemoryTable(ReadMemoryModulesOfMachine(), table); }

bool QueryMemory(void* device, unsigned int information_id, Answer& answer) {
  return AnswerMemory(ReadMemoryModulesOfMachine(), device, information_id, answer);
}

bool MakeMemoryTable(const MemoryModules& modules, void** table) {
  constexpr std::size_t kMostModules = 0xFFFF;  // the firmware tells structures apart by sixteen bits
  if (!modules || table == nullptr || modules->size() > kMostModules) return false;
  const auto count = static_cast<std::uint32_t>(modules->size());
  auto* const bytes = static_cast<std::uint8_t*>(std::malloc(kTableHeadSize + kMemoryEntrySize * count));
  if (bytes == nullptr) return false;
  const TableHead head{.count = count};
  std::memcpy(bytes, &head, sizeof head);
  for (std::uint32_t i = 0; i < count; ++i) {
    const TableEntry entry{.count = count, .slot = (*modules)[i].slot, .number = i};
    std::memcpy(bytes + kTableHeadSize + kMemoryEntrySize * i, &entry, sizeof entry);
  }
  *table = bytes;
  return true;
}

bool AnswerMemory(const MemoryModules& modules, const void* device, unsigned int information_id,
                  Answer& answer) {
  if (!modules) return false;
  const auto fact = static_cast<MemoryFact>(information_id);
  if (device == nullptr) {
    return fact == MemoryFact::kCount && answer.Number(static_cast<std::uint32_t>(modules->size()));
  }
  const MemoryModule* const module = FindModule(*modules, device);
  return module != nullptr && AnswerModule(*module, fact, answer);
}

}  // namespace ostrine
