#include "ostrine/common/cpuid.h"

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

namespace ostrine {

#if defined(__x86_64__) || defined(__i386__)
std::optional<CpuidRegisters> CpuidInstruction::Read(std::uint32_t leaf, std::uint32_t subleaf) const {
  CpuidRegisters registers;
  __cpuid_count(leaf, subleaf, registers.eax, registers.ebx, registers.ecx, registers.edx);
  return registers;
}
#else
std::optional<CpuidRegisters> CpuidInstruction::Read(std::uint32_t, std::uint32_t) const {
  return std::nullopt;
}
#endif

}  // namespace ostrine
