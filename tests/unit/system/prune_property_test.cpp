/// Pruning of made-up trees with links in them, also while somebody exchanges a folder for a link.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <string>

#include "simulator/run.h"
#include "velmora/fileprocess.h"

namespace {

using simulator::File;
using simulator::Machine;

constexpr const char* kRoot = "C:\\root";
constexpr const char* kOutside = "C:\\outside";

bool IsBelow(const std::string& path, const std::string& folder) { return path.starts_with(folder + "\\"); }

/// A tree below `kRoot`, with files outside that have the names and times of those inside.
class Tree {
 public:
  explicit Tree(std::mt19937& random) : random_(random) {
    machine_ = simulator::BlankMachine();
    machine_.files = {
        {.path = "C:", .folder = true}, {.path = kRoot, .folder = true}, {.path = kOutside, .folder = true}};
    const auto entries = Below(18);
    for (unsigned int i = 0; i < entries; ++i) Add(i);
    Copy();
  }

  const Machine& Made() const { return machine_; }
  const std::vector<std::string>& Folders() const { return folders_; }
  unsigned int Below(unsigned int limit) { return static_cast<unsigned int>(random_() % limit); }

  /// The files that pruning may look at, by their times, which all differ.
  const std::map<std::uint64_t, std::string>& Files() const { return files_; }

 private:
  void Add(unsigned int number) {
    const std::string folder = folders_[Below(static_cast<unsigned int>(folders_.size()))];
    const std::string path = folder + "\\" + std::to_string(number);
    switch (Below(8)) {
      case 0:
      case 1:
        folders_.push_back(path);
        machine_.files->push_back({.path = path, .folder = true});
        return;
      case 2:
        machine_.files->push_back({.path = path, .link_target = LinkTarget()});
        return;
      default:
        const std::uint64_t time = (std::uint64_t{Below(1000)} << 32) + Below(1000) * 100 + number;
        files_.emplace(time, path);
        machine_.files->push_back({.path = path, .last_write_time = time});
    }
  }

  /// A folder, as a link to a file counts as a file: outside, the root itself, another one, or nowhere.
  std::string LinkTarget() {
    switch (Below(4)) {
      case 0:
        return kOutside;
      case 1:
        return kRoot;
      case 2:
        return folders_[Below(static_cast<unsigned int>(folders_.size()))];
      default:
        return "C:";
    }
  }

  /// Has everything inside stand outside too, where nothing may be touched.
  void Copy() {
    const auto inside = *machine_.files;
    for (File file : inside) {
      if (!IsBelow(file.path, kRoot) || file.link_target) continue;
      file.path.replace(0, std::string(kRoot).size(), kOutside);
      machine_.files->push_back(file);
    }
  }

  std::mt19937& random_;
  Machine machine_;
  std::vector<std::string> folders_{kRoot};
  std::map<std::uint64_t, std::string> files_;
};

/// Puts a link to the folder's copy outside in its place.
void ExchangeForALink(Machine& machine, const std::string& folder) {
  std::erase_if(*machine.files,
                [&](const File& file) { return file.path == folder || IsBelow(file.path, folder); });
  std::string target = folder;
  target.replace(0, std::string(kRoot).size(), kOutside);
  machine.files->push_back({.path = folder, .link_target = target});
}

std::vector<File> Outside(const Machine& machine) {
  std::vector<File> files;
  std::ranges::copy_if(*machine.files, std::back_inserter(files),
                       [](const File& file) { return IsBelow(file.path, kOutside); });
  return files;
}

std::set<std::string> Left(const Machine& machine) {
  std::set<std::string> paths;
  for (const File& file : *machine.files) paths.insert(file.path);
  return paths;
}

/// How many trees a run goes through: as many as VELMORA_TREES says, else few enough not to be waited for.
int Trees() {
  const char* const wanted = std::getenv("VELMORA_TREES");
  return wanted != nullptr ? std::max(1, std::atoi(wanted)) : 3'000;
}

TEST(PruningATree, LeavesExactlyTheNewestAndAllThatIsNoFile) {
  std::mt19937 random(11);
  for (int i = 0; i < Trees(); ++i) {
    Tree tree(random);
    auto run = simulator::Use(tree.Made());
    const auto kept = tree.Below(20);
    CFileProcess().DeleteFileByPath(kRoot, static_cast<int>(kept));

    const auto count = tree.Files().size();
    auto expected = Left(tree.Made());
    auto doomed = count - std::min<std::size_t>(count, kept);
    for (auto file = tree.Files().begin(); doomed > 0; ++file, --doomed) expected.erase(file->second);
    ASSERT_EQ(Left(run.machine()), expected) << "tree " << i << ", " << kept << " kept";
  }
}

TEST(PruningATree, TouchesNothingOutsideAndKeepsTheNewestWhateverIsExchangedMeanwhile) {
  std::mt19937 random(12);
  for (int i = 0; i < Trees(); ++i) {
    Tree tree(random);
    const auto outside = Outside(tree.Made());
    auto run = simulator::Use(tree.Made());
    const auto& folders = tree.Folders();
    const std::string exchanged = folders[tree.Below(static_cast<unsigned int>(folders.size()))];
    if (exchanged != kRoot) {
      run.BeforeCall(static_cast<int>(tree.Below(80)),
                     [&](Machine& machine) { ExchangeForALink(machine, exchanged); });
    }
    const auto kept = tree.Below(20);
    CFileProcess().DeleteFileByPath(kRoot, static_cast<int>(kept));

    ASSERT_EQ(Outside(run.machine()), outside) << "tree " << i;
    const auto left = Left(run.machine());
    auto file = tree.Files().rbegin();
    for (unsigned int newest = 0; newest < kept && file != tree.Files().rend(); ++newest, ++file) {
      if (exchanged != kRoot && IsBelow(file->second, exchanged)) continue;
      ASSERT_TRUE(left.contains(file->second)) << "tree " << i << " lost " << file->second;
    }
  }
}

}  // namespace
