#include "system/oldest_files.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace velmora {
namespace {

bool IsOlder(const OldestFiles::File& left, const OldestFiles::File& right) {
  return std::tie(left.last_write_time, left.number) < std::tie(right.last_write_time, right.number);
}

}  // namespace

std::size_t CountToDelete(std::uint64_t count, int kept) {
  const auto most_kept = static_cast<std::uint64_t>(std::int64_t{kept});  // a negative number keeps any count
  if (count <= most_kept) return 0;
  return static_cast<std::size_t>(std::min<std::uint64_t>(count - most_kept, kMostDeleted));
}

void OldestFiles::Add(std::uint64_t last_write_time, std::string_view folder, std::string_view name) {
  const std::uint64_t number = count_++;
  if (oldest_.size() == kMostDeleted) {
    if (last_write_time >= oldest_.front().last_write_time) return;
    std::pop_heap(oldest_.begin(), oldest_.end(), IsOlder);
  } else {
    oldest_.emplace_back();
  }
  File& file = oldest_.back();
  file.last_write_time = last_write_time;
  file.number = number;
  file.path.assign(folder);
  if (!folder.empty()) file.path += '\\';
  file.path += name;
  std::push_heap(oldest_.begin(), oldest_.end(), IsOlder);
}

std::vector<OldestFiles::File> OldestFiles::TakeAllBut(int kept) {
  std::sort_heap(oldest_.begin(), oldest_.end(), IsOlder);
  oldest_.resize(std::min(oldest_.size(), CountToDelete(count_, kept)));
  return std::exchange(oldest_, {});
}

}  // namespace velmora
