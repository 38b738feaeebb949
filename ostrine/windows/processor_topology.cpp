#include "ostrine/windows/processor_topology.h"

#include <windows.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <type_traits>

namespace ostrine {
namespace {

using Records = std::span<const std::byte>;

/// A value that stands at `offset`; nothing when it does not lie wholly within `bytes`.
template <typename Value>
std::optional<Value> At(Records bytes, std::size_t offset) {
  static_assert(std::is_trivially_copyable_v<Value>);
  if (offset > bytes.size() || sizeof(Value) > bytes.size() - offset) return std::nullopt;
  Value value;
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

constexpr std::size_t kRelationAt = offsetof(SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX, Relationship);
constexpr std::size_t kSizeAt = offsetof(SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX, Size);
constexpr std::size_t kBodyAt = offsetof(SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX, Processor);

/// Calls `take` with the body of every record of `relation`, until it returns false. Returns whether every
/// record was whole and `take` content.
template <typename Take>
bool ForEachRecord(Records records, LOGICAL_PROCESSOR_RELATIONSHIP relation, const Take& take) {
  while (!records.empty()) {
    const auto found = At<DWORD>(records, kRelationAt);
    const auto size = At<DWORD>(records, kSizeAt);
    if (!found || !size || *size < kBodyAt || *size > records.size()) return false;
    if (*found == static_cast<DWORD>(relation) && !take(records.subspan(kBodyAt, *size - kBodyAt)))
      return false;
    records = records.subspan(*size);
  }
  return true;
}

/// Logical processors of one core.
std::optional<std::uint32_t> CountThreads(Records core) {
  const auto groups = At<WORD>(core, offsetof(PROCESSOR_RELATIONSHIP, GroupCount));
  if (!groups) return std::nullopt;
  std::uint32_t threads = 0;
  for (std::size_t i = 0; i < *groups; ++i) {
    const std::size_t offset = offsetof(PROCESSOR_RELATIONSHIP, GroupMask) + i * sizeof(GROUP_AFFINITY);
    const auto affinity = At<GROUP_AFFINITY>(core, offset);
    if (!affinity) return std::nullopt;
    threads += static_cast<std::uint32_t>(std::popcount(affinity->Mask));
  }
  return threads;
}

/// A cache, and the first of the logical processors that have it.
struct FoundCache {
  Cache cache;
  std::uint32_t first_processor = 0;
};

std::optional<CacheKind> KindOf(PROCESSOR_CACHE_TYPE type) {
  switch (type) {
    case CacheUnified:
      return CacheKind::kUnified;
    case CacheInstruction:
      return CacheKind::kInstruction;
    case CacheData:
      return CacheKind::kData;
    case CacheTrace:
      break;  // holds decoded instructions: no part of the memory caches
  }
  return std::nullopt;
}

/// The first processor of a cache: group and bit in one number, as processors are counted.
std::uint32_t FirstProcessor(const GROUP_AFFINITY& affinity) {
  constexpr std::uint32_t kGroupSize = 64;
  return affinity.Group * kGroupSize + static_cast<std::uint32_t>(std::countr_zero(affinity.Mask));
}

/// Appends what a cache record's body says, if it is of `level`; false when the body is not whole.
bool AddCache(Records body, unsigned int level, std::vector<FoundCache>& caches) {
  const auto record = At<CACHE_RELATIONSHIP>(body, 0);
  if (!record) return false;
  const auto kind = KindOf(record->Type);
  if (!kind || record->Level != level) return true;
  const bool full = record->Associativity == CACHE_FULLY_ASSOCIATIVE;
  caches.push_back({.cache = {.level = level,
                              .kind = *kind,
                              .size = record->CacheSize,
                              .ways = {.count = full ? 0U : record->Associativity, .full = full}},
                    .first_processor = FirstProcessor(record->GroupMask)});
  return true;
}

}  // namespace

std::optional<ProcessorCounts> CountProcessors(std::span<const std::byte> records) {
  ProcessorCounts counts;
  const bool whole = ForEachRecord(records, RelationProcessorCore, [&](Records core) {
    const auto threads = CountThreads(core);
    if (!threads) return false;
    ++counts.cores;
    counts.threads += *threads;
    return true;
  });
  return whole && counts.threads > 0 ? std::optional(counts) : std::nullopt;
}

std::vector<Cache> ReadCaches(std::span<const std::byte> records, unsigned int level, CacheExtent extent) {
  std::vector<FoundCache> found;
  const auto add = [&](Records body) { return AddCache(body, level, found); };
  if (!ForEachRecord(records, RelationCache, add)) return {};
  std::ranges::stable_sort(found, {}, &FoundCache::first_processor);
  std::vector<Cache> caches;
  for (const FoundCache& each : found) {
    // A cache that the first processor shares with others has no processor before that one either.
    if (extent == CacheExtent::kFirst && each.first_processor != found.front().first_processor) break;
    caches.push_back(each.cache);
  }
  return caches;
}

}  // namespace ostrine
