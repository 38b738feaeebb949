/// What processors that the machine at hand does not have answer, written down from their published
/// encodings; the one captured from a running machine says so.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ostrine/common/cpuid.h"

namespace ostrine::test {

struct RecordedLeaf {
  std::uint32_t leaf;
  std::uint32_t subleaf;
  CpuidRegisters registers;
};

/// Answers as Intel's processors do: a leaf past the last basic one gets the registers of the last basic one,
/// any other leaf that was not recorded gets zeros.
class RecordedCpuid final : public CpuidSource {
 public:
  explicit RecordedCpuid(std::vector<RecordedLeaf> leaves) : leaves_(std::move(leaves)) {}

  std::optional<CpuidRegisters> Read(std::uint32_t leaf, std::uint32_t subleaf) const override {
    if (const auto found = Find(leaf, subleaf)) return found;
    const std::uint32_t last_basic = Find(0, 0).value_or(CpuidRegisters{}).eax;
    const std::uint32_t last_extended = Find(0x80000000, 0).value_or(CpuidRegisters{}).eax;
    const bool is_past = leaf >= 0x80000000 ? leaf > last_extended : leaf > last_basic;
    return is_past ? Find(last_basic, 0).value_or(CpuidRegisters{}) : CpuidRegisters{};
  }

  /// The same with other registers in one leaf.
  RecordedCpuid With(RecordedLeaf changed) const {
    std::vector<RecordedLeaf> leaves{changed};
    leaves.insert(leaves.end(), leaves_.begin(), leaves_.end());
    return RecordedCpuid(leaves);
  }

 private:
  std::optional<CpuidRegisters> Find(std::uint32_t leaf, std::uint32_t subleaf) const {
    for (const RecordedLeaf& each : leaves_) {
      if (each.leaf == leaf && each.subleaf == subleaf) return each.registers;
    }
    return std::nullopt;
  }

