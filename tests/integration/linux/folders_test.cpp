#include "platform/os/folders.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <map>

#include "platform/os/last_error.h"
#include "tests/unit/ostrine/linux/fake_root.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeRoot;
using ostrine::test::WithoutRights;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr FileTime kAnyTime{0xFFFFFFFF, 0x7FFFFFFF};

std::string Pattern(const std::filesystem::path& folder) { return folder.string() + "//*.*"; }

FolderHandle OpenRoot(const FakeRoot& root) { return OpenFolderA(Pattern(root.Path()).c_str()); }

std::map<std::string, FolderEntry> Read(FolderHandle folder) {
  std::map<std::string, FolderEntry> entries;
  FolderEntry data{};
  while (ReadFolderA(folder, data)) entries[data.name] = data;
  EXPECT_EQ(LastError(), 18u);
  return entries;
}

std::vector<std::string> NamesRead(FolderHandle folder) {
  std::vector<std::string> names;
  for (const auto& [name, data] : Read(folder)) names.push_back(name);
  return names;
}

TEST(Folders, GiveTheirEntriesInTheSystemsOrderToTheEnd) {
  const FakeRoot root;
  for (int i = 0; i < 3000; ++i) root.Write("a file with a rather long name " + std::to_string(i), "");
  std::vector<std::string> expected;
  for (const auto& entry : std::filesystem::directory_iterator(root.Path())) {
    expected.push_back(entry.path().filename().string());
  }
  const FolderHandle folder = OpenRoot(root);
  std::vector<std::string> names;
  FolderEntry data{};
  while (ReadFolderA(folder, data)) {
    const std::string name = data.name;
    if (name != "." && name != "..") names.push_back(name);
  }
  EXPECT_EQ(names, expected);
  EXPECT_FALSE(ReadFolderA(folder, data)) << "the end stays the end";
  EXPECT_TRUE(CloseFolder(folder));
}

