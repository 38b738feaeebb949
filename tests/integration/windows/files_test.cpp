#include "platform/os/files.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

using testing::UnorderedElementsAre;

/// A folder of its own with two files and a folder in it.
class Files : public testing::Test {
 protected:
  void SetUp() override {
    std::array<wchar_t, MAX_PATH> temporary{};
    GetTempPathW(MAX_PATH, temporary.data());
    folder_ = std::wstring(temporary.data()) + L"velmora-files-" + std::to_wstring(GetCurrentProcessId());
    ASSERT_TRUE(CreateDirectoryW(folder_.c_str(), nullptr)) << GetLastError();
    Write(L"\u00E4.dmp", "0123456789");
    Write(L"b.log", "");
    ASSERT_TRUE(CreateDirectoryW((folder_ + L"\\sub").c_str(), nullptr));
  }
  void TearDown() override {
    DeleteFileW((folder_ + L"\\\u00E4.dmp").c_str());
    DeleteFileW((folder_ + L"\\b.log").c_str());
    RemoveDirectoryW((folder_ + L"\\sub").c_str());
    EXPECT_TRUE(RemoveDirectoryW(folder_.c_str())) << GetLastError();
  }
  void Write(const std::wstring& name, const std::string& text) {
    const HANDLE file = ::CreateFileW((folder_ + L'\\' + name).c_str(), GENERIC_WRITE, 0, nullptr,
                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr));
    ::CloseHandle(file);
  }

  std::wstring folder_;
};

TEST_F(Files, AreListedWithTheFoldersOwnNames) {
  FindData data{};
  std::vector<std::wstring> names;
  const Handle find = FindFirstFileW((folder_ + L"//*.*").c_str(), data);
  ASSERT_NE(find, InvalidHandle()) << LastError();
  do {
    names.emplace_back(data.name);
    EXPECT_EQ((data.attributes & kFileAttributeDirectory) != 0,
              names.back() == L"." || names.back() == L".." || names.back() == L"sub");
  } while (FindNextFileW(find, data));
  EXPECT_EQ(LastError(), 18u);
  EXPECT_TRUE(FindClose(find));
  EXPECT_THAT(names, UnorderedElementsAre(L".", L"..", L"\u00E4.dmp", L"b.log", L"sub"));
}

TEST_F(Files, OfAFolderThatIsMissingAreNotListed) {
  FindData data{};
  EXPECT_EQ(FindFirstFileW((folder_ + L"\\nosuch//*.*").c_str(), data), InvalidHandle());
  EXPECT_EQ(LastError(), kErrorPathNotFound);
}

TEST_F(Files, AreReadAsBytesToTheirEnd) {
  const Handle file = OpenFileForReading((folder_ + L"\\\u00E4.dmp").c_str());
  ASSERT_NE(file, nullptr) << LastError();
  std::array<char, 7> buffer{};
  EXPECT_EQ(ReadFile(file, buffer.data(), 7), 7u);
  EXPECT_EQ(std::string(buffer.data(), 7), "0123456");
  EXPECT_EQ(ReadFile(file, buffer.data(), 7), 3u);
  EXPECT_EQ(ReadFile(file, buffer.data(), 7), 0u);
  EXPECT_TRUE(CloseHandle(file));
}

TEST_F(Files, AreNotReadInPlaceOfFoldersAndDevices) {
  for (const std::wstring& path :
       {folder_, folder_ + L"\\nosuch", std::wstring(L"NUL"), std::wstring(L"\\\\.\\NUL")}) {
    SetLastError(0);
    EXPECT_EQ(OpenFileForReading(path.c_str()), nullptr);
    EXPECT_NE(LastError(), 0u);
  }
}

TEST_F(Files, ExistAsFoldersToo) {
  EXPECT_TRUE(PathFileExistsW(folder_.c_str()));
  EXPECT_TRUE(PathFileExistsW((folder_ + L"\\b.log").c_str()));
  EXPECT_FALSE(PathFileExistsW(L""));
}

TEST(Paths, HaveTheExtensionOfTheirLastElement) {
  for (const auto& [path, extension] : {std::pair(L"C:\\a.b\\c.cmd", L".cmd"),
                                        {L"C:\\a.b\\c", L""},
                                        {L"a.b.c", L".c"},
                                        {L"", L""},
                                        {L"a.", L"."}}) {
    EXPECT_STREQ(PathFindExtensionW(path), extension) << path;
  }
}

}  // namespace
}  // namespace velmora::os
