#include "simulator/device_class.h"

namespace simulator {
namespace {

Information AnswerModule(const MemoryModule& module, unsigned int information_id) {
  switch (information_id) {
    case 1:
      return NarrowOrRefused(module.locator);
    case 2:
      return NarrowOrRefused(module.manufacturer);
    case 3:
      return NarrowOrRefused(module.serial_number);
    case 4:
      return NarrowOrRefused(module.part_number);
    case 5:
      return NumberOrRefused(module.capacity);
    case 6:
      return NumberOrRefused(module.speed);
    default:
      return Refused{};
  }
}

std::optional<Information> QueryMemory(const Question& question) {
  const auto& modules = question.machine.memory_modules;
  if (!modules) return std::nullopt;
  if (question.device_number)
    return AnswerModule(modules->at(*question.device_number), question.information_id);
  if (question.information_id == 0) return static_cast<std::uint32_t>(modules->size());
  return Refused{};
}

std::size_t CountModules(const Machine& machine) {
  return machine.memory_modules ? machine.memory_modules->size() : 0;
}

}  // namespace

const DeviceClassScript kMemoryScript{.device_class = velmora::hal::DeviceClass::kMemory,
                                      .query = QueryMemory,
                                      .count_entries = CountModules,
                                      .entry_size = velmora::hal::kMemoryEntrySize};

}  // namespace simulator
