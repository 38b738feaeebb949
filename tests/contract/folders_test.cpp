/// What every implementation of the os contract about trees of folders owes.
#include "platform/os/folders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "platform/os/last_error.h"
#include "tests/contract/made_up_folder.h"

namespace contract {
namespace {

using testing::Key;
using testing::UnorderedElementsAre;
using velmora::os::CloseFolder;
using velmora::os::DeleteFileBelowA;
using velmora::os::FileTime;
using velmora::os::FolderEntry;
using velmora::os::FolderHandle;
using velmora::os::LastError;
using velmora::os::OpenFolderA;
using velmora::os::OpenSubfolderA;

constexpr FileTime kAnyTime{0xFFFFFFFF, 0x7FFFFFFF};

std::uint64_t UnitsOf(const FileTime& time) { return (std::uint64_t{time.high} << 32) | time.low; }

class Folders : public testing::Test {
 protected:
  ~Folders() override { EXPECT_TRUE(CloseFolder(top_)); }

  /// The entries of a folder without the two points.
  static std::map<std::string, FolderEntry> Read(FolderHandle folder) {
    std::map<std::string, FolderEntry> entries;
    FolderEntry data{};
    while (velmora::os::ReadFolderA(folder, data)) entries[data.name] = data;
    EXPECT_EQ(LastError(), 18u);
    entries.erase(".");
    entries.erase("..");
    return entries;
  }

  std::unique_ptr<MadeUpFolder> folder_ = MadeUpFolder::SetUp();
  FolderHandle top_ = OpenFolderA((folder_->Path() + "//*.*").c_str());
};

TEST_F(Folders, AreReadToTheirEndWithTheFactsOfTheirEntries) {
  auto entries = Read(top_);
  EXPECT_THAT(entries, UnorderedElementsAre(Key("old.dmp"), Key("new.dmp"), Key("sub")));
  EXPECT_EQ(entries["old.dmp"].attributes, 0u);
  EXPECT_LT(UnitsOf(entries["old.dmp"].last_write_time), UnitsOf(entries["new.dmp"].last_write_time));
  EXPECT_EQ(entries["sub"].attributes, velmora::os::kFileAttributeDirectory);
}

TEST_F(Folders, AreReachedFromTheOneThatWasOpened) {
  const FolderHandle sub = OpenSubfolderA(top_, "sub");
  EXPECT_THAT(Read(sub), UnorderedElementsAre(Key("inner.dmp"), Key("deep")));
  EXPECT_TRUE(CloseFolder(sub));
  const FolderHandle deep = OpenSubfolderA(top_, "sub\\deep");
  EXPECT_TRUE(Read(deep).empty());
  EXPECT_TRUE(CloseFolder(deep));
}

TEST_F(Folders, AreNotReachedThroughWhatIsNone) {
  for (const char* const path : {"nosuch", "old.dmp", "old.dmp\\deep", "nosuch\\deep", "sub\\nosuch"}) {
    EXPECT_EQ(OpenSubfolderA(top_, path), nullptr) << path;
    EXPECT_EQ(LastError(), 3u) << path;
  }
  EXPECT_EQ(OpenFolderA((folder_->Path() + "\\nosuch//*.*").c_str()), nullptr);
  EXPECT_EQ(LastError(), 3u);
}

TEST_F(Folders, LoseTheFilesThatAreDeletedAndNoOthers) {
  EXPECT_TRUE(DeleteFileBelowA(top_, "sub\\inner.dmp", kAnyTime));
  EXPECT_FALSE(folder_->Has("sub\\inner.dmp"));
  EXPECT_FALSE(DeleteFileBelowA(top_, "sub\\inner.dmp", kAnyTime));
  EXPECT_EQ(LastError(), 2u);
  EXPECT_FALSE(DeleteFileBelowA(top_, "nosuch\\inner.dmp", kAnyTime));
  EXPECT_EQ(LastError(), 3u);
  EXPECT_FALSE(DeleteFileBelowA(top_, "sub\\deep", kAnyTime)) << "a folder is no file";
  EXPECT_EQ(LastError(), 5u);
  EXPECT_TRUE(folder_->Has("sub\\deep"));
  EXPECT_TRUE(folder_->Has("old.dmp"));
}

TEST_F(Folders, KeepAFileThatWasWrittenToSince) {
  const auto entries = Read(top_);
  EXPECT_FALSE(DeleteFileBelowA(top_, "new.dmp", entries.at("old.dmp").last_write_time));
  EXPECT_EQ(LastError(), 1006u);
  EXPECT_TRUE(folder_->Has("new.dmp"));
  EXPECT_TRUE(DeleteFileBelowA(top_, "old.dmp", entries.at("old.dmp").last_write_time));
  EXPECT_FALSE(folder_->Has("old.dmp"));
}

TEST_F(Folders, AreNoWayAnyMoreOnceSomethingElseStandsInTheirPlace) {
  folder_->PutFileInPlaceOf("sub");
  EXPECT_EQ(OpenSubfolderA(top_, "sub"), nullptr);
  EXPECT_EQ(LastError(), 3u);
  EXPECT_FALSE(DeleteFileBelowA(top_, "sub\\inner.dmp", kAnyTime));
  EXPECT_EQ(LastError(), 3u);
}

}  // namespace
}  // namespace contract
