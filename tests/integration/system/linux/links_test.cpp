/// CFileProcess among links, closed folders and odd names, and while somebody exchanges folders for links.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <optional>
#include <random>
#include <thread>

#include "platform/unicode.h"
#include "tests/unit/ostrine/linux/fake_root.h"
#include "velmora/fileprocess.h"

namespace {

using ostrine::test::FakeRoot;
using ostrine::test::WithoutRights;
using testing::IsEmpty;
using testing::SizeIs;
using velmora::unicode::WideFromUtf8;

std::vector<std::wstring> List(const std::filesystem::path& folder) {
  return CFileProcess().GetTypeFiles(L".dmp", WideFromUtf8(folder.string()));
}

void Prune(const std::filesystem::path& folder, int kept) {
  CFileProcess().DeleteFileByPath(folder.string(), kept);
}

TEST(LinksAndFiles, DoNotLeadTheWalkRoundOrOut) {
  const FakeRoot root;
  root.Write("top/1.dmp", "");
  root.Write("outside/2.dmp", "");
  root.Link("top/loop", ".");
  root.Link("top/out", "../outside");
  root.Link("top/up", "..");
  EXPECT_THAT(List(root.Path() / "top"), SizeIs(1));
  Prune(root.Path() / "top", 0);
  EXPECT_THAT(List(root.Path() / "top"), IsEmpty());
  EXPECT_THAT(List(root.Path() / "outside"), SizeIs(1));
  EXPECT_TRUE(std::filesystem::is_symlink(root.Path() / "top/out")) << "a link to a folder is no file";
}

TEST(LinksAndFiles, OfNamesOutsideUtf8AreListedAndPrunedAllTheSame) {
  const FakeRoot root;
  root.Write("caf\xE9/\xFF\xFE.dmp", "");
  root.Write("caf\xC3\xA9.dmp", "");
  EXPECT_THAT(List(root.Path()), SizeIs(2));
  Prune(root.Path(), 0);
  EXPECT_THAT(List(root.Path()), IsEmpty());
}

TEST(LinksAndFiles, InClosedFoldersAreLeftOut) {
  const FakeRoot root;
  root.Write("1.dmp", "");
  root.Write("closed/2.dmp", "");
  root.Forbid("closed");
  {
    const WithoutRights without_rights;
    EXPECT_THAT(List(root.Path()), SizeIs(1));
    Prune(root.Path(), 0);
  }
  std::filesystem::permissions(root.Path() / "closed", std::filesystem::perms(0755));
  EXPECT_THAT(List(root.Path()), SizeIs(2)) << "nothing could be deleted";
}

TEST(LinksAndFiles, AreWalkedToAnyDepthWithFewFilesOpen) {
  const FakeRoot root;
  std::string deep;
  for (int i = 0; i < 900; ++i) deep += "d/";
  root.Write(deep + "1.dmp", "");
  EXPECT_THAT(List(root.Path()), SizeIs(1));
  Prune(root.Path(), 0);
  EXPECT_THAT(List(root.Path()), IsEmpty());
}

/// Exchanges folders of a tree for links to its neighbour, and back, as long as it lives.
class Attacker {
 public:
  Attacker(const std::filesystem::path& root, int folders)
      : thread_([=, this] {
          std::mt19937 random(3);
          while (!is_over_) Exchange(root, std::to_string(static_cast<int>(random() % 1000) % folders));
        }) {}
  Attacker(const Attacker&) = delete;
  Attacker& operator=(const Attacker&) = delete;
  ~Attacker() {
    is_over_ = true;
    thread_.join();
  }

 private:
  static void Exchange(const std::filesystem::path& root, const std::string& folder) {
    std::error_code ignored;
    std::filesystem::rename(root / "top" / folder, root / ("aside-" + folder), ignored);
    std::filesystem::create_symlink("../outside/" + folder, root / "top" / folder, ignored);
    std::filesystem::remove(root / "top" / folder, ignored);
    std::filesystem::rename(root / ("aside-" + folder), root / "top" / folder, ignored);
  }

