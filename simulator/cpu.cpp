#include "simulator/device_class.h"

namespace simulator {
namespace {

Information AnswerProcessor(const Cpu& cpu, unsigned int information_id) {
  switch (information_id) {
    case 0:
      return NarrowOrRefused(cpu.vendor);
    case 1:
      return NarrowOrRefused(cpu.name);
    case 4:
      return NumberOrRefused(cpu.address_bits);
    case 5:
      return NumberOrRefused(cpu.current_clock);
    case 6:
      return NumberOrRefused(cpu.external_clock);
    case 7:
      return NumberOrRefused(cpu.maximum_clock);
    case 8:
      return NumberOrRefused(cpu.cores);
    case 9:
      return NumberOrRefused(cpu.threads);
    case 10:
      return NumberOrRefused(cpu.l1_size);
    case 11:
      return NumberOrRefused(cpu.l2_size);
    case 12:
      return NumberOrRefused(cpu.l3_size);
    case 13:
      return NarrowOrRefused(cpu.l1_associativity);
    case 14:
      return NarrowOrRefused(cpu.l2_associativity);
    case 15:
      return NarrowOrRefused(cpu.l3_associativity);
    case 18:
      return NumberOrRefused(cpu.load);
    case 19:
      return NumberOrRefused(cpu.kind);
    default:
      return Refused{};
  }
}

std::optional<Information> QueryProcessor(const Question& question) {
  const auto& cpu = question.machine.cpu;
  if (!cpu) return std::nullopt;
  return AnswerProcessor(*cpu, question.information_id);
}

}  // namespace

const DeviceClassScript kCpuScript{.device_class = velmora::hal::DeviceClass::kProcessor,
                                   .query = QueryProcessor};

}  // namespace simulator
