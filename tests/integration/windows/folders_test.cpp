#include "platform/os/folders.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

using testing::Contains;
using testing::UnorderedElementsAre;

constexpr FileTime kAnyTime{0xFFFFFFFF, 0x7FFFFFFF};

std::string Narrow(const std::wstring& text) {
  std::string narrow(text.size() * 4, '\0');
  narrow.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                          static_cast<int>(narrow.size()), nullptr, nullptr)));
  return narrow;
}

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

/// A folder of its own: a file, and a subfolder with a subfolder with a file.
class Folders : public testing::Test {
 protected:
  void SetUp() override {
    std::array<wchar_t, MAX_PATH> temporary{};
    GetTempPathW(MAX_PATH, temporary.data());
    top_ = std::wstring(temporary.data()) + L"velmora-folders-" + std::to_wstring(GetCurrentProcessId());
    ASSERT_TRUE(CreateDirectoryW(top_.c_str(), nullptr)) << GetLastError();
    ASSERT_TRUE(CreateDirectoryW((top_ + L"\\a").c_str(), nullptr));
    ASSERT_TRUE(CreateDirectoryW((top_ + L"\\a\\b").c_str(), nullptr));
    Write(L"\\file.dmp");
    Write(L"\\a\\b\\inner.dmp");
  }
  void TearDown() override { Remove(L"\\\\?\\" + top_); }

  static void Remove(const std::wstring& folder) {
    WIN32_FIND_DATAW found{};
    const HANDLE find = ::FindFirstFileW((folder + L"\\*").c_str(), &found);
    do {
      const std::wstring name = found.cFileName;
      if (name == L"." || name == L"..") continue;
      const std::wstring path = folder + L'\\' + name;
      if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        Remove(path);
      } else {
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(path.c_str());
      }
    } while (::FindNextFileW(find, &found));
    ::FindClose(find);
    RemoveDirectoryW(folder.c_str());
  }
  void Write(const std::wstring& name) const { WriteAt(top_ + name); }
  static void WriteAt(const std::wstring& path) {
    const HANDLE file =
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(file, "12345", 5, &written, nullptr)) << GetLastError();
    ::CloseHandle(file);
  }

  FolderHandle Open() const { return OpenFolderA((Narrow(top_) + "//*.*").c_str()); }
  static std::vector<std::string> Names(FolderHandle folder) {
    std::vector<std::string> names;
    FolderEntry data{};
    while (ReadFolderA(folder, data)) names.emplace_back(data.name);
    EXPECT_EQ(LastError(), 18u);
    return names;
  }

  std::wstring top_;
};

