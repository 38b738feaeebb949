/// Command files of this system.
#include "velmora/fileprocess.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace {

/// A folder of its own, gone with the test.
class CommandFiles : public testing::Test {
 protected:
  CommandFiles() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    top_ = std::filesystem::temp_directory_path() / ("velmora-commands-" + std::to_string(now));
    std::filesystem::create_directory(top_);
  }
  ~CommandFiles() override {
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

}  // namespace
