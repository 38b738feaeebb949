#include "velmora-report/folder_tree.h"

#include <sys/stat.h>

#include <filesystem>

namespace report {
namespace {

/// Depth first, as the library does it: a folder is read to its end before its subfolders are.
class Tree {
 public:
  void Read(const std::string& folder) {
    std::vector<std::string> subfolders;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
      const std::string name = entry->path().filename().string();
      if (name.find('\\') == std::string::npos) Note(folder + "/" + name, subfolders);
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
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    constexpr std::int64_t kShift = std::int64_t{1} << 62;  // puts times before 1970 in front of the others
    const std::int64_t time = std::int64_t{facts.st_mtim.tv_sec} * kNanoseconds + facts.st_mtim.tv_nsec;
    files_.push_back(
        {path, static_cast<std::uint64_t>(time / 100 + kShift), static_cast<std::uint64_t>(facts.st_size)});
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

std::string ToNarrowPath(const std::string& path) { return path; }

}  // namespace report
