/// Which files go when a folder is pruned. Pure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// The most files that one pruning deletes.
inline constexpr std::size_t kMostDeleted = 1000;

/// How many of `count` files go so that the newest `kept` stay, at most kMostDeleted; none for a negative
/// number.
std::size_t CountToDelete(std::uint64_t count, int kept);

/// The oldest of the files that it is shown, as many as one pruning can delete, and how many it was shown.
/// The others are not kept, so that memory does not grow with the tree.
class OldestFiles {
 public:
  struct File {
    std::uint64_t last_write_time;
    std::uint64_t number;  ///< files of equal times go in the order in which they were shown
    std::string path;
  };

  /// Shows it the file `name` of `folder`, whose path it becomes with a backslash between; an empty folder
  /// leaves the name alone.
  void Add(std::uint64_t last_write_time, std::string_view folder, std::string_view name);

  std::uint64_t Count() const { return count_; }

  /// Those that go so that the newest `kept` of all stay, oldest first.
  std::vector<File> TakeAllBut(int kept);

 private:
  std::vector<File> oldest_;  ///< a heap with the newest of them in front
  std::uint64_t count_ = 0;
};

}  // namespace velmora
