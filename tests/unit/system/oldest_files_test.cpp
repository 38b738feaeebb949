#include "system/oldest_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmora::CountToDelete;
using velmora::OldestFiles;

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kMost = std::numeric_limits<int>::max();

std::vector<std::string> PathsOf(const std::vector<OldestFiles::File>& files) {
  std::vector<std::string> paths;
  for (const auto& file : files) paths.push_back(file.path);
  return paths;
}

TEST(CountToDelete, IsWhatGoesBeyondTheKeptNumber) {
  EXPECT_EQ(CountToDelete(5, 5), 0U);
  EXPECT_EQ(CountToDelete(5, 3), 2U);
  EXPECT_EQ(CountToDelete(5, 0), 5U);
  EXPECT_EQ(CountToDelete(5, 6), 0U);
  EXPECT_EQ(CountToDelete(0, 0), 0U);
}

TEST(CountToDelete, IsNoneForANegativeNumberWhichKeepsEverything) {
  for (const int kept : {-1, -5, kLeast, kLeast + 1}) {
    EXPECT_EQ(CountToDelete(5, kept), 0U) << kept;
    EXPECT_EQ(CountToDelete(std::uint64_t{1} << 62, kept), 0U) << kept;
  }
}

TEST(CountToDelete, IsAThousandAtMost) {
  EXPECT_EQ(CountToDelete(1500, 0), 1000U);
  EXPECT_EQ(CountToDelete(1500, 499), 1000U);
  EXPECT_EQ(CountToDelete(1500, 500), 1000U);
  EXPECT_EQ(CountToDelete(1500, 501), 999U);
  EXPECT_EQ(CountToDelete(std::uint64_t{kMost} + 1, kMost), 1U);
  EXPECT_EQ(CountToDelete(std::uint64_t{kMost}, kMost), 0U);
  EXPECT_EQ(CountToDelete(std::numeric_limits<std::uint64_t>::max(), kMost), 1000U);
}

TEST(OldestFiles, GiveTheOldestFirstAndLeaveTheNewest) {
  OldestFiles files;
  files.Add(30, "", "c");
  files.Add(10, "sub", "a");
  files.Add(20, "sub\\deep", "b");
  files.Add(40, "", "d");
  EXPECT_EQ(files.Count(), 4U);
  EXPECT_THAT(PathsOf(files.TakeAllBut(1)), ElementsAre("sub\\a", "sub\\deep\\b", "c"));
}

TEST(OldestFiles, CompareTimesAsWholeNumbers) {
  OldestFiles files;
  files.Add(0xFFFFFFFF00000000, "", "newest");
  files.Add(0x00000000FFFFFFFF, "", "oldest");
  files.Add(0x0000000100000000, "", "newer");
  files.Add(0, "", "without a time");
  EXPECT_THAT(PathsOf(files.TakeAllBut(1)), ElementsAre("without a time", "oldest", "newer"));
}

TEST(OldestFiles, TakeEqualTimesInTheirOrder) {
  OldestFiles files;
  for (const char* const name : {"a", "b", "c", "d"}) files.Add(7, "", name);
  EXPECT_THAT(PathsOf(files.TakeAllBut(2)), ElementsAre("a", "b"));
}

TEST(OldestFiles, AreNoneWhenAllAreKept) {
  for (const int kept : {2, 3, kMost, -1, kLeast}) {
    OldestFiles files;
    files.Add(1, "", "a");
    files.Add(2, "", "b");
    EXPECT_THAT(files.TakeAllBut(kept), IsEmpty()) << kept;
  }
}

TEST(OldestFiles, AreTheOldestThousandOfFifteenHundred) {
  for (const bool newest_first : {false, true}) {
    OldestFiles files;
    for (int i = 0; i < 1500; ++i) {
      const int age = newest_first ? 1499 - i : i;
      files.Add(static_cast<std::uint64_t>(age), "", std::to_string(age));
    }
    const auto chosen = files.TakeAllBut(0);
    ASSERT_THAT(chosen, SizeIs(1000));
    for (std::size_t i = 0; i < chosen.size(); ++i) EXPECT_EQ(chosen[i].path, std::to_string(i));
  }
}

TEST(OldestFiles, AreThoseThatSortingAllWouldGive) {
  std::mt19937_64 random(20240607);
  for (int round = 0; round < 60; ++round) {
    const auto count = static_cast<std::size_t>(random() % 2500);
    const std::uint64_t times = 1 + random() % (round % 2 == 0 ? 50 : 1'000'000'000);
    OldestFiles files;
    std::vector<std::pair<std::uint64_t, std::size_t>> all;  // the time, and which file
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint64_t time = random() % times;
      files.Add(time, "f", std::to_string(i));
      all.emplace_back(time, i);
    }
    const int kept = static_cast<int>(random() % 2600);
    std::ranges::sort(all);
    const auto beyond = count - std::min(count, static_cast<std::size_t>(kept));
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < std::min<std::size_t>(beyond, 1000); ++i) {
      expected.push_back("f\\" + std::to_string(all[i].second));
    }
    ASSERT_EQ(PathsOf(files.TakeAllBut(kept)), expected) << count << " files, " << kept << " kept";
  }
}

}  // namespace
