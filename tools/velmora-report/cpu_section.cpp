#include "velmora-report/cpu_section.h"

#include <velmora/cpu.h>

namespace report {
namespace {

Value KindValue(enmCPU_TYPE kind) {
  switch (kind) {
    case CPU_TYPE_UNKNOWN:
      return Absent{};
    case CPU_TYPE_INTEL:
      return "Intel";
    case CPU_TYPE_AMD:
      return "AMD";
    case CPU_TYPE_ARM:
      return "ARM system-on-chip";
  }
  return std::to_string(kind);
}

}  // namespace

Section CpuSection() {
  CCpu cpu;
  const bool is_there = cpu.GetCpuCoreThreads() != 0;
  return {
      .key = "cpu",
      .title = "Processor",
      .rows =
          {
              {"name", "Name", TextValue(cpu.GetCpuName())},
              {"manufacturer", "Maker", TextValue(cpu.GetCpuManufacturer())},
              {"kind", "Kind", KindValue(cpu.GetCputype())},
              {"cores", "Cores", NumberValue(cpu.GetCpuCoreNumbers())},
              {"threads", "Logical processors", NumberValue(cpu.GetCpuCoreThreads())},
              {"current_clock_mhz", "Clock now", NumberValue(cpu.GetCpuCurClock()), "MHz"},
              {"maximum_clock_mhz", "Highest clock", NumberValue(cpu.GetCpuMaxClock()), "MHz"},
              {"external_clock_mhz", "Bus clock", NumberValue(cpu.GetCpuExtClock()), "MHz"},
              {"address_bits", "Address width", NumberValue(cpu.GetPhysicalAddressBits()), "bits"},
              {"l1_cache_kib", "Level 1 caches", NumberValue(cpu.GetL1CacheSize()), "KiB"},
              {"l1_associativity", "Level 1 associativity", TextValue(cpu.GetL1Associativity())},
              {"l2_cache_kib", "Level 2 caches", NumberValue(cpu.GetL2CacheSize()), "KiB"},
              {"l2_associativity", "Level 2 associativity", TextValue(cpu.GetL2Associativity())},
              {"l3_cache_kib", "Level 3 caches", NumberValue(cpu.GetL3CacheSize()), "KiB"},
              {"l3_associativity", "Level 3 associativity", TextValue(cpu.GetL3Associativity())},
              {"load_percent", "Load", is_there ? Value(std::uint64_t{cpu.GetCpuLoadPercent()}) : Absent{},
               "%"},
          },
  };
}

}  // namespace report
