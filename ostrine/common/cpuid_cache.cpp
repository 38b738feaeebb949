#include "ostrine/common/cpuid_cache.h"

#include <algorithm>
#include <array>

namespace ostrine {
namespace {

/// The bits `low` to `high` of `number`, both included.
constexpr std::uint32_t Bits(std::uint32_t number, unsigned int high, unsigned int low) {
  return number >> low & ((1U << (high - low + 1)) - 1);
}

/// The caches of a leaf that describes one with each subleaf, in the form that leaves 4 and 0x8000001D share.
std::vector<CpuidCache> ReadCacheLeaf(const CpuidSource& source, std::uint32_t leaf) {
  // Nothing has more; a source that never comes to the end would be read forever.
  constexpr std::uint32_t kMostCaches = 16;
  std::vector<CpuidCache> caches;
  for (std::uint32_t subleaf = 0; subleaf < kMostCaches; ++subleaf) {
    const auto registers = ReadLeaf(source, leaf, subleaf);
    if (!registers) break;
    constexpr std::array kKinds{CacheKind::kData, CacheKind::kInstruction, CacheKind::kUnified};
    const std::uint32_t type = Bits(registers->eax, 4, 0);
    if (type == 0 || type > kKinds.size()) break;
    const std::uint64_t ways = std::uint64_t{Bits(registers->ebx, 31, 22)} + 1;
    const std::uint64_t partitions = std::uint64_t{Bits(registers->ebx, 21, 12)} + 1;
    const std::uint64_t line_size = std::uint64_t{Bits(registers->ebx, 11, 0)} + 1;
    const std::uint64_t sets = std::uint64_t{registers->ecx} + 1;
    caches.push_back({.cache = {.level = Bits(registers->eax, 7, 5),
                                .kind = kKinds.at(type - 1),
                                .size = ways * partitions * line_size * sets,
                                .ways = {.count = static_cast<std::uint32_t>(ways),
                                         .full = Bits(registers->eax, 9, 9) != 0}},
                      .sharing = Bits(registers->eax, 25, 14) + 1});
  }
  return caches;
}

/// Ways of a level 1 cache as leaf 0x80000005 has them: the number itself.
CacheWays WaysOfFirstLevel(std::uint32_t code) {
  constexpr std::uint32_t kFull = 0xFF;
  return code == kFull ? CacheWays{.full = true} : CacheWays{.count = code};
}

/// Ways of a level 2 or 3 cache as leaf 0x80000006 has them: a code.
CacheWays WaysOfCode(std::uint32_t code) {
  constexpr std::uint32_t kFull = 0xF;
  constexpr std::array<std::uint32_t, 16> kCounts{0, 1, 2, 3, 4, 6, 8, 0, 16, 0, 32, 48, 64, 96, 128, 0};
  return code == kFull ? CacheWays{.full = true} : CacheWays{.count = kCounts.at(code)};
}

/// The caches of AMD's processors that have no leaf 0x8000001D. Their cores have one thread each; level 3
/// belongs to the whole package.
std::vector<CpuidCache> ReadOlderAmdLeaves(const CpuidSource& source) {
  constexpr std::uint64_t kKibibyte = 1024;
  constexpr std::uint64_t kThirdLevelUnit = 512 * kKibibyte;
  std::vector<CpuidCache> caches;
  const auto add = [&](unsigned int level, CacheKind kind, std::uint64_t size, CacheWays ways,
                       std::uint32_t sharing) {
    if (size == 0) return;
    caches.push_back(
        {.cache = {.level = level, .kind = kind, .size = size, .ways = ways}, .sharing = sharing});
  };
  if (const auto first = ReadLeaf(source, 0x80000005)) {
    const auto add_first = [&](CacheKind kind, std::uint32_t descriptor) {
      add(1, kind, Bits(descriptor, 31, 24) * kKibibyte, WaysOfFirstLevel(Bits(descriptor, 23, 16)), 1);
    };
    add_first(CacheKind::kData, first->ecx);
    add_first(CacheKind::kInstruction, first->edx);
  }
  if (const auto others = ReadLeaf(source, 0x80000006)) {
    const auto features = ReadLeaf(source, 1);
    const std::uint32_t in_package = features ? Bits(features->ebx, 23, 16) : 1;
    add(2, CacheKind::kUnified, Bits(others->ecx, 31, 16) * kKibibyte, WaysOfCode(Bits(others->ecx, 15, 12)),
        1);
    add(3, CacheKind::kUnified, Bits(others->edx, 31, 18) * kThirdLevelUnit,
        WaysOfCode(Bits(others->edx, 15, 12)), std::max(in_package, 1U));
  }
  return caches;
}

/// Whether leaf 0x8000001D is there to be asked.
bool HasTopologyExtensions(const CpuidSource& source) {
  constexpr std::uint32_t kTopologyExtensions = 1U << 22;
  const auto features = ReadLeaf(source, 0x80000001);
  return features && (features->ecx & kTopologyExtensions) != 0;
}

}  // namespace

std::vector<CpuidCache> ReadCpuidCaches(const CpuidSource& source) {
  if (FamilyOfVendor(CpuidVendor(source)) != CpuidFamily::kAmd) return ReadCacheLeaf(source, 4);
  return HasTopologyExtensions(source) ? ReadCacheLeaf(source, 0x8000001D) : ReadOlderAmdLeaves(source);
}

std::vector<Cache> CachesOfMachine(const std::vector<CpuidCache>& caches, unsigned int level,
                                   std::uint32_t threads) {
  std::vector<Cache> result;
  for (const CpuidCache& seen : caches) {
    if (seen.cache.level != level) continue;
    const std::uint32_t full_groups = threads / seen.sharing;
    const std::uint32_t groups = full_groups + (threads % seen.sharing != 0 ? 1 : 0);
    result.insert(result.end(), groups, seen.cache);
  }
  return result;
}

}  // namespace ostrine
