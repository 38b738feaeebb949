/// What an x86 processor tells about itself through its CPUID instruction.
///
/// Where the answers come from is kept apart from what they mean, so that the recorded answers of a processor
/// that is not at hand are decoded like those of the one that is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ostrine {

/// Answer to one leaf.
struct CpuidRegisters {
  std::uint32_t eax = 0;
  std::uint32_t ebx = 0;
  std::uint32_t ecx = 0;
  std::uint32_t edx = 0;
};

/// Where the answers come from.
class CpuidSource {
 public:
  virtual ~CpuidSource() = default;

  /// The registers that the instruction leaves, or nothing on a processor without it. A leaf that the
  /// processor does not have is answered too, on some with another leaf's registers: see ReadLeaf.
  virtual std::optional<CpuidRegisters> Read(std::uint32_t leaf, std::uint32_t subleaf) const = 0;
};

/// The processor that the thread runs on at the moment of each reading.
class CpuidInstruction final : public CpuidSource {
 public:
  std::optional<CpuidRegisters> Read(std::uint32_t leaf, std::uint32_t subleaf) const override;
};

/// A processor without the instruction.
class NoCpuid final : public CpuidSource {
 public:
  std::optional<CpuidRegisters> Read(std::uint32_t, std::uint32_t) const override { return std::nullopt; }
};

/// The registers of a leaf that the processor says it has.
std::optional<CpuidRegisters> ReadLeaf(const CpuidSource& source, std::uint32_t leaf,
                                       std::uint32_t subleaf = 0);

/// The twelve letters of the vendor, such as "GenuineIntel"; nothing when they are all zero.
std::optional<std::string> CpuidVendor(const CpuidSource& source);

/// Name of the processor without the blanks that pad it in front or behind; nothing when there is none.
std::optional<std::string> CpuidName(const CpuidSource& source);

/// Width of a physical address in bits.
std::optional<std::uint32_t> CpuidAddressBits(const CpuidSource& source);

/// Clocks in MHz, as the processor was made for. Each is absent where the processor does not say.
struct CpuidClocks {
  std::optional<std::uint32_t> maximum;
  std::optional<std::uint32_t> bus;
};
CpuidClocks ReadCpuidClocks(const CpuidSource& source);

/// Whether the processor has cores of several kinds. What such a processor says of caches holds for the core
/// that the thread happens to run on.
bool IsHybrid(const CpuidSource& source);

/// Who designed an x86 processor.
enum class CpuidFamily { kUnknown, kIntel, kAmd };

/// By the vendor's letters. Hygon's processors are AMD's design and count as such.
CpuidFamily FamilyOfVendor(const std::optional<std::string>& vendor);

}  // namespace ostrine
