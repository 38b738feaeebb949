#include "ostrine/common/cache.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace ostrine {
namespace {

Cache OfSize(std::uint64_t size) { return {.level = 1, .size = size}; }

TEST(Cache, AddsSizesInKibibytes) {
  EXPECT_EQ(TotalCacheSize(std::vector{OfSize(48 << 10), OfSize(32 << 10), OfSize(48 << 10)}), 128u);
  EXPECT_EQ(TotalCacheSize(std::vector{OfSize(512), OfSize(512)}), 1u);
}

TEST(Cache, HasNoTotalOfNothing) {
  EXPECT_EQ(TotalCacheSize({}), std::nullopt);
  EXPECT_EQ(TotalCacheSize(std::vector{OfSize(0)}), std::nullopt);
  EXPECT_EQ(TotalCacheSize(std::vector{OfSize(1023)}), std::nullopt);
}

TEST(Cache, HasNoTotalThatDoesNotFitANumber) {
  constexpr std::uint64_t kMost = std::uint64_t{0xFFFFFFFF} << 10;
  EXPECT_EQ(TotalCacheSize(std::vector{OfSize(kMost)}), 0xFFFFFFFFu);
  EXPECT_EQ(TotalCacheSize(std::vector{OfSize(kMost), OfSize(1024)}), std::nullopt);
  const auto greatest = OfSize(std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(TotalCacheSize(std::vector{greatest, greatest}), std::nullopt);
}

TEST(Cache, SaysItsWaysInTheWordsOfSmbios) {
  EXPECT_EQ(AssociativityText({.count = 1}), "Direct Mapped");
  EXPECT_EQ(AssociativityText({.count = 2}), "2-way Set-Associative");
  EXPECT_EQ(AssociativityText({.count = 8}), "8-way Set-Associative");
  EXPECT_EQ(AssociativityText({.count = 11}), "11-way Set-Associative");
  EXPECT_EQ(AssociativityText({.full = true}), "Fully Associative");
  EXPECT_EQ(AssociativityText({.count = 64, .full = true}), "Fully Associative");
  EXPECT_EQ(AssociativityText({}), std::nullopt);
}

TEST(Cache, IsRepresentedByTheFirstThatHoldsData) {
  const Cache instructions{.level = 1, .kind = CacheKind::kInstruction, .size = 1};
  const Cache data{.level = 1, .kind = CacheKind::kData, .size = 2};
  const Cache unified{.level = 1, .kind = CacheKind::kUnified, .size = 3};
  const auto main_size = [](const std::vector<Cache>& caches) {
    const Cache* const main = MainCache(caches);
    return main == nullptr ? 0 : main->size;
  };
  EXPECT_EQ(main_size({instructions, data, unified}), 2u);
  EXPECT_EQ(main_size({instructions, unified, data}), 3u);
  EXPECT_EQ(main_size({instructions}), 1u);
  EXPECT_EQ(main_size({}), 0u);
}

}  // namespace
}  // namespace ostrine
