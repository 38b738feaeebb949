/// Command files of this system, and files whose names it cannot write in its narrow code page.
#include "velmora/fileprocess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <thread>

namespace {

/// A folder of its own, gone with the test.
class OwnFolder : public testing::Test {
 protected:
  OwnFolder() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    top_ = std::filesystem::temp_directory_path() / ("velmora-commands-" + std::to_string(now));
    std::filesystem::create_directory(top_);
  }
  ~OwnFolder() override {
    std::error_code ignored;
    std::filesystem::remove_all(top_, ignored);
  }

  /// Whether the file comes to be within half a minute.
  static bool Comes(const std::filesystem::path& path) {
    for (int i = 0; i < 600 && !std::filesystem::exists(path); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return std::filesystem::exists(path);
  }

  std::filesystem::path top_;
};

class CommandFiles : public OwnFolder {};
class FilesToPrune : public OwnFolder {};

TEST_F(CommandFiles, RunOnByThemselves) {
  const auto done = top_ / "done";
  std::ofstream(top_ / "run.cmd") << "@echo off\r\nping -n 2 127.0.0.1 >nul\r\necho x>\"" << done.string()
                                  << "\"\r\n";
  EXPECT_EQ(CFileProcess().ExcuteCmdFile((top_ / "run.cmd").wstring()), 1);
  EXPECT_TRUE(Comes(done));
}

TEST_F(CommandFiles, ThatAreMissingOrNoneAreNotStarted) {
  std::ofstream(top_ / "text.exe") << "no program";
  EXPECT_EQ(CFileProcess().ExcuteCmdFile((top_ / "nosuch.cmd").wstring()), 0);
  EXPECT_EQ(CFileProcess().ExcuteCmdFile((top_ / "text.exe").wstring()), 0);
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(top_.wstring()), 0);
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(L""), 0);
}

TEST_F(FilesToPrune, StayWithANameThatTheNarrowCodePageLacks) {
  const auto now = std::filesystem::file_time_type::clock::now();
  const auto write = [&](const wchar_t* name, int age) {
    std::ofstream(top_ / name) << "12345";
    std::filesystem::last_write_time(top_ / name, now - std::chrono::minutes(age));
  };
  // The code page makes "a" of the long one, and nothing of the mixture of three scripts.
  const std::set<std::wstring> foreign = {L"\u0101.dmp", L"\u0416\u4E00\u0E01.dmp"};
  for (const std::wstring& name : foreign) write(name.c_str(), 9);
  write(L"a.dmp", 1);
  write(L"b.dmp", 5);
  const auto left = [&] {
    std::set<std::wstring> names;
    for (const auto& entry : std::filesystem::directory_iterator(top_)) names.insert(entry.path().filename());
    return names;
  };
  CFileProcess().DeleteFileByPath(top_.string(), 2);
  EXPECT_THAT(left(), testing::SizeIs(4)) << "the oldest two are those that stay";
  CFileProcess().DeleteFileByPath(top_.string(), 0);
  EXPECT_EQ(left(), foreign);
}

}  // namespace
