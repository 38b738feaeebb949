#include "velmora/cpu.h"

#include "platform/halquery.h"

using velmora::hal::DeviceClass;
using velmora::hal::NarrowText;
using velmora::hal::Number;

namespace {

constexpr auto kCpu = DeviceClass::kProcessor;

/// Information ids of the class.
enum ProcessorId : std::uint32_t {
  kVendor = 0,
  kName = 1,
  kAddressBits = 4,
  kCurrentClock = 5,
  kExternalClock = 6,
  kMaximumClock = 7,
  kCores = 8,
  kThreads = 9,
  kL1Size = 10,
  kL2Size = 11,
  kL3Size = 12,
  kL1Associativity = 13,
  kL2Associativity = 14,
  kL3Associativity = 15,
  kLoad = 18,
  kKind = 19,
};

}  // namespace

CCpu::CCpu() { velmora::hal::Prepare(kCpu); }
CCpu::~CCpu() = default;

std::wstring CCpu::GetCpuName() { return velmora::hal::ShortNarrowText(kCpu, kName); }

std::wstring CCpu::GetCpuManufacturer() {
  std::wstring vendor = NarrowText(kCpu, kVendor);
  if (vendor == L"GenuineIntel") vendor = L"Intel";  // shorter, so it needs no memory
  return vendor;
}

std::wstring CCpu::GetL1Associativity() { return NarrowText(kCpu, kL1Associativity); }
std::wstring CCpu::GetL2Associativity() { return NarrowText(kCpu, kL2Associativity); }
std::wstring CCpu::GetL3Associativity() { return NarrowText(kCpu, kL3Associativity); }

unsigned long CCpu::GetPhysicalAddressBits() { return Number(kCpu, kAddressBits); }
unsigned long CCpu::GetLinearAddressBits() { return Number(kCpu, kAddressBits); }
unsigned long CCpu::GetCpuCurClock() { return Number(kCpu, kCurrentClock); }
unsigned long CCpu::GetCpuExtClock() { return Number(kCpu, kExternalClock); }
unsigned long CCpu::GetCpuMaxClock() { return Number(kCpu, kMaximumClock); }
unsigned long CCpu::GetCpuCoreNumbers() { return Number(kCpu, kCores); }
unsigned long CCpu::GetCpuCoreThreads() { return Number(kCpu, kThreads); }
unsigned long CCpu::GetL1CacheSize() { return Number(kCpu, kL1Size); }
unsigned long CCpu::GetL2CacheSize() { return Number(kCpu, kL2Size); }
unsigned long CCpu::GetL3CacheSize() { return Number(kCpu, kL3Size); }
unsigned int CCpu::GetCpuLoadPercent() { return Number(kCpu, kLoad); }
float CCpu::GetCpuUsage() { return 0.0F; }
enmCPU_TYPE CCpu::GetCputype() { return static_cast<enmCPU_TYPE>(Number(kCpu, kKind)); }
