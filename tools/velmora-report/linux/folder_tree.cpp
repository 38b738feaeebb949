#include "velmora-report/folder_tree.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "velmora-report/options.h"

namespace report {
namespace {

/// The time as the library compares times: in units of 100 nanoseconds since 1601, none before that. A file
/// system may hold times of any number of years.
std::uint64_t UnitsOf(const timespec& time) {
  constexpr std::int64_t kUnits = 10'000'000;  // in a second
  constexpr std::int64_t kFirst = -11'644'473'600;
  constexpr std::int64_t kLast = 400'000'000'000;
  const std::int64_t seconds = std::clamp<std::int64_t>(time.tv_sec, kFirst, kLast) - kFirst;
  return static_cast<std::uint64_t>(seconds * kUnits + time.tv_nsec / 100);
}

/// Depth first, as the library does it: a folder is read to its end before its subfolders are.
class Tree {
 public:
  void Read(const std::string& folder) {
    std::vector<std::string> subfolders;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
      const std::string name = entry->path().filename().string();
      if (name.find('\\') != std::string::npos) continue;
      Note(std::string(folder).append("/").append(name), subfolders);
    }
    for (const std::string& subfolder : subfolders) {
      constexpr int kMostSubfolders = 1000;
      if (++met_ <= kMostSubfolders) Read(subfolder);
    }
  }
  std::vector<TreeFile> Take() { return std::move(files_); }

 private:
  void Note(const std::string& path, std::vector<std::string>& subfolders) {
    struct stat facts{};
    struct stat target{};
    if (lstat(path.c_str(), &facts) != 0) return;
    if (S_ISDIR(facts.st_mode)) {
      subfolders.push_back(path);
      return;
    }
    const bool is_link = S_ISLNK(facts.st_mode);
    const bool leads_to_folder = is_link && stat(path.c_str(), &target) == 0 && S_ISDIR(target.st_mode);
    if (leads_to_folder || (!is_link && !S_ISREG(facts.st_mode))) return;
    files_.push_back({path, UnitsOf(facts.st_mtim), static_cast<std::uint64_t>(facts.st_size)});
  }

  std::vector<TreeFile> files_;
  int met_ = 0;
};

}  // namespace

std::vector<TreeFile> ListTree(const std::string& folder) {
  Tree tree;
  tree.Read(folder);
  return tree.Take();
}

bool IsThere(const std::string& path) {
  struct stat facts{};
  return lstat(path.c_str(), &facts) == 0;
}

std::string ToNarrowPath(const std::string& path) {
  const bool has_drive = path.size() >= 2 && path[1] == ':';  // to the library, whatever folder is called so
  if (has_drive || path.find('\\') != std::string::npos) {
    throw UsageError("\"" + path + "\" cannot be pruned here: write folders with slashes, without a drive");
  }
  return path;
}

}  // namespace report
