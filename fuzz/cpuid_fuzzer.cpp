// Any bytes as the registers of a processor's leaves, eighteen bytes a leaf: number and subleaf, then
// registers.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>

#include "ostrine/common/cpuid_cache.h"

namespace {

using namespace ostrine;

void Require(bool holds) {
  if (!holds) std::abort();
}

class FuzzedCpuid final : public CpuidSource {
 public:
  explicit FuzzedCpuid(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  std::optional<CpuidRegisters> Read(std::uint32_t leaf, std::uint32_t subleaf) const override {
    constexpr std::size_t kSize = 18;
    // The highest bit of the number's byte stands for that of the leaf.
    const std::uint32_t number = (leaf >> 24 & 0x80) | (leaf & 0x7F);
    for (std::size_t at = 0; at + kSize <= bytes_.size(); at += kSize) {
      if (bytes_[at] != number || bytes_[at + 1] != subleaf) continue;
      return CpuidRegisters{
          .eax = Word(at + 2), .ebx = Word(at + 6), .ecx = Word(at + 10), .edx = Word(at + 14)};
    }
    return CpuidRegisters{};
  }

 private:
  std::uint32_t Word(std::size_t at) const {
    return bytes_[at] | static_cast<std::uint32_t>(bytes_[at + 1]) << 8 |
           static_cast<std::uint32_t>(bytes_[at + 2]) << 16 |
           static_cast<std::uint32_t>(bytes_[at + 3]) << 24;
  }

  std::span<const std::uint8_t> bytes_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const FuzzedCpuid cpuid({data, size});
  const auto vendor = CpuidVendor(cpuid);
  Require(!vendor || (!vendor->empty() && vendor->size() <= 12));
  const auto name = CpuidName(cpuid);
  Require(!name || (!name->empty() && name->size() <= 48 && name->front() != ' ' && name->back() != ' '));
  Require(CpuidAddressBits(cpuid) != 0u);
  const auto caches = ReadCpuidCaches(cpuid);
  Require(caches.size() <= 16);
  for (const CpuidCache& seen : caches) {
    Require(seen.sharing >= 1 && seen.cache.level <= 7);
    constexpr std::uint32_t kThreads = 300;
    const auto all = CachesOfMachine(caches, seen.cache.level, kThreads);
    Require(!all.empty() && all.size() <= caches.size() * kThreads);
    Require(TotalCacheSize(all) != 0u);
  }
  return 0;
}