  std::atomic<bool> is_over_ = false;
  std::thread thread_;
};

TEST(LinksAndFiles, OutsideAreSafeWhileFoldersAreExchangedForLinksAllTheTime) {
  const FakeRoot root;
  constexpr int kFolders = 8;
  constexpr int kFiles = 20;
  const auto name = [](int folder, int file) {
    return std::to_string(folder) + "/" + std::to_string(file) + ".dmp";
  };
  for (int folder = 0; folder < kFolders; ++folder) {
    for (int file = 0; file < kFiles; ++file) root.Write("outside/" + name(folder, file), "");
  }
  std::optional<Attacker> attacker(std::in_place, root.Path(), kFolders);
  for (int round = 0; round < 40; ++round) {
    for (int folder = 0; folder < kFolders; ++folder) {
      std::error_code ignored;
      std::filesystem::create_directories(root.Path() / "top" / std::to_string(folder), ignored);
      for (int file = 0; file < kFiles; ++file) {
        // Through no link: the attacker may have put one there.
        const auto path = root.Path() / "top" / name(folder, file);
        if (!std::filesystem::is_symlink(path.parent_path())) std::ofstream(path, std::ios::app);
      }
    }
    Prune(root.Path() / "top", 0);
  }
  attacker.reset();
  EXPECT_THAT(List(root.Path() / "outside"), SizeIs(kFolders * kFiles));
}

TEST(LinksAndFiles, LoseNoneOfTheNewestWhileOtherFoldersAreExchanged) {
  constexpr int kTrees = 300;
  constexpr int kFolders = 4;
  constexpr std::size_t kNewest = 9;
  std::mt19937 random(17);
  for (int tree = 0; tree < kTrees; ++tree) {
    const FakeRoot root;
    // The newest stand where nothing is exchanged, so that they must all be left.
    for (std::size_t i = 0; i < kNewest; ++i) root.Write("top/calm/" + std::to_string(i) + ".dmp", "");
    std::size_t old = 0;
    for (int folder = 0; folder < kFolders; ++folder) {
      root.Write("outside/" + std::to_string(folder) + "/precious.dmp", "");
      const int files = static_cast<int>(random() % 6);
      for (int file = 0; file <= files; ++file, ++old) {
        const std::string name = "top/" + std::to_string(folder) + "/" + std::to_string(file) + ".dmp";
        root.Write(name, "");
        const auto age = std::chrono::hours(1 + random() % 1000);
        std::filesystem::last_write_time(root.Path() / name,
                                         std::filesystem::file_time_type::clock::now() - age);
      }
    }
    const std::size_t kept = kNewest + random() % 4;
    {
      const Attacker attacker(root.Path(), kFolders);
      Prune(root.Path() / "top", static_cast<int>(kept));
    }
    EXPECT_THAT(List(root.Path() / "top/calm"), SizeIs(kNewest)) << tree;
    EXPECT_THAT(List(root.Path() / "outside"), SizeIs(kFolders)) << tree;
    EXPECT_GE(List(root.Path() / "top").size(), std::min(kept, kNewest + old)) << tree;
  }
}

TEST(CommandFiles, RunOnByThemselvesAndLeaveNoChildBehind) {
  const FakeRoot root;
  root.Write("run.cmd", "#!/bin/sh\nsleep 1\n: > \"$(dirname \"$0\")/done\"\n");
  std::filesystem::permissions(root.Path() / "run.cmd", std::filesystem::perms(0755));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(WideFromUtf8(root.Path().string()) + L"\\run.cmd"), 1);
  EXPECT_FALSE(std::filesystem::exists(root.Path() / "done")) << "it is not waited for";
  while (!std::filesystem::exists(root.Path() / "done")) {
    ASSERT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  siginfo_t child{};
  EXPECT_EQ(waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT), -1);
  EXPECT_EQ(errno, ECHILD) << "there is no child, and so none that has ended";
}

TEST(CommandFiles, ThatAreMissingOrNoneAreNotStarted) {
  const FakeRoot root;
  root.Write("text", "no program");
  const std::wstring folder = WideFromUtf8(root.Path().string());
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(folder + L"\\nosuch"), 0);
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(folder + L"\\text"), 0);
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(folder), 0);
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(L""), 0);
}

}  // namespace
