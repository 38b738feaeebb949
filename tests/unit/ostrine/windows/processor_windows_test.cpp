// What Windows tells of the processor that runs the tests.
#include "ostrine/windows/processor.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "ostrine/common/cpuid_cache.h"
#include "platform/ostrine/hal.h"

namespace ostrine {
namespace {

constexpr unsigned int kProcessorClass = 0;

std::optional<std::uint32_t> AskNumber(unsigned int id) {
  std::uint32_t number = 0;
  if (HalQueryInformation(kProcessorClass, nullptr, id, &number, sizeof number, nullptr) == 0)
    return std::nullopt;
  return number;
}

std::optional<std::string> AskText(unsigned int id) {
  std::array<char, 260> buffer{};
  if (HalQueryInformation(kProcessorClass, nullptr, id, buffer.data(), buffer.size(), nullptr) == 0)
    return std::nullopt;
  return std::string(buffer.data());
}

TEST(ProcessorWindows, CountsTheThreadsThatTheSystemCounts) {
  EXPECT_EQ(AskNumber(9), GetActiveProcessorCount(ALL_PROCESSOR_GROUPS));
  EXPECT_GE(AskNumber(8), 1u);
  EXPECT_LE(AskNumber(8), AskNumber(9));
}

TEST(ProcessorWindows, HasTheVendorAndTheKindThatTheProcessorStates) {
  const auto vendor = CpuidVendor(CpuidInstruction());
  EXPECT_EQ(AskText(0), vendor);
  const CpuidFamily family = FamilyOfVendor(vendor);
  const std::uint32_t expected = family == CpuidFamily::kIntel ? 1 : family == CpuidFamily::kAmd ? 2 : 0;
  EXPECT_EQ(AskNumber(19).value_or(0), expected);
  EXPECT_FALSE(WindowsProcessor().IsArm());
}

TEST(ProcessorWindows, HasTheNameInTheRegistryToo) {
  EXPECT_EQ(AskText(1), WindowsProcessor().Name());
  EXPECT_TRUE(WindowsProcessor().Vendor());
}

TEST(ProcessorWindows, HasTheWaysThatTheProcessorStates) {
  if (IsHybrid(CpuidInstruction())) GTEST_SKIP() << "the cores differ, and the test may run on any";
  for (const CpuidCache& seen : ReadCpuidCaches(CpuidInstruction())) {
    if (seen.cache.level > 3 || seen.cache.kind == CacheKind::kInstruction) continue;
    SCOPED_TRACE(seen.cache.level);
    EXPECT_EQ(AskText(12 + seen.cache.level), AssociativityText(seen.cache.ways));
    const std::uint32_t size = AskNumber(9 + seen.cache.level).value_or(0);
    EXPECT_GE(size, seen.cache.size / 1024);
  }
}

TEST(ProcessorWindows, HasClocksBetweenAHundredMegahertzAndTenGigahertz) {
  for (const unsigned int id : {5u, 7u}) {
    EXPECT_GT(AskNumber(id).value_or(0), 100u);
    EXPECT_LT(AskNumber(id).value_or(0), 10000u);
  }
}

TEST(ProcessorWindows, HasALoadThatIsAPercentage) {
  for (int i = 0; i < 5; ++i) EXPECT_LE(AskNumber(18).value_or(1000), 100u);
  const auto first = WindowsProcessor().Time();
  const auto second = WindowsProcessor().Time();
  ASSERT_TRUE(first && second);
  EXPECT_GT(first->total, 0u);
  EXPECT_LE(first->busy, first->total);
  EXPECT_GE(second->total, first->total);
}

}  // namespace
}  // namespace ostrine