TEST_F(Folders, GiveTheirEntriesWithTheirFacts) {
  const FolderHandle folder = Open();
  ASSERT_NE(folder, nullptr) << LastError();
  FolderEntry data{};
  std::vector<std::string> names;
  while (ReadFolderA(folder, data)) {
    names.emplace_back(data.name);
    EXPECT_EQ((data.attributes & kFileAttributeDirectory) != 0, names.back() != "file.dmp");
    if (names.back() != "file.dmp") continue;
    WIN32_FILE_ATTRIBUTE_DATA facts{};
    ASSERT_TRUE(GetFileAttributesExW((top_ + L"\\file.dmp").c_str(), GetFileExInfoStandard, &facts));
    EXPECT_EQ(data.last_write_time.low, facts.ftLastWriteTime.dwLowDateTime);
    EXPECT_EQ(data.last_write_time.high, facts.ftLastWriteTime.dwHighDateTime);
  }
  EXPECT_EQ(LastError(), 18u);
  EXPECT_THAT(names, UnorderedElementsAre(".", "..", "a", "file.dmp"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST_F(Folders, OfManyEntriesAreReadToTheEnd) {
  for (int i = 0; i < 700; ++i) Write(L"\\a\\a file with a rather long name " + std::to_wstring(i));
  const FolderHandle folder = Open();
  const FolderHandle below = OpenSubfolderA(folder, "a");
  EXPECT_EQ(Names(below).size(), 703u);
  EXPECT_TRUE(CloseFolder(below));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST_F(Folders, AreReachedStepByStep) {
  const FolderHandle folder = Open();
  const FolderHandle below = OpenSubfolderA(folder, "A\\b");
  ASSERT_NE(below, nullptr) << LastError();
  EXPECT_THAT(Names(below), UnorderedElementsAre(".", "..", "inner.dmp"));
  EXPECT_TRUE(CloseFolder(below));
  for (const char* const path : {"nosuch", "a\\nosuch", "file.dmp", "", ".", "..", "a\\..", "a/b", "\\a",
                                 "a\\", "?", "a:b", "C:\\Windows"}) {
    EXPECT_EQ(OpenSubfolderA(folder, path), nullptr) << path;
    EXPECT_EQ(LastError(), 3u) << path;
  }
  EXPECT_TRUE(CloseFolder(folder));
}

TEST_F(Folders, LoseTheFileThatIsMeantAndNoOther) {
  const FolderHandle folder = Open();
  EXPECT_TRUE(DeleteFileBelowA(folder, "a\\b\\inner.dmp", kAnyTime)) << LastError();
  EXPECT_FALSE(Exists(top_ + L"\\a\\b\\inner.dmp"));
  for (const char* const path :
       {"a\\b\\inner.dmp", "a", "a\\nosuch\\x", "", "?", "*.dmp", "file.dmp:x", "..\\x"}) {
    EXPECT_FALSE(DeleteFileBelowA(folder, path, kAnyTime)) << path;
  }
  EXPECT_TRUE(Exists(top_ + L"\\file.dmp"));
  EXPECT_TRUE(DeleteFileBelowA(folder, "FILE.dmp", kAnyTime)) << LastError();
  EXPECT_FALSE(Exists(top_ + L"\\file.dmp"));
  Write(L"\\\u00E4.dmp");
  EXPECT_THAT(Names(folder), Contains(Narrow(L"\u00E4.dmp")));
  EXPECT_TRUE(DeleteFileBelowA(folder, Narrow(L"\u00E4.dmp").c_str(), kAnyTime)) << LastError();
  EXPECT_FALSE(Exists(top_ + L"\\\u00E4.dmp"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST_F(Folders, KeepWhatWasWrittenToSinceAndWhatMayOnlyBeRead) {
  const FolderHandle folder = Open();
  EXPECT_FALSE(DeleteFileBelowA(folder, "file.dmp", FileTime{0, 1}));
  EXPECT_EQ(LastError(), 1006u);
  SetFileAttributesW((top_ + L"\\file.dmp").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(DeleteFileBelowA(folder, "file.dmp", kAnyTime));
  EXPECT_EQ(LastError(), 5u);
  EXPECT_TRUE(Exists(top_ + L"\\file.dmp"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST_F(Folders, StayTheSameWhenTheirPathLeadsElsewhere) {
  const FolderHandle folder = OpenFolderA((Narrow(top_) + "\\a//*.*").c_str());
  ASSERT_NE(folder, nullptr);
  // Folders that are open with the right to be deleted by others may be moved.
  ASSERT_TRUE(MoveFileW((top_ + L"\\a").c_str(), (top_ + L"\\moved").c_str())) << GetLastError();
  ASSERT_TRUE(CreateDirectoryW((top_ + L"\\a").c_str(), nullptr));
  ASSERT_TRUE(CreateDirectoryW((top_ + L"\\a\\b").c_str(), nullptr));
  Write(L"\\a\\b\\inner.dmp");
  Write(L"\\moved\\only-here.dmp");
  EXPECT_THAT(Names(folder), Contains("only-here.dmp"));
  // Whether the moved file goes is the system's affair, and Wine leaves it; the other one must not.
  DeleteFileBelowA(folder, "b\\inner.dmp", kAnyTime);
  EXPECT_TRUE(Exists(top_ + L"\\a\\b\\inner.dmp"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST_F(Folders, ShowANameThatTheCodePageLacksAsOneThatNamesNothing) {
  if (GetACP() == CP_UTF8) return;  // every name is in it
  Write(L"\\a\\\u4E2D.dmp");
  Write(L"\\a\\\u0100.dmp");  // an A with a line over it, in whose place a plain one would do
  Write(L"\\a\\A.dmp");
  const FolderHandle folder = Open();
  const FolderHandle below = OpenSubfolderA(folder, "a");
  EXPECT_THAT(Names(below), UnorderedElementsAre(".", "..", "b", "?", "?", "A.dmp"));
  EXPECT_FALSE(DeleteFileBelowA(below, "?", kAnyTime));
  EXPECT_TRUE(Exists(top_ + L"\\a\\A.dmp"));
  EXPECT_TRUE(Exists(top_ + L"\\a\\\u0100.dmp"));
  EXPECT_TRUE(CloseFolder(below));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST_F(Folders, MayLieDeeperThanPathsAreLong) {
  std::wstring path = L"\\\\?\\" + top_;
  std::string below;
  for (int i = 0; i < 6; ++i) {
    path += L"\\" + std::wstring(60, L'd');
    below += (below.empty() ? "" : "\\") + std::string(60, 'd');
    ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr)) << GetLastError();
  }
  WriteAt(path + L"\\deep.dmp");
  const FolderHandle folder = Open();
  const FolderHandle deepest = OpenSubfolderA(folder, below.c_str());
  ASSERT_NE(deepest, nullptr) << LastError();
  EXPECT_THAT(Names(deepest), Contains("deep.dmp"));
  EXPECT_TRUE(CloseFolder(deepest));

  const FolderHandle named = OpenFolderA((Narrow(top_) + "\\" + below + "//*.*").c_str());
  ASSERT_NE(named, nullptr) << LastError();
  EXPECT_THAT(Names(named), Contains("deep.dmp"));
  EXPECT_TRUE(CloseFolder(named));

  EXPECT_TRUE(PathFileExistsW((path.substr(4) + L"\\deep.dmp").c_str()));
  FindData data{};
  for (const std::wstring& form : {path, path.substr(4)}) {
    const Handle find = FindFirstFileW((form + L"//*.*").c_str(), data);
    EXPECT_NE(find, InvalidHandle()) << LastError();
    FindClose(find);
  }
  EXPECT_TRUE(DeleteFileBelowA(folder, (below + "\\deep.dmp").c_str(), kAnyTime)) << LastError();
  EXPECT_FALSE(Exists(path + L"\\deep.dmp"));
  EXPECT_TRUE(CloseFolder(folder));
}

TEST_F(Folders, SayWhyTheyCannotBeOpened) {
  for (const std::string& pattern : {Narrow(top_) + "\\nosuch//*.*", Narrow(top_) + "\\file.dmp//*.*",
                                     std::string("//*.*"), std::string(), Narrow(top_)}) {
    EXPECT_EQ(OpenFolderA(pattern.c_str()), nullptr) << pattern;
    EXPECT_EQ(LastError(), 3u) << pattern;
  }
  FolderEntry data{};
  EXPECT_FALSE(ReadFolderA(nullptr, data));
  EXPECT_FALSE(CloseFolder(nullptr));
  EXPECT_EQ(LastError(), 6u);
}

/// The name that a path has on the system below an emulated one; empty on a system of its own.
std::string NameBelow(const std::wstring& path) {
  using UnixName = char*(CDECL*)(const wchar_t*);
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  const auto unix_name =
      reinterpret_cast<UnixName>(reinterpret_cast<void*>(GetProcAddress(kernel, "wine_get_unix_file_name")));
  if (unix_name == nullptr) return {};
  char* const name = unix_name(path.c_str());
  const std::string result = name != nullptr ? name : "";
  HeapFree(GetProcessHeap(), 0, name);
  return result;
}

/// Runs a program of the system below.
bool RunBelow(const wchar_t* program, const std::string& arguments) {
  std::wstring command(arguments.begin(), arguments.end());
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  return CreateProcessW(program, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started) != FALSE;
}

bool Comes(const std::wstring& path, bool there) {
  for (int i = 0; i < 200 && Exists(path) != there; ++i) Sleep(25);
  return Exists(path) == there;
}

/// Makes `link` lead to the folder `target`. Where the system is an emulated one that makes no links itself,
/// the one below it does.
bool MakeLink(const std::wstring& link, const std::wstring& target) {
  const std::string below = NameBelow(target);
  if (below.empty())
    return CreateSymbolicLinkW(link.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY) != FALSE;
  const std::size_t separator = link.rfind(L'\\');
  const std::wstring name = link.substr(separator + 1);
  const std::string folder = NameBelow(link.substr(0, separator));
  return RunBelow(L"Z:\\bin\\ln", "ln -s " + below + " " + folder + "/" + Narrow(name)) && Comes(link, true);
}

bool RemoveLink(const std::wstring& link) {
  const std::string below = NameBelow(link);
  if (below.empty()) return RemoveDirectoryW(link.c_str()) != FALSE;
  return RunBelow(L"Z:\\bin\\rm", "rm " + below) && Comes(link, false);
}

TEST_F(Folders, AreNotReachedThroughALink) {
  const FolderHandle folder = Open();
  ASSERT_TRUE(MakeLink(top_ + L"\\link", top_ + L"\\a")) << GetLastError();
  ASSERT_TRUE(Exists(top_ + L"\\link\\b\\inner.dmp"));
  EXPECT_EQ(OpenSubfolderA(folder, "link"), nullptr);
  EXPECT_EQ(LastError(), 3u);
  EXPECT_EQ(OpenSubfolderA(folder, "link\\b"), nullptr);
  EXPECT_FALSE(DeleteFileBelowA(folder, "link\\b\\inner.dmp", kAnyTime));
  EXPECT_TRUE(Exists(top_ + L"\\a\\b\\inner.dmp"));
  FolderEntry data{};
  while (ReadFolderA(folder, data)) {
    if (std::string(data.name) != "link") continue;
    EXPECT_EQ(data.attributes & (kFileAttributeReparsePoint | kFileAttributeDirectory),
              kFileAttributeReparsePoint | kFileAttributeDirectory);
  }
  EXPECT_TRUE(CloseFolder(folder));
  EXPECT_TRUE(RemoveLink(top_ + L"\\link"));
}

}  // namespace
}  // namespace velmora::os