  std::vector<RecordedLeaf> leaves_;
};

/// Appends the three leaves that hold the 48 bytes of a processor's name.
inline std::vector<RecordedLeaf> WithName(std::vector<RecordedLeaf> leaves, std::string_view name) {
  std::string padded(name);
  padded.resize(48);
  const auto four = [&](std::size_t at) {
    std::uint32_t letters = 0;
    for (std::size_t i = 4; i-- > 0;) letters = letters << 8 | static_cast<unsigned char>(padded[at + i]);
    return letters;
  };
  for (std::size_t part = 0; part < 3; ++part) {
    const std::size_t at = part * 16;
    leaves.push_back({static_cast<std::uint32_t>(0x80000002 + part),
                      0,
                      {four(at), four(at + 4), four(at + 8), four(at + 12)}});
  }
  return leaves;
}

/// Alder Lake laptop, asked on one of its four fast cores; 4 fast cores with 2 threads, 8 others.
inline RecordedCpuid HybridIntel() {
  return RecordedCpuid(WithName(
      {
          {0x00000000, 0, {0x00000020, 0x756E6547, 0x6C65746E, 0x49656E69}},
          {0x00000001, 0, {0x000906A3, 0x00800800, 0x7FFAFBBF, 0xBFEBFBFF}},
          {0x00000004, 0, {0xFC004121, 0x02C0003F, 0x0000003F, 0x00000000}},
          {0x00000004, 1, {0xFC004122, 0x01C0003F, 0x0000003F, 0x00000000}},
          {0x00000004, 2, {0xFC01C143, 0x0240003F, 0x000007FF, 0x00000000}},
          {0x00000004, 3, {0xFC1FC163, 0x02C0003F, 0x00005FFF, 0x00000004}},
          {0x00000007, 0, {0x00000002, 0x239CA7EB, 0x98C007AC, 0xFC18C410}},
          {0x00000016, 0, {0x00000834, 0x0000125C, 0x00000064, 0x00000000}},
          {0x0000001A, 0, {0x40000001, 0x00000000, 0x00000000, 0x00000000}},
          {0x0000001F, 0, {0x00000001, 0x00000002, 0x00000100, 0x00000000}},
          {0x80000000, 0, {0x80000008, 0x00000000, 0x00000000, 0x00000000}},
          {0x80000008, 0, {0x00003027, 0x00000000, 0x00000000, 0x00000000}},
      },
      "12th Gen Intel(R) Core(TM) i7-1260P"));
}

/// The same machine, asked on one of its slower cores, of which four share a level 2 cache.
inline RecordedCpuid HybridIntelOnSlowCore() {
  return HybridIntel()
      .With({0x00000004, 0, {0xFC000121, 0x01C0003F, 0x0000003F, 0x00000000}})
      .With({0x00000004, 1, {0xFC000122, 0x01C0003F, 0x0000007F, 0x00000000}})
      .With({0x00000004, 2, {0xFC01C143, 0x03C0003F, 0x000007FF, 0x00000000}})
      .With({0x0000001A, 0, {0x20000001, 0x00000000, 0x00000000, 0x00000000}});
}

/// Tiger Lake laptop: four cores with two threads each.
inline RecordedCpuid PlainIntel() {
  return RecordedCpuid(WithName(
      {
          {0x00000000, 0, {0x0000001B, 0x756E6547, 0x6C65746E, 0x49656E69}},
          {0x00000004, 0, {0x1C004121, 0x02C0003F, 0x0000003F, 0x00000000}},
          {0x00000004, 1, {0x1C004122, 0x01C0003F, 0x0000003F, 0x00000000}},
          {0x00000004, 2, {0x1C004143, 0x04C0003F, 0x000003FF, 0x00000000}},
          {0x00000004, 3, {0x1C03C163, 0x02C0003F, 0x00003FFF, 0x00000004}},
          {0x00000007, 0, {0x00000000, 0xF2BF27EF, 0x18C05FDE, 0xFC100510}},
          {0x00000016, 0, {0x00000AF0, 0x0000125C, 0x00000064, 0x00000000}},
          {0x80000000, 0, {0x80000008, 0x00000000, 0x00000000, 0x00000000}},
          {0x80000008, 0, {0x00003027, 0x00000000, 0x00000000, 0x00000000}},
      },
      "11th Gen Intel(R) Core(TM) i7-1165G7 @ 2.80GHz"));
}

/// Zen 3 laptop with eight cores: leaf 4 is empty, leaf 0x8000001D stands in its place, and the basic leaves
/// end before that of the clocks.
inline RecordedCpuid ZenAmd() {
  return RecordedCpuid(WithName(
      {
          {0x00000000, 0, {0x00000010, 0x68747541, 0x444D4163, 0x69746E65}},
          {0x80000000, 0, {0x80000023, 0x68747541, 0x444D4163, 0x69746E65}},
          {0x80000001, 0, {0x00A50F00, 0x00000000, 0x75C237FF, 0x2FD3FBFF}},
          {0x80000005, 0, {0xFF40FF40, 0xFF40FF40, 0x20080140, 0x20080140}},
          {0x80000006, 0, {0x48006400, 0x68006400, 0x02006140, 0x00809140}},
          {0x80000008, 0, {0x00003030, 0x191EF657, 0x0000400F, 0x00010000}},
          {0x8000001D, 0, {0x00004121, 0x01C0003F, 0x0000003F, 0x00000000}},
          {0x8000001D, 1, {0x00004122, 0x01C0003F, 0x0000003F, 0x00000000}},
          {0x8000001D, 2, {0x00004143, 0x01C0003F, 0x000003FF, 0x00000002}},
          {0x8000001D, 3, {0x0003C163, 0x03C0003F, 0x00003FFF, 0x00000001}},
      },
      "AMD Ryzen 7 5800U with Radeon Graphics         "));
}

/// Two cores of the time before leaf 0x8000001D.
inline RecordedCpuid OldAmd() {
  return RecordedCpuid(WithName(
      {
          {0x00000000, 0, {0x00000005, 0x68747541, 0x444D4163, 0x69746E65}},
          {0x00000001, 0, {0x00100F63, 0x00020800, 0x00802009, 0x178BFBFF}},
          {0x80000000, 0, {0x8000001B, 0x68747541, 0x444D4163, 0x69746E65}},
          {0x80000001, 0, {0x00100F63, 0x000019D9, 0x000837FF, 0xEFD3FBFF}},
          {0x80000005, 0, {0xFF30FF10, 0xFF30FF20, 0x40020140, 0x40020140}},
          {0x80000006, 0, {0x20800000, 0x42004200, 0x02008140, 0x00000000}},
          {0x80000008, 0, {0x00003030, 0x00000000, 0x00002001, 0x00000000}},
      },
      "AMD Athlon(tm) II P320 Dual-Core Processor"));
}

/// Caches in descriptors of leaf 2 only, from the time before leaf 4. The name is padded in front.
inline RecordedCpuid AncientIntel() {
  return RecordedCpuid(WithName(
      {
          {0x00000000, 0, {0x00000002, 0x756E6547, 0x6C65746E, 0x49656E69}},
          {0x00000001, 0, {0x00000F24, 0x00010809, 0x00000000, 0x3FEBFBFF}},
          {0x00000002, 0, {0x665B5001, 0x00000000, 0x00000000, 0x007A7040}},
          {0x80000000, 0, {0x80000004, 0x00000000, 0x00000000, 0x00000000}},
      },
      "              Intel(R) Pentium(R) 4 CPU 1.80GHz"));
}

/// A virtual machine with two processors: clocks in a leaf of zeros.
inline RecordedCpuid VirtualIntel() {
  return RecordedCpuid({
      {0x00000000, 0, {0x0000001C, 0x756E6547, 0x6C65746E, 0x49656E69}},
      {0x00000001, 0, {0x000C06F2, 0x01020800, 0xFFFA3203, 0x1F8BFBFF}},
      {0x00000002, 0, {0x00FEFF01, 0x000000F0, 0x00000000, 0x00000000}},
      {0x00000004, 0, {0x04000121, 0x02C0003F, 0x0000003F, 0x00000000}},
      {0x00000004, 1, {0x04000122, 0x01C0003F, 0x0000003F, 0x00000000}},
      {0x00000004, 2, {0x04000143, 0x03C0003F, 0x000007FF, 0x00000000}},
      {0x00000004, 3, {0x04004163, 0x04C0003F, 0x00033FFF, 0x00000000}},
      {0x00000007, 0, {0x00000002, 0xF1BF2FFB, 0x1A415F46, 0x20814010}},
      {0x80000000, 0, {0x80000021, 0x00000000, 0x00000000, 0x00000000}},
      {0x80000001, 0, {0x00000000, 0x00000000, 0x00000121, 0x2C100800}},
      {0x80000002, 0, {0x65746E49, 0x2952286C, 0x6F655820, 0x2952286E}},
      {0x80000003, 0, {0x6F725020, 0x73736563, 0x0000726F, 0x00000000}},
      {0x80000006, 0, {0x00000000, 0x00000000, 0x08007040, 0x00000000}},
      {0x80000008, 0, {0x00303930, 0x00000000, 0x00000000, 0x00000000}},
  });
}

}  // namespace ostrine::test
