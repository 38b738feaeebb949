#include "ostrine/linux/cpu_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace ostrine {
namespace {

using Numbers = std::vector<std::uint32_t>;

TEST(CpuText, ReadsNumbersThatAreTheWholeText) {
  EXPECT_EQ(ParseNumber("0"), 0u);
  EXPECT_EQ(ParseNumber("18446744073709551615"), 18446744073709551615u);
  for (const char* bad : {"", " 1", "1 ", "-1", "+1", "0x1", "1\n", "18446744073709551616", "1.5"}) {
    EXPECT_EQ(ParseNumber(bad), std::nullopt) << bad;
  }
}

TEST(CpuText, ReadsListsOfProcessors) {
  EXPECT_EQ(ParseProcessorList("0"), (Numbers{0}));
  EXPECT_EQ(ParseProcessorList("0-3"), (Numbers{0, 1, 2, 3}));
  EXPECT_EQ(ParseProcessorList("0-1,4,6-7"), (Numbers{0, 1, 4, 6, 7}));
  EXPECT_EQ(ParseProcessorList("8190-8191"), (Numbers{8190, 8191}));
}

TEST(CpuText, RefusesListsThatAreNone) {
  for (const char* bad : {"",      ",",     "0,",     ",0",           "0,,1",
                          "-",     "0-",    "-1",     "1-0",          "0-1-2",
                          "0 1",   "0-1\n", "a",      "1,0",          "0,0",
                          "0-3,2", "8192",  "0-8192", "0-4294967295", "0-18446744073709551615"}) {
    EXPECT_EQ(ParseProcessorList(bad), std::nullopt) << bad;
  }
}

TEST(CpuText, ReadsBackEveryListThatTheKernelCouldWrite) {
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    std::set<std::uint32_t> wanted;
    const std::size_t count = 1 + random() % 40;
    while (wanted.size() < count) wanted.insert(random() % 64);
    std::string list;
    for (auto next = wanted.begin(); next != wanted.end();) {
      const std::uint32_t first = *next;
      std::uint32_t last = first;
      while (++next != wanted.end() && *next == last + 1) last = *next;
      list += (list.empty() ? "" : ",") + std::to_string(first);
      if (last != first) list += '-' + std::to_string(last);
    }
    EXPECT_EQ(ParseProcessorList(list), Numbers(wanted.begin(), wanted.end())) << list;
  }
}

TEST(CpuText, ReadsCacheSizesInKibibytes) {
  EXPECT_EQ(ParseCacheSize("48K"), 48u * 1024);
  EXPECT_EQ(ParseCacheSize("266240K"), std::uint64_t{266240} * 1024);
  for (const char* bad : {"", "K", "0K", "48", "48M", "48k", " 48K", "48K ", "-1K", "4294967296K"}) {
    EXPECT_EQ(ParseCacheSize(bad), std::nullopt) << bad;
  }
}

constexpr const char* kInfo =
    "processor\t: 0\nvendor_id\t: GenuineIntel\nmodel name\t: Intel(R) Core(TM)2 Duo CPU     T7300  @ "
    "2.00GHz\n"
    "cpu MHz\t\t: 800.000\nempty\t\t:\npower management:\n\n"
    "processor\t: 1\nvendor_id\t: other\ncpu MHz\t\t: 1999.500\n\n";

TEST(CpuText, FindsTheFirstValueOfAKey) {
  EXPECT_EQ(ProcessorInfoValue(kInfo, "vendor_id"), "GenuineIntel");
  EXPECT_EQ(ProcessorInfoValue(kInfo, "model name"), "Intel(R) Core(TM)2 Duo CPU     T7300  @ 2.00GHz");
  for (const char* missing : {"model", "vendor", "empty", "power management", "0", ""}) {
    EXPECT_EQ(ProcessorInfoValue(kInfo, missing), std::nullopt) << missing;
  }
  EXPECT_EQ(ProcessorInfoValue("name: a: b", "name"), "a: b");
  EXPECT_EQ(ProcessorInfoValue("", "name"), std::nullopt);
}

TEST(CpuText, FindsTheHighestClockRounded) {
  EXPECT_EQ(HighestListedClock(kInfo), 2000u);
  EXPECT_EQ(HighestListedClock("cpu MHz : 2299.998\n"), 2300u);
  EXPECT_EQ(HighestListedClock("cpu MHz : 2299.4\n"), 2299u);
  EXPECT_EQ(HighestListedClock("cpu MHz : 2299"), 2299u);
  for (const char* bad :
       {"", "cpu MHz : 0.000", "cpu MHz : fast", "cpu MHz : -1.0", "cpu MHz : 4294967295.9", "MHz : 5"}) {
    EXPECT_EQ(HighestListedClock(bad), std::nullopt) << bad;
  }
}

TEST(CpuText, AddsUpTheTimeOfAllProcessors) {
  const auto time = ParseProcessorTime("cpu  100 20 30 800 50 1 2 3 40 5\ncpu0 1 1 1 1 1 1 1 1 1 1\n");
  ASSERT_TRUE(time);
  // Guests' 40 and 5 are part of the first two numbers already.
  EXPECT_EQ(time->total, 100u + 20 + 30 + 800 + 50 + 1 + 2 + 3);
  EXPECT_EQ(time->busy, 100u + 20 + 30 + 1 + 2 + 3);
}

TEST(CpuText, ReadsTheFourColumnsOfVeryOldKernels) {
  const auto time = ParseProcessorTime("cpu 10 0 20 70\n");
  ASSERT_TRUE(time);
  EXPECT_EQ(time->total, 100u);
  EXPECT_EQ(time->busy, 30u);
}

TEST(CpuText, RefusesTimesThatAreNone) {
  for (const char* bad :
       {"", "\n", "cpu", "cpu \n", "cpu 1 2 3\n", "cpu0 1 2 3 4\n", "cpux 1 2 3 4\n", "cpu 1 2 x 4\n",
        "cpu 1 2 -3 4\n", "intr 1 2 3 4\ncpu 1 2 3 4\n", "cpu 1 2 3 18446744073709551615\n"}) {
    EXPECT_FALSE(ParseProcessorTime(bad)) << bad;
  }
}

}  // namespace
}  // namespace ostrine