TEST(Folders, TellTheKindOfEachEntryAndWhenItWasWritten) {
  const FakeRoot root;
  root.Write("file", "12345");
  root.Write("folder/inner", "");
  std::filesystem::create_symlink("folder", root.Path() / "to-folder");
  std::filesystem::create_symlink("file", root.Path() / "to-file");
  std::filesystem::create_symlink("nowhere", root.Path() / "dangling");
  ASSERT_EQ(mkfifo((root.Path() / "pipe").c_str(), 0600), 0);
  const timespec times[] = {{1'000'000'000, 0}, {1'500'000'000, 123'456'700}};
  ASSERT_EQ(utimensat(AT_FDCWD, (root.Path() / "file").c_str(), times, 0), 0);

  const FolderHandle folder = OpenRoot(root);
  auto entries = Read(folder);
  EXPECT_TRUE(CloseFolder(folder));
  EXPECT_EQ(entries.at("file").attributes, 0u);
  EXPECT_EQ(
      (std::uint64_t{entries.at("file").last_write_time.high} << 32) | entries.at("file").last_write_time.low,
      131'444'736'001'234'567u);
  EXPECT_EQ(entries.at("folder").attributes, kFileAttributeDirectory);
  EXPECT_EQ(entries.at("to-folder").attributes, kFileAttributeDirectory | kFileAttributeReparsePoint);
  EXPECT_EQ(entries.at("to-file").attributes, kFileAttributeReparsePoint);
  EXPECT_EQ(entries.at("dangling").attributes, kFileAttributeReparsePoint);
  EXPECT_FALSE(entries.contains("pipe"));
}

TEST(Folders, AreReachedStepByStepAndThroughNoLink) {
  const FakeRoot root;
  root.Write("a/b/file", "");
  root.Write("other/b/file", "");
  root.Link("link", "other");
  root.Link("a/up", "..");
  const FolderHandle folder = OpenRoot(root);
  const FolderHandle below = OpenSubfolderA(folder, "a\\b");
  ASSERT_NE(below, nullptr);
  EXPECT_THAT(NamesRead(below), ElementsAre(".", "..", "file"));
  EXPECT_TRUE(CloseFolder(below));
  for (const char* const path : {"link", "link\\b", "a\\up", "a\\up\\other", "nosuch", "a\\b\\file", "", ".",
                                 "..", "a\\..", "a\\\\b", "a/b", "/", "\\a", "a\\"}) {
    EXPECT_EQ(OpenSubfolderA(folder, path), nullptr) << path;
    EXPECT_EQ(LastError(), 3u) << path;
  }
  EXPECT_TRUE(CloseFolder(folder));
}

TEST(Folders, MayBeNamedThroughALink) {
  const FakeRoot root;
  root.Write("a/file", "");
  root.Link("link", "a");
  const FolderHandle folder = OpenFolderA(Pattern(root.Path() / "link").c_str());
  EXPECT_THAT(NamesRead(folder), ElementsAre(".", "..", "file"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST(Folders, StayTheSameWhenTheirPathLeadsElsewhere) {
  const FakeRoot root;
  root.Write("a/file", "");
  root.Write("other/file", "");
  const FolderHandle folder = OpenFolderA(Pattern(root.Path() / "a").c_str());
  std::filesystem::rename(root.Path() / "a", root.Path() / "moved");
  root.Link("a", "other");
  EXPECT_TRUE(DeleteFileBelowA(folder, "file", kAnyTime));
  EXPECT_FALSE(std::filesystem::exists(root.Path() / "moved/file"));
  EXPECT_TRUE(std::filesystem::exists(root.Path() / "other/file"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST(Folders, LoseNothingToAFolderThatWasExchangedForALink) {
  const FakeRoot root;
  root.Write("top/a/b/file", "");
  root.Write("other/b/file", "");
  const FolderHandle folder = OpenFolderA(Pattern(root.Path() / "top").c_str());
  std::filesystem::remove_all(root.Path() / "top/a");
  std::filesystem::create_symlink("../other", root.Path() / "top/a");
  EXPECT_FALSE(DeleteFileBelowA(folder, "a\\b\\file", kAnyTime));
  EXPECT_EQ(LastError(), 3u);
  EXPECT_TRUE(std::filesystem::exists(root.Path() / "other/b/file"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST(Folders, LoseALinkAndNotWhatItPointsTo) {
  const FakeRoot root;
  root.Write("kept", "");
  root.Link("a/link", "../kept");
  const FolderHandle folder = OpenRoot(root);
  EXPECT_TRUE(DeleteFileBelowA(folder, "a\\link", kAnyTime));
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(root.Path() / "a/link")));
  EXPECT_TRUE(std::filesystem::exists(root.Path() / "kept"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST(Folders, KeepWhatWasWrittenToSince) {
  const FakeRoot root;
  root.Write("file", "");
  const FolderHandle folder = OpenRoot(root);
  const auto listed = Read(folder).at("file").last_write_time;
  EXPECT_FALSE(DeleteFileBelowA(folder, "file", {listed.low - 1, listed.high}));
  EXPECT_EQ(LastError(), 1006u);
  EXPECT_TRUE(std::filesystem::exists(root.Path() / "file"));
  EXPECT_TRUE(DeleteFileBelowA(folder, "file", listed));
  EXPECT_FALSE(std::filesystem::exists(root.Path() / "file"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST(Folders, SayWhyAFileStays) {
  const FakeRoot root;
  root.Write("a/file", "");
  const FolderHandle folder = OpenRoot(root);
  EXPECT_FALSE(DeleteFileBelowA(folder, "a\\nosuch", kAnyTime));
  EXPECT_EQ(LastError(), 2u);
  EXPECT_FALSE(DeleteFileBelowA(folder, "nosuch\\file", kAnyTime));
  EXPECT_EQ(LastError(), 3u);
  EXPECT_FALSE(DeleteFileBelowA(folder, "a", kAnyTime));
  EXPECT_EQ(LastError(), 5u);
  for (const char* const path : {"", ".", "..", "a\\..", "../a", "a/file"}) {
    EXPECT_FALSE(DeleteFileBelowA(folder, path, kAnyTime)) << path;
  }
  {
    const WithoutRights without_rights;
    EXPECT_FALSE(DeleteFileBelowA(folder, "a\\file", kAnyTime));
    EXPECT_EQ(LastError(), 5u);
  }
  EXPECT_TRUE(std::filesystem::exists(root.Path() / "a/file"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST(Folders, SayWhyTheyCannotBeOpened) {
  const FakeRoot root;
  root.Write("file", "");
  std::filesystem::create_directory(root.Path() / "closed");
  root.Forbid("closed");
  ASSERT_EQ(mkfifo((root.Path() / "pipe").c_str(), 0600), 0);
  for (const char* const name : {"nosuch", "file", "pipe", "nosuch/deeper"}) {
    EXPECT_EQ(OpenFolderA(Pattern(root.Path() / name).c_str()), nullptr) << name;
    EXPECT_EQ(LastError(), 3u) << name;
  }
  for (const char* const pattern : {"", "//*.*", "C:\\dump//*.*", "/tmp", "/tmp/*.*"}) {
    EXPECT_EQ(OpenFolderA(pattern), nullptr) << pattern;
    EXPECT_EQ(LastError(), 3u) << pattern;
  }
  const FolderHandle folder = OpenRoot(root);
  const WithoutRights without_rights;
  EXPECT_EQ(OpenFolderA(Pattern(root.Path() / "closed").c_str()), nullptr);
  EXPECT_EQ(LastError(), 5u);
  EXPECT_EQ(OpenSubfolderA(folder, "closed"), nullptr);
  EXPECT_EQ(LastError(), 5u);
  EXPECT_TRUE(CloseFolder(folder));
}

TEST(Folders, HaveNamesOfAnyBytesButBackslashes) {
  const FakeRoot root;
  root.Write("caf\xE9.dmp", "");
  root.Write("caf\xC3\xA9.dmp", "");
  std::ofstream(root.Path() / "a\\b") << "x";
  const FolderHandle folder = OpenRoot(root);
  EXPECT_THAT(NamesRead(folder), UnorderedElementsAre(".", "..", "caf\xE9.dmp", "caf\xC3\xA9.dmp"));
  EXPECT_TRUE(DeleteFileBelowA(folder, "caf\xE9.dmp", kAnyTime));
  EXPECT_TRUE(std::filesystem::exists(root.Path() / "caf\xC3\xA9.dmp"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST(Folders, LeaveNothingOpen) {
  const FakeRoot root;
  root.Write("a/b/file", "");
  const int before = dup(0);
  close(before);
  for (int i = 0; i < 20; ++i) {
    const FolderHandle folder = OpenRoot(root);
    const FolderHandle below = OpenSubfolderA(folder, "a\\b");
    Read(below);
    OpenSubfolderA(folder, "a\\b\\file");
    DeleteFileBelowA(folder, "a\\b\\nosuch", kAnyTime);
    CloseFolder(folder);
    CloseFolder(below);
  }
  const int after = dup(0);
  close(after);
  EXPECT_EQ(after, before);
}

TEST(Folders, TellTheirHandlesFromOthers) {
  FolderEntry data{};
  for (const FolderHandle handle : {FolderHandle{nullptr}, InvalidHandle()}) {
    SetLastError(0);
    EXPECT_FALSE(ReadFolderA(handle, data));
    EXPECT_EQ(LastError(), 6u);
    EXPECT_EQ(OpenSubfolderA(handle, "a"), nullptr);
    EXPECT_FALSE(DeleteFileBelowA(handle, "a", kAnyTime));
    EXPECT_FALSE(CloseFolder(handle));
    EXPECT_EQ(LastError(), 6u);
  }
  const FakeRoot root;
  const FolderHandle folder = OpenRoot(root);
  EXPECT_FALSE(CloseHandle(folder));
  EXPECT_FALSE(FindClose(folder));
  EXPECT_TRUE(CloseFolder(folder));
}

}  // namespace
}  // namespace velmora::os
