// A question about the processor costs no more than the facts that it is about.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

#include "access_recorder.h"
#include "ostrine/linux/processor.h"
#include "processor_tree.h"

namespace ostrine {
namespace {

class ProcessorAccess : public ::testing::Test {
 protected:
  ProcessorAccess() {
    test::WriteHybridLaptop(root_);
    root_.Write("proc/cpuinfo", "processor\t: 0\nvendor_id\t: GenuineIntel\nmodel name\t: Test\n\n");
  }

  /// The files that a question opens, each of which it opens once.
  template <class Ask>
  std::set<std::string> Opened(Ask&& ask) {
    test::AccessRecorder recorder(root_.Path());
    ask(LinuxProcessor(root_.Path()));
    std::set<std::string> paths;
    for (const auto& [path, times] : recorder.TimesOpened()) {
      EXPECT_EQ(times, 1) << path;
      paths.insert(path);
    }
    return paths;
  }

  std::set<std::string> OpenedForCaches(unsigned int level, CacheExtent extent) {
    return Opened(
        [&](const LinuxProcessor& processor) { EXPECT_FALSE(processor.Caches(level, extent).empty()); });
  }

  test::FakeRoot root_;
};

/// How many of the files have this name.
std::ptrdiff_t Count(const std::set<std::string>& files, const std::string& name) {
  return std::count_if(files.begin(), files.end(),
                       [&](const std::string& path) { return path.ends_with("/" + name); });
}

TEST_F(ProcessorAccess, LooksAtEachFactOnceForAQuestion) {
  Opened([](const LinuxProcessor& processor) { processor.Vendor(); });
  Opened([](const LinuxProcessor& processor) { processor.Name(); });
  Opened([](const LinuxProcessor& processor) { processor.CurrentClock(); });
  Opened([](const LinuxProcessor& processor) { processor.MaximumClock(); });
  Opened([](const LinuxProcessor& processor) { processor.Cores(); });
  Opened([](const LinuxProcessor& processor) { processor.Threads(); });
  Opened([](const LinuxProcessor& processor) { processor.Time(); });
}

TEST_F(ProcessorAccess, TakesNoMoreThanTheFirstProcessorsDataCacheForItsWays) {
  const std::string first = test::FolderOf(0) + "cache/index0/";
  EXPECT_EQ(OpenedForCaches(1, CacheExtent::kFirst),
            (std::set<std::string>{first + "level", first + "type", first + "ways_of_associativity",
                                   first + "number_of_sets"}));
}

TEST_F(ProcessorAccess, AsksWhoIsInUseOnceTheFirstProcessorShowsNoCaches) {
  std::filesystem::remove_all(root_.Path() / test::FolderOf(0) / "cache");
  root_.Write("sys/devices/system/cpu/online", "1-7\n");
  const auto opened = OpenedForCaches(1, CacheExtent::kFirst);
  EXPECT_TRUE(opened.contains("sys/devices/system/cpu/online"));
  EXPECT_TRUE(opened.contains(test::FolderOf(1) + "cache/index0/ways_of_associativity"));
}

TEST_F(ProcessorAccess, LooksForACacheNoFurtherThanItsLevel) {
  const auto second = OpenedForCaches(2, CacheExtent::kMachine);
  // Of each of the three processors that stand for two cores and a group: the caches next to that of the
  // level.
  EXPECT_EQ(Count(second, "level"), 3 * 3);
  EXPECT_EQ(Count(second, "size"), 3);
  EXPECT_EQ(Count(second, "shared_cpu_list"), 3);
  EXPECT_EQ(Count(second, "ways_of_associativity"), 0);
}

TEST_F(ProcessorAccess, LooksAtASharedCacheThroughOneOfItsProcessors) {
  const auto third = OpenedForCaches(3, CacheExtent::kMachine);
  EXPECT_EQ(Count(third, "size"), 1);
  for (const std::string& path : third) {
    EXPECT_TRUE(path.starts_with(test::FolderOf(0)) || path.ends_with("cpu/online")) << path;
  }
}

}  // namespace
}  // namespace ostrine
