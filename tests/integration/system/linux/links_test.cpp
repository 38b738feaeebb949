/// CFileProcess among links, closed folders and odd names, and while somebody exchanges folders for links.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
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
  std::atomic<bool> is_over = false;
  std::thread attacker([&] {
    std::mt19937 random(3);
    const auto at = [&](const std::string& path) { return root.Path() / path; };
    while (!is_over) {
      const std::string folder = std::to_string(random() % kFolders);
      std::error_code ignored;
      std::filesystem::rename(at("top/" + folder), at("aside-" + folder), ignored);
      std::filesystem::create_symlink("../outside/" + folder, at("top/" + folder), ignored);
      std::filesystem::remove(at("top/" + folder), ignored);
      std::filesystem::rename(at("aside-" + folder), at("top/" + folder), ignored);
    }
  });
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
  is_over = true;
  attacker.join();
  EXPECT_THAT(List(root.Path() / "outside"), SizeIs(kFolders * kFiles));
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
