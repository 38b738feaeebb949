/// Writes what the kernel shows of processors below a fake root.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fake_root.h"

namespace ostrine::test {

/// A cache as the kernel lists it for every processor that shares it.
struct TreeCache {
  int level;
  const char* type;
  const char* size;
  int ways;
  int sets;
  std::vector<int> shared_by;
};

inline std::string FolderOf(int processor) {
  return "sys/devices/system/cpu/cpu" + std::to_string(processor) + '/';
}

inline std::string ListOf(const std::vector<int>& processors) {
  std::string list;
  for (const int processor : processors) list += (list.empty() ? "" : ",") + std::to_string(processor);
  return list + '\n';
}

/// Writes which processors are in use, and the cores that they belong to.
inline void WriteCores(const FakeRoot& root, std::string_view online,
                       const std::vector<std::vector<int>>& cores,
                       const std::string& file = "core_cpus_list") {
  root.Write("sys/devices/system/cpu/online", online);
  for (const auto& core : cores) {
    for (const int processor : core) root.Write(FolderOf(processor) + "topology/" + file, ListOf(core));
  }
}

/// Writes caches; each gets the next index in the folders of the processors that share it.
inline void WriteCaches(const FakeRoot& root, const std::vector<TreeCache>& caches) {
  std::vector<int> next(256);
  for (const TreeCache& cache : caches) {
    for (const int processor : cache.shared_by) {
      auto& index = next.at(static_cast<std::size_t>(processor));
      const std::string folder = FolderOf(processor) + "cache/index" + std::to_string(index++) + '/';
      root.Write(folder + "level", std::to_string(cache.level) + '\n');
      root.Write(folder + "type", std::string(cache.type) + '\n');
      root.Write(folder + "size", std::string(cache.size) + '\n');
      root.Write(folder + "ways_of_associativity", std::to_string(cache.ways) + '\n');
      root.Write(folder + "number_of_sets", std::to_string(cache.sets) + '\n');
      root.Write(folder + "shared_cpu_list", ListOf(cache.shared_by));
    }
  }
}

inline void WriteClocks(const FakeRoot& root, int processor, std::string_view current,
                        std::string_view maximum) {
  root.Write(FolderOf(processor) + "cpufreq/scaling_cur_freq", std::string(current) + '\n');
  root.Write(FolderOf(processor) + "cpufreq/cpuinfo_max_freq", std::string(maximum) + '\n');
}

/// A laptop with two fast cores of two threads each, and four slow cores that share a level 2 cache.
inline void WriteHybridLaptop(const FakeRoot& root) {
  WriteCores(root, "0-7\n", {{0, 1}, {2, 3}, {4}, {5}, {6}, {7}});
  std::vector<TreeCache> caches;
  for (const std::vector<int>& core : {std::vector{0, 1}, std::vector{2, 3}}) {
    caches.push_back({1, "Data", "48K", 12, 64, core});
    caches.push_back({1, "Instruction", "32K", 8, 64, core});
    caches.push_back({2, "Unified", "1280K", 10, 2048, core});
  }
  for (int slow = 4; slow < 8; ++slow) {
    caches.push_back({1, "Data", "32K", 8, 64, {slow}});
    caches.push_back({1, "Instruction", "64K", 8, 128, {slow}});
  }
  caches.push_back({2, "Unified", "2048K", 16, 2048, {4, 5, 6, 7}});
  caches.push_back({3, "Unified", "18432K", 12, 24576, {0, 1, 2, 3, 4, 5, 6, 7}});
  WriteCaches(root, caches);
  for (int processor = 0; processor < 8; ++processor) {
    WriteClocks(root, processor, processor == 2 ? "4389120" : "400000",
                processor < 4 ? "4700000" : "3400000");
  }
  root.Write("proc/stat", "cpu  1000 0 500 8000 500 0 0 0 0 0\n");
}

/// A laptop with a two-core processor whose cores share the instruction cache of a pair, the names of its
/// topology from before Linux 5.3, and no list of its clocks.
inline void WriteOldLaptop(const FakeRoot& root) {
  WriteCores(root, "0-1\n", {{0}, {1}}, "thread_siblings_list");
  WriteCaches(root, {{1, "Data", "16K", 4, 64, {0}},
                     {1, "Data", "16K", 4, 64, {1}},
                     {1, "Instruction", "64K", 2, 512, {0, 1}},
                     {2, "Unified", "2048K", 16, 2048, {0, 1}}});
  root.Write("proc/cpuinfo",
             "processor\t: 0\nvendor_id\t: AuthenticAMD\nmodel name\t: AMD A6-4400M APU with Radeon(tm) HD "
             "Graphics\n"
             "cpu MHz\t\t: 1400.000\n\nprocessor\t: 1\ncpu MHz\t\t: 2699.934\n\n");
}

}  // namespace ostrine::test
