#include "velmora-report/prune_preview.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace report {

std::vector<TreeFile> FilesThatWouldGo(const std::vector<TreeFile>& files, std::int64_t kept) {
  constexpr std::size_t kMost = 1000;
  if (kept < 0 || static_cast<std::uint64_t>(kept) >= files.size()) return {};
  // Of equal times the one that was met first goes first.
  std::vector<std::pair<std::uint64_t, std::size_t>> by_age;
  by_age.reserve(files.size());
  for (const TreeFile& file : files) by_age.emplace_back(file.last_write_time, by_age.size());
  std::ranges::sort(by_age);
  by_age.resize(std::min(files.size() - static_cast<std::size_t>(kept), kMost));
  std::vector<TreeFile> doomed;
  doomed.reserve(by_age.size());
  for (const auto& [time, number] : by_age) doomed.push_back(files[number]);
  return doomed;
}

}  // namespace report
