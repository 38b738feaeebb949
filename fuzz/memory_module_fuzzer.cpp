// Any bytes as an SMBIOS table of memory modules and processors; what is read is asked for through the table
// of modules too.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "ostrine/common/memory.h"
#include "ostrine/common/processor_firmware.h"
#include "platform/ostrine/device_record.h"

namespace {

using namespace ostrine;

void Require(bool holds) {
  if (!holds) std::abort();
}

void AskEverything(const MemoryModules& modules) {
  void* raw = nullptr;
  Require(MakeMemoryTable(modules, &raw));
  const std::unique_ptr<void, decltype(&std::free)> table(raw, &std::free);
  for (std::size_t i = 0; i < modules->size(); ++i) {
    const void* const entry = static_cast<const std::uint8_t*>(raw) + velmora::hal::kTableHeadSize +
                              velmora::hal::kMemoryEntrySize * i;
    for (unsigned int id = 0; id <= 8; ++id) {
      std::array<std::uint8_t, 260> buffer{};
      Answer answer(buffer.data(), buffer.size(), nullptr);
      const bool succeeded = AnswerMemory(modules, entry, id, answer);
      const bool is_capacity = id == static_cast<unsigned int>(MemoryFact::kCapacity);
      Require(is_capacity || succeeded == (id >= 1 && id <= 6));
      Require(!is_capacity || succeeded == (*modules)[i].capacity.has_value());
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const smbios::TableView table{.bytes = {data, size}};
  const MemoryModules modules = ReadMemoryModules(table);
  for (const MemoryModule& module : *modules) {
    Require(module.capacity != 0u && module.speed <= 0x7FFFFFFF);
  }
  AskEverything(modules);
  if (const auto processor = ReadFirmwareProcessor(table)) {
    Require(processor->external_clock != 0u && processor->maximum_clock != 0u &&
            processor->current_clock != 0u);
  }
  return 0;
}
