#include "velmora-report/memory_section.h"

#include <velmora/memory.h>

namespace report {
namespace {

/// A text of a module, absent when it cannot be read.
Value ModuleText(CMemory& memory, int (CMemory::*getter)(std::wstring&, int), int index) {
  std::wstring text;
  (memory.*getter)(text, index);
  return TextValue(text);
}

Rows ModuleRows(CMemory& memory, int index) {
  std::uint64_t capacity = 0;
  unsigned int speed = 0;
  memory.GetCapacitybyIndex(capacity, index);
  memory.GetSpeedbyIndex(speed, index);
  return {
      {"locator", "Slot", ModuleText(memory, &CMemory::GetLocatorbyIndex, index)},
      {"manufacturer", "Maker", ModuleText(memory, &CMemory::GetManufacturerbyIndex, index)},
      {"part_number", "Part number", ModuleText(memory, &CMemory::GetPartNumberbyIndex, index)},
      {"serial_number", "Serial number", ModuleText(memory, &CMemory::GetSerialNumberbyIndex, index)},
      {"capacity_bytes", "Capacity", NumberValue(capacity), "bytes"},
      {"speed_mts", "Speed", NumberValue(speed), "MT/s"},
  };
}

}  // namespace

Section MemorySection() {
  CMemory memory;
  unsigned int count = 0;
  std::uint64_t total = 0;
  memory.GetMemoryNums(count);
  memory.GetTotalMemoryNums(total);
  List modules{.key = "modules", .item_title = "Module"};
  for (unsigned int i = 0; i < count; ++i) modules.items.push_back(ModuleRows(memory, static_cast<int>(i)));
  return {
      .key = "memory",
      .title = "Memory",
      .rows =
          {
              {"module_count", "Modules", NumberValue(count)},
              {"total_bytes", "Capacity of all modules", NumberValue(total), "bytes"},
              {"load_percent", "In use", NumberValue(memory.GetMemoryLoad()), "%"},
          },
      .lists = {std::move(modules)},
  };
}

}  // namespace report
