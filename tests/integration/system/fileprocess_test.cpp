/// CFileProcess on real folders of this system.
#include "velmora/fileprocess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <limits>
#include <set>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

/// A folder of its own, gone with the test.
class RealFiles : public testing::Test {
 protected:
  void SetUp() override {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    top_ = std::filesystem::temp_directory_path() / ("velmora-files-" + std::to_string(now));
    ASSERT_TRUE(std::filesystem::create_directory(top_));
  }
  void TearDown() override { std::filesystem::remove_all(top_); }

  /// Writes a file that is so many minutes old.
  void Write(const std::string& name, int age = 0) const {
    const auto path = top_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << "12345";
    std::filesystem::last_write_time(path, start_ - std::chrono::minutes(age));
  }
  /// The files below the folder by their names, slashes between.
  std::set<std::string> Left() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(top_)) {
      if (!entry.is_directory()) names.insert(entry.path().lexically_relative(top_).generic_string());
    }
    return names;
  }
  std::vector<std::wstring> List(const wchar_t* extension) const {
    return CFileProcess().GetTypeFiles(extension, top_.wstring());
  }
  /// How the library writes the path of a file.
  std::wstring Full(const std::wstring& name) const { return top_.wstring() + L'\\' + name; }
  void Prune(int kept) const { CFileProcess().DeleteFileByPath(top_.string(), kept); }

  std::filesystem::path top_;
  std::filesystem::file_time_type start_ = std::filesystem::file_time_type::clock::now();
};

TEST_F(RealFiles, AreListedThroughTheWholeTreeByTheirExtension) {
  Write("1.dmp");
  Write("2.DMP");
  Write("a/3.dmp");
  Write("a/b/4.dmp");
  Write("a/b/c.dmp/5.txt");
  Write("plain");
  EXPECT_THAT(List(L".dmp"), UnorderedElementsAre(Full(L"1.dmp"), Full(L"a\\3.dmp"), Full(L"a\\b\\4.dmp")));
  EXPECT_THAT(List(L".DMP"), ElementsAre(Full(L"2.DMP")));
  EXPECT_THAT(List(L""), IsEmpty());
  EXPECT_THAT(List(L"dmp"), IsEmpty());
}

TEST_F(RealFiles, AreListedEachSubfoldersTogether) {
  for (const char* const name : {"a/1.dmp", "a/b/2.dmp", "a/b/3.dmp", "a/4.dmp", "c/5.dmp", "6.dmp"})
    Write(name);
  const auto files = List(L".dmp");
  ASSERT_THAT(files, SizeIs(6));
  for (const std::wstring& folder : {Full(L"a\\"), Full(L"a\\b\\")}) {
    const auto is_below = [&](const std::wstring& path) { return path.starts_with(folder); };
    const auto first = std::ranges::find_if(files, is_below);
    const auto last = std::find_if_not(first, files.end(), is_below);
    EXPECT_EQ(std::count_if(last, files.end(), is_below), 0);
  }
}

TEST_F(RealFiles, AreNoneWithoutTheFolder) {
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".dmp", Full(L"nosuch")), IsEmpty());
  CFileProcess().DeleteFileByPath((top_ / "nosuch").string(), 0);
}

TEST_F(RealFiles, AreListedUnderPathsBeyondTheUsualLength) {
#ifdef _WIN32
  std::filesystem::path made("\\\\?\\" + top_.string());
  for (int i = 0; i < 6; ++i) std::filesystem::create_directory(made /= std::string(60, 'd'));
  std::ofstream(made / "deep.dmp") << "12345";
#else
  std::string folder;
  for (int i = 0; i < 6; ++i) folder += std::string(60, 'd') + "/";
  Write(folder + "deep.dmp");
#endif
  EXPECT_THAT(List(L".dmp"), SizeIs(1));
  Prune(0);
  EXPECT_THAT(List(L".dmp"), IsEmpty());
#ifdef _WIN32
  for (int i = 0; i < 6; ++i, made = made.parent_path()) std::filesystem::remove(made);
#endif
}

TEST_F(RealFiles, ArePrunedDownToTheNewest) {
  for (int i = 0; i < 5; ++i) Write((i % 2 == 0 ? "a/" : "") + std::to_string(i) + ".dmp", i);
  Prune(5);
  EXPECT_THAT(Left(), SizeIs(5));
  Prune(-1);
  Prune(std::numeric_limits<int>::min());
  Prune(std::numeric_limits<int>::max());
  EXPECT_THAT(Left(), SizeIs(5));
  Prune(3);
  EXPECT_THAT(Left(), UnorderedElementsAre("a/0.dmp", "1.dmp", "a/2.dmp"));
  Prune(0);
  EXPECT_THAT(Left(), IsEmpty());
  EXPECT_TRUE(std::filesystem::exists(top_ / "a")) << "folders stay";
}

TEST_F(RealFiles, GoAThousandAtATime) {
  for (int i = 0; i < 1200; ++i) Write(std::to_string(i), i);
  Prune(0);
  const auto left = Left();
  ASSERT_THAT(left, SizeIs(200));
  for (int i = 0; i < 200; ++i) EXPECT_TRUE(left.contains(std::to_string(i)));
  Prune(10);
  EXPECT_THAT(Left(), SizeIs(10));
}

TEST_F(RealFiles, OfEqualAgeArePrunedToTheirNumber) {
  for (int i = 0; i < 20; ++i) Write(std::to_string(i), 7);
  Prune(5);
  EXPECT_THAT(Left(), SizeIs(5));
}

TEST_F(RealFiles, AreLookedForInAThousandSubfolders) {
  for (int i = 0; i < 1010; ++i) Write(std::to_string(i) + "/f", 1);
  Prune(0);
  EXPECT_THAT(Left(), SizeIs(10));
}

}  // namespace
