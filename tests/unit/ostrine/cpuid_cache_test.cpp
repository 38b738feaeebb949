#include "ostrine/common/cpuid_cache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <string>
#include <vector>

#include "cpuid_recording.h"

namespace ostrine {
namespace {

using test::RecordedCpuid;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A cache in a line, such as "L1 data 48 KiB, 12-way Set-Associative, shared by 2".
std::string Describe(const CpuidCache& seen) {
  constexpr std::array kKinds{"data", "instruction", "unified"};
  std::ostringstream line;
  line << 'L' << seen.cache.level << ' ' << kKinds.at(static_cast<std::size_t>(seen.cache.kind)) << ' '
       << seen.cache.size / 1024 << " KiB, " << AssociativityText(seen.cache.ways).value_or("?")
       << ", shared by " << seen.sharing;
  return line.str();
}

std::vector<std::string> Describe(const CpuidSource& cpuid) {
  std::vector<std::string> lines;
  for (const CpuidCache& cache : ReadCpuidCaches(cpuid)) lines.push_back(Describe(cache));
  return lines;
}

TEST(CpuidCache, ReadsLeaf4OfTheCoreThatIsAsked) {
  EXPECT_THAT(Describe(test::HybridIntel()),
              ElementsAre("L1 data 48 KiB, 12-way Set-Associative, shared by 2",
                          "L1 instruction 32 KiB, 8-way Set-Associative, shared by 2",
                          "L2 unified 1280 KiB, 10-way Set-Associative, shared by 8",
                          "L3 unified 18432 KiB, 12-way Set-Associative, shared by 128"));
  EXPECT_THAT(Describe(test::HybridIntelOnSlowCore()),
              ElementsAre("L1 data 32 KiB, 8-way Set-Associative, shared by 1",
                          "L1 instruction 64 KiB, 8-way Set-Associative, shared by 1",
                          "L2 unified 2048 KiB, 16-way Set-Associative, shared by 8",
                          "L3 unified 18432 KiB, 12-way Set-Associative, shared by 128"));
}

TEST(CpuidCache, ReadsAmdsOwnLeafWhereLeaf4IsEmpty) {
  EXPECT_THAT(Describe(test::ZenAmd()),
              ElementsAre("L1 data 32 KiB, 8-way Set-Associative, shared by 2",
                          "L1 instruction 32 KiB, 8-way Set-Associative, shared by 2",
                          "L2 unified 512 KiB, 8-way Set-Associative, shared by 2",
                          "L3 unified 16384 KiB, 16-way Set-Associative, shared by 16"));
}

TEST(CpuidCache, ReadsTheOlderLeavesOfOlderAmd) {
  EXPECT_THAT(Describe(test::OldAmd()),
              ElementsAre("L1 data 64 KiB, 2-way Set-Associative, shared by 1",
                          "L1 instruction 64 KiB, 2-way Set-Associative, shared by 1",
                          "L2 unified 512 KiB, 16-way Set-Associative, shared by 1"));
}

TEST(CpuidCache, DecodesEveryCodeOfWaysInTheOlderLeaves) {
  const std::vector<std::string> by_code{
      "?",       "Direct Mapped",    "2-way", "3-way",  "4-way",  "6-way",  "8-way",
      "?",       "16-way",           "?",     "32-way", "48-way", "64-way", "96-way",
      "128-way", "Fully Associative"};
  for (std::uint32_t code = 0; code < by_code.size(); ++code) {
    SCOPED_TRACE(code);
    const auto cpuid = test::OldAmd().With({0x80000006, 0, {0, 0, 0, 12u << 18 | code << 12 | 0x140}});
    const auto caches = ReadCpuidCaches(cpuid);
    ASSERT_EQ(caches.size(), 3u);
    EXPECT_EQ(caches[2].cache.level, 3u);
    EXPECT_EQ(caches[2].cache.size, 6u * 1024 * 1024);
    EXPECT_EQ(caches[2].sharing, 2u);
    const std::string text = AssociativityText(caches[2].cache.ways).value_or("?");
    EXPECT_EQ(text.substr(0, text.find(" Set-Associative")), by_code[code]);
  }
  const auto full = test::OldAmd().With({0x80000005, 0, {0, 0, 0x40FF0140, 0x40010140}});
  EXPECT_TRUE(ReadCpuidCaches(full)[0].cache.ways.full);
  EXPECT_EQ(ReadCpuidCaches(full)[1].cache.ways.count, 1u);
}

TEST(CpuidCache, HasNothingFromDescriptorsAlone) { EXPECT_THAT(Describe(test::AncientIntel()), IsEmpty()); }

TEST(CpuidCache, HasNothingFromAProcessorWithoutTheInstruction) {
  EXPECT_THAT(Describe(NoCpuid()), IsEmpty());
}

TEST(CpuidCache, KnowsAFullyAssociativeCache) {
  const auto cpuid = test::PlainIntel().With({4, 0, {0x1C004321, 0x3FC0003F, 0x00000000, 0}});
  EXPECT_EQ(Describe(cpuid).front(), "L1 data 16 KiB, Fully Associative, shared by 2");
}

TEST(CpuidCache, MultipliesTheGreatestNumbersWithoutLoss) {
  const auto cpuid = test::PlainIntel().With({4, 0, {0x03FFC021, 0xFFFFFFFF, 0x7FFFFFFF, 0}});
  const auto caches = ReadCpuidCaches(cpuid);
  ASSERT_FALSE(caches.empty());
  EXPECT_EQ(caches.front().cache.size, std::uint64_t{1} << (10 + 10 + 12 + 31));
  EXPECT_EQ(caches.front().sharing, 4096u);
}

TEST(CpuidCache, EndsAtAProcessorThatNeverEndsItsList) {
  /// Gives the same cache for every subleaf.
  class Endless final : public CpuidSource {
   public:
    std::optional<CpuidRegisters> Read(std::uint32_t leaf, std::uint32_t) const override {
      return test::PlainIntel().Read(leaf, 0);
    }
  };
  EXPECT_EQ(ReadCpuidCaches(Endless()).size(), 16u);
}

TEST(CpuidCache, StopsAtATypeThatNobodyHasDefined) {
  EXPECT_EQ(ReadCpuidCaches(test::PlainIntel().With({4, 2, {0x1C004144, 0x04C0003F, 0x3FF, 0}})).size(), 2u);
}

TEST(CpuidCache, GivesEveryGroupOfThreadsACache) {
  const auto total = [](const RecordedCpuid& cpuid, unsigned int level, std::uint32_t threads) {
    const auto caches = CachesOfMachine(ReadCpuidCaches(cpuid), level, threads);
    return TotalCacheSize(caches).value_or(0);
  };
  EXPECT_EQ(total(test::PlainIntel(), 1, 8), 4u * (48 + 32));
  EXPECT_EQ(total(test::PlainIntel(), 2, 8), 4u * 1280);
  EXPECT_EQ(total(test::PlainIntel(), 3, 8), 12288u);
  EXPECT_EQ(total(test::ZenAmd(), 3, 12), 16384u);
  EXPECT_EQ(total(test::ZenAmd(), 3, 17), 32768u);
  EXPECT_EQ(total(test::PlainIntel(), 4, 8), 0u);
  EXPECT_EQ(total(test::PlainIntel(), 1, 0), 0u);
}

TEST(CpuidCache, AgreesWithTheProcessorAtHandThatNoCacheIsWithoutSizeOrWays) {
  for (const CpuidCache& seen : ReadCpuidCaches(CpuidInstruction())) {
    SCOPED_TRACE(Describe(seen));
    EXPECT_GE(seen.cache.level, 1u);
    EXPECT_LE(seen.cache.level, 4u);
    EXPECT_GE(seen.cache.size, 1024u);
    EXPECT_TRUE(AssociativityText(seen.cache.ways));
  }
}

}  // namespace
}  // namespace ostrine
