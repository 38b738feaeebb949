// Records as GetLogicalProcessorInformationEx fills them, of machines that are not at hand.
#include "ostrine/windows/processor_topology.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace ostrine {
namespace {

using RecordBytes = std::vector<std::byte>;
using SystemRecord = SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX;

constexpr std::size_t kBodyAt = offsetof(SystemRecord, Processor);

void Append(RecordBytes& records, LOGICAL_PROCESSOR_RELATIONSHIP relation, const void* body,
            std::size_t size) {
  const DWORD head[2] = {static_cast<DWORD>(relation), static_cast<DWORD>(kBodyAt + size)};
  const std::size_t start = records.size();
  records.resize(start + kBodyAt + size);
  std::memcpy(records.data() + start, head, sizeof head);
  std::memcpy(records.data() + start + kBodyAt, body, size);
}

void AppendCore(RecordBytes& records, KAFFINITY mask, WORD group = 0, BYTE efficiency = 0) {
  PROCESSOR_RELATIONSHIP core{};
  core.Reserved[0] = efficiency;
  core.GroupCount = 1;
  core.GroupMask[0].Mask = mask;
  core.GroupMask[0].Group = group;
  Append(records, RelationProcessorCore, &core, sizeof core);
}

void AppendCache(RecordBytes& records, BYTE level, PROCESSOR_CACHE_TYPE type, DWORD size, BYTE ways,
                 KAFFINITY mask, WORD group = 0) {
  CACHE_RELATIONSHIP cache{};
  cache.Level = level;
  cache.Associativity = ways;
  cache.LineSize = 64;
  cache.CacheSize = size;
  cache.Type = type;
  cache.GroupMask.Mask = mask;
  cache.GroupMask.Group = group;
  Append(records, RelationCache, &cache, sizeof cache);
}

/// Two fast cores of two threads, four slow ones that share a level 2 cache; the slow ones are listed first.
RecordBytes HybridLaptop() {
  constexpr DWORD kKibibyte = 1024;
  RecordBytes records;
  for (const KAFFINITY slow : {0x10u, 0x20u, 0x40u, 0x80u}) {
    AppendCore(records, slow);
    AppendCache(records, 1, CacheData, 32 * kKibibyte, 8, slow);
    AppendCache(records, 1, CacheInstruction, 64 * kKibibyte, 8, slow);
  }
  AppendCache(records, 2, CacheUnified, 2048 * kKibibyte, 16, 0xF0);
  for (const KAFFINITY fast : {0x03u, 0x0Cu}) {
    AppendCore(records, fast, 0, 1);
    AppendCache(records, 1, CacheInstruction, 32 * kKibibyte, 8, fast);
    AppendCache(records, 1, CacheData, 48 * kKibibyte, 12, fast);
    AppendCache(records, 2, CacheUnified, 1280 * kKibibyte, 10, fast);
  }
  AppendCache(records, 3, CacheUnified, 18432 * kKibibyte, 12, 0xFF);
  return records;
}

std::optional<std::uint32_t> Size(const RecordBytes& records, unsigned int level) {
  return TotalCacheSize(ReadCaches(records, level, CacheExtent::kMachine));
}

std::optional<std::string> Associativity(const RecordBytes& records, unsigned int level) {
  const auto caches = ReadCaches(records, level, CacheExtent::kFirst);
  const Cache* const main = MainCache(caches);
  return main == nullptr ? std::nullopt : AssociativityText(main->ways);
}

TEST(ProcessorTopology, CountsCoresOfEveryKindAndTheirThreads) {
  const auto counts = CountProcessors(HybridLaptop());
  ASSERT_TRUE(counts);
  EXPECT_EQ(counts->cores, 6u);
  EXPECT_EQ(counts->threads, 8u);
}

TEST(ProcessorTopology, CountsEveryProcessorGroup) {
  RecordBytes records;
  for (const WORD group : {WORD{0}, WORD{1}}) {
    for (int core = 0; core < 32; ++core) AppendCore(records, KAFFINITY{3} << (2 * core), group);
  }
  const auto counts = CountProcessors(records);
  ASSERT_TRUE(counts);
  EXPECT_EQ(counts->cores, 64u);
  EXPECT_EQ(counts->threads, 128u);
}

TEST(ProcessorTopology, AddsUpEachCacheOnce) {
  const RecordBytes records = HybridLaptop();
  EXPECT_EQ(Size(records, 1), 2u * (48 + 32) + 4u * (32 + 64));
  EXPECT_EQ(Size(records, 2), 2u * 1280 + 2048);
  EXPECT_EQ(Size(records, 3), 18432u);
  EXPECT_EQ(Size(records, 4), std::nullopt);
}

TEST(ProcessorTopology, TakesTheWaysOfTheFirstProcessorsDataCacheInWhateverOrder) {
  const RecordBytes records = HybridLaptop();
  EXPECT_EQ(Associativity(records, 1), "12-way Set-Associative");
  EXPECT_EQ(Associativity(records, 2), "10-way Set-Associative");
  EXPECT_EQ(Associativity(records, 3), "12-way Set-Associative");
  EXPECT_EQ(Associativity(records, 4), std::nullopt);
}

TEST(ProcessorTopology, KnowsAFullyAssociativeCacheAndOneOfUnknownWays) {
  RecordBytes records;
  AppendCache(records, 1, CacheUnified, 1024, CACHE_FULLY_ASSOCIATIVE, 1);
  AppendCache(records, 2, CacheUnified, 1024, 0, 1);
  EXPECT_EQ(Associativity(records, 1), "Fully Associative");
  EXPECT_EQ(Associativity(records, 2), std::nullopt);
}

TEST(ProcessorTopology, LeavesTraceCachesAndOtherRecordsOut) {
  RecordBytes records;
  const GROUP_RELATIONSHIP group{};
  Append(records, RelationGroup, &group, sizeof group);
  AppendCache(records, 1, CacheTrace, 12 * 1024, 8, 1);
  AppendCache(records, 1, CacheData, 8 * 1024, 4, 1);
  EXPECT_EQ(Size(records, 1), 8u);
  EXPECT_FALSE(CountProcessors(records));
}

TEST(ProcessorTopology, TellsNothingOfRecordsThatAreNotWhole) {
  const RecordBytes whole = HybridLaptop();
  std::size_t read = 0;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const RecordBytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    if (const auto counts = CountProcessors(cut)) {
      ++read;
      EXPECT_LE(counts->cores, 6u);
    }
  }
  // Only a cut between two of the 22 records leaves nothing but whole ones, the first of which is a core.
  EXPECT_EQ(read, 21u);
  EXPECT_FALSE(CountProcessors({}));
}

TEST(ProcessorTopology, RefusesSizesAndCountsThatLie) {
  for (const DWORD size : {0u, 7u, 0xFFFFFFFFu}) {
    RecordBytes records = HybridLaptop();
    std::memcpy(records.data() + offsetof(SystemRecord, Size), &size, sizeof size);
    EXPECT_FALSE(CountProcessors(records)) << size;
    EXPECT_EQ(Size(records, 3), std::nullopt) << size;
  }
  RecordBytes records = HybridLaptop();
  const WORD groups = 0xFFFF;
  std::memcpy(records.data() + kBodyAt + offsetof(PROCESSOR_RELATIONSHIP, GroupCount), &groups,
              sizeof groups);
  EXPECT_FALSE(CountProcessors(records));
}

}  // namespace
}  // namespace ostrine
