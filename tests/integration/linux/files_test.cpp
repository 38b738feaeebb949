#include "platform/os/files.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <set>

#include "platform/linux/file_time.h"
#include "platform/os/last_error.h"
#include "platform/unicode.h"
#include "tests/unit/ostrine/linux/fake_root.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeRoot;
using ostrine::test::WithoutRights;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::wstring Wide(const std::string& text) { return unicode::WideFromUtf8(text); }

std::map<std::wstring, FindData> EntriesOf(const std::filesystem::path& folder) {
  std::map<std::wstring, FindData> entries;
  FindData data{};
  const Handle find = FindFirstFileW((Wide(folder.string()) + L"//*.*").c_str(), data);
  if (find == InvalidHandle()) return entries;
  do {
    entries[data.name] = data;
  } while (FindNextFileW(find, data));
  EXPECT_EQ(LastError(), 18u);
  EXPECT_TRUE(FindClose(find));
  return entries;
}

std::set<std::wstring> NamesIn(const std::filesystem::path& folder) {
  std::set<std::wstring> names;
  for (const auto& [name, data] : EntriesOf(folder)) names.insert(name);
  return names;
}

TEST(FindFiles, ListsEverythingThePointsIncluded) {
  const FakeRoot root;
  root.Write("b.dmp", "12345");
  root.Write("folder/inner", "");
  EXPECT_THAT(NamesIn(root.Path()), UnorderedElementsAre(L".", L"..", L"b.dmp", L"folder"));
}

TEST(FindFiles, ListsInTheSystemsOrder) {
  const FakeRoot root;
  for (int i = 0; i < 50; ++i) root.Write("f" + std::to_string(i * 7919 % 50), "");
  std::vector<std::wstring> expected;
  for (const auto& entry : std::filesystem::directory_iterator(root.Path())) {
    expected.push_back(Wide(entry.path().filename().string()));
  }
  std::vector<std::wstring> found;
  FindData data{};
  const Handle find = FindFirstFileW((Wide(root.Path().string()) + L"//*.*").c_str(), data);
  do {
    const std::wstring name = data.name;
    if (name != L"." && name != L"..") found.push_back(name);
  } while (FindNextFileW(find, data));
  FindClose(find);
  EXPECT_EQ(found, expected);
}

TEST(FindFiles, TellsOnlyTheKindOfAnEntry) {
  const FakeRoot root;
  root.Write("fixed", "");
  root.Write("folder/inner", "");
  std::filesystem::permissions(root.Path() / "fixed", std::filesystem::perms(0444));
  const auto entries = EntriesOf(root.Path());
  EXPECT_EQ(entries.at(L"fixed").attributes, 0u);
  EXPECT_EQ(entries.at(L"folder").attributes, kFileAttributeDirectory);
  EXPECT_EQ(entries.at(L".").attributes, kFileAttributeDirectory);
}

TEST(FindFiles, LooksAtNoFile) {
  // What has gone since the folder was read is listed still, but could not be looked at.
  const FakeRoot root;
  root.Write("folder/file", "");
  FindData data{};
  const Handle find = FindFirstFileW((Wide(root.Path().string()) + L"\\folder//*.*").c_str(), data);
  ASSERT_NE(find, InvalidHandle());
  std::filesystem::remove(root.Path() / "folder/file");
  std::set<std::wstring> names{data.name};
  while (FindNextFileW(find, data)) names.insert(data.name);
  EXPECT_TRUE(FindClose(find));
  EXPECT_TRUE(names.contains(L"file"));
}

TEST(FileTimes, StayInOrderAtTheirEnds) {
  const auto units = [](const FileTime& time) { return (std::uint64_t{time.high} << 32) | time.low; };
  EXPECT_EQ(units(FileTimeOf(0, 0)), 116'444'736'000'000'000u);
  EXPECT_EQ(units(FileTimeOf(-11'644'473'600, 100)), 1u);
  EXPECT_EQ(units(FileTimeOf(-11'644'473'601, 999'999'999)), 0u);
  EXPECT_EQ(units(FileTimeOf(INT64_MIN, 0)), 0u);
  EXPECT_GT(units(FileTimeOf(INT64_MAX, 0)), units(FileTimeOf(200'000'000'000, 0)));
}

TEST(FindFiles, ReportsLinksAsLinksWhateverTheyPointTo) {
  const FakeRoot root;
  root.Write("target/file", "12345");
  std::filesystem::create_directory(root.Path() / "links");
  std::filesystem::create_symlink("../target", root.Path() / "links/to-folder");
  std::filesystem::create_symlink("../target/file", root.Path() / "links/to-file");
  std::filesystem::create_symlink("nowhere", root.Path() / "links/dangling");
  std::filesystem::create_symlink("loop", root.Path() / "links/loop");
  const auto entries = EntriesOf(root.Path() / "links");
  EXPECT_EQ(entries.at(L"to-folder").attributes, kFileAttributeReparsePoint | kFileAttributeDirectory);
  EXPECT_EQ(entries.at(L"to-file").attributes, kFileAttributeReparsePoint);
  EXPECT_EQ(entries.at(L"dangling").attributes, kFileAttributeReparsePoint);
  EXPECT_EQ(entries.at(L"loop").attributes, kFileAttributeReparsePoint);
}

TEST(FindFiles, LeavesOutWhatIsNoFile) {
  const FakeRoot root;
  ASSERT_EQ(mkfifo((root.Path() / "pipe.dmp").c_str(), 0600), 0);
  const int made = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  (root.Path() / "socket.dmp").string().copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  close(made);
  EXPECT_THAT(NamesIn(root.Path()), UnorderedElementsAre(L".", L".."));
}

TEST(FindFiles, LeavesOutNamesThatWouldReadAsAnotherFile) {
  const FakeRoot root;
  root.Write("a/b", "the other file");
  std::ofstream(root.Path() / "a\\b") << "this one";
  EXPECT_THAT(NamesIn(root.Path()), UnorderedElementsAre(L".", L"..", L"a"));
}

TEST(FindFiles, GivesNamesOutsideUtf8AFormThatLeadsBackToThem) {
  const FakeRoot root;
  std::ofstream(root.Path() / "caf\xE9.dmp") << "x";
  std::ofstream(root.Path() / "caf\xEF\xBF\xBD.dmp") << "y";
  for (const auto& name : NamesIn(root.Path())) {
    EXPECT_TRUE(PathFileExistsW((Wide(root.Path().string()) + L"\\" + name).c_str()));
  }
}

TEST(FindFiles, ListsTheLongestNames) {
  const FakeRoot root;
  const std::string longest(255, 'n');
  root.Write(longest, "");
  EXPECT_TRUE(NamesIn(root.Path()).contains(Wide(longest)));
}

TEST(FindFiles, SaysWhyAFolderCannotBeListed) {
  const FakeRoot root;
  root.Write("file", "");
  FindData data{};
  const std::wstring folder = Wide(root.Path().string());
  EXPECT_EQ(FindFirstFileW((folder + L"\\missing//*.*").c_str(), data), InvalidHandle());
  EXPECT_EQ(LastError(), 3u);
  EXPECT_EQ(FindFirstFileW((folder + L"\\file//*.*").c_str(), data), InvalidHandle());
  EXPECT_EQ(LastError(), 3u);
  EXPECT_EQ(FindFirstFileW(L"//*.*", data), InvalidHandle());
  EXPECT_EQ(LastError(), 3u);
  std::filesystem::create_directory(root.Path() / "closed");
  root.Forbid("closed");
  const WithoutRights without_rights;
  EXPECT_EQ(FindFirstFileW((folder + L"\\closed//*.*").c_str(), data), InvalidHandle());
  EXPECT_EQ(LastError(), 5u);
}

TEST(FindFiles, DoesNotWaitForAPipeInAFoldersPlace) {
  const FakeRoot root;
  ASSERT_EQ(mkfifo((root.Path() / "pipe").c_str(), 0600), 0);
  FindData data{};
  EXPECT_EQ(FindFirstFileW((Wide(root.Path().string()) + L"\\pipe//*.*").c_str(), data), InvalidHandle());
  EXPECT_EQ(LastError(), 3u);
}

TEST(FindFiles, LeavesNothingOpen) {
  const FakeRoot root;
  const int before = dup(0);
  close(before);
  for (int i = 0; i < 100; ++i) EntriesOf(root.Path());
  const int after = dup(0);
  close(after);
  EXPECT_EQ(after, before);
}

TEST(FindFiles, TellsItsHandlesFromOthers) {
  FindData data{};
  for (const Handle handle : {Handle{nullptr}, InvalidHandle()}) {
    EXPECT_FALSE(FindNextFileW(handle, data));
    EXPECT_EQ(LastError(), 6u);
    EXPECT_FALSE(FindClose(handle));
    EXPECT_EQ(LastError(), 6u);
  }
  const FakeRoot root;
  const Handle find = FindFirstFileW((Wide(root.Path().string()) + L"//*.*").c_str(), data);
  ASSERT_NE(find, InvalidHandle());
  EXPECT_FALSE(CloseHandle(find));
  EXPECT_EQ(LastError(), 6u);
  char byte = 0;
  EXPECT_EQ(ReadFile(find, &byte, 1), 0u);
  EXPECT_TRUE(FindClose(find));
}

TEST(PathExists, ForFilesAndFoldersOnly) {
  const FakeRoot root;
  root.Write("folder/file", "");
  std::filesystem::create_symlink("nowhere", root.Path() / "dangling");
  const std::wstring folder = Wide(root.Path().string());
  EXPECT_TRUE(PathFileExistsW((folder + L"\\folder").c_str()));
  EXPECT_TRUE(PathFileExistsW((folder + L"\\folder\\").c_str()));
  EXPECT_TRUE(PathFileExistsW((folder + L"\\folder\\file").c_str()));
  EXPECT_FALSE(PathFileExistsW((folder + L"\\folder\\other").c_str()));
  EXPECT_FALSE(PathFileExistsW((folder + L"\\dangling").c_str()));
  EXPECT_FALSE(PathFileExistsW(L""));
  EXPECT_FALSE(PathFileExistsW(L"C:\\Windows\\INF\\oem1.inf"));
}

TEST(PathExtension, BeginsAtTheLastPointOfTheLastElement) {
  EXPECT_STREQ(PathFindExtensionW(L"/var\\a.b\\c.d.dmp"), L".dmp");
  EXPECT_STREQ(PathFindExtensionW(L"/var\\a.b\\c"), L"");
  EXPECT_STREQ(PathFindExtensionW(L"/var\\.hidden"), L".hidden");
  EXPECT_STREQ(PathFindExtensionW(L"name."), L".");
}

std::string ReadAll(Handle file, std::uint32_t step) {
  std::string text;
  std::string part(step, 0);
  while (const std::uint32_t count = ReadFile(file, part.data(), step)) text.append(part, 0, count);
  return text;
}

TEST(ReadFiles, GivesTheBytesInOrder) {
  const FakeRoot root;
  std::string text;
  for (int i = 0; i < 10000; ++i) text.push_back(static_cast<char>(i * 31));
  root.Write("file", text);
  const Handle file = OpenFileForReading((Wide(root.Path().string()) + L"\\file").c_str());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(ReadAll(file, 777), text);
  char byte = 0;
  EXPECT_EQ(ReadFile(file, &byte, 1), 0u);
  EXPECT_TRUE(CloseHandle(file));
}

TEST(ReadFiles, FindsTheMachinesHostsFileByItsWindowsPath) {
  std::ifstream stream("/etc/hosts", std::ios::binary);
  if (!stream) GTEST_SKIP() << "this machine has no hosts file";
  const std::string expected{std::istreambuf_iterator<char>(stream), {}};
  const Handle file = OpenFileForReading(L"C:\\Windows\\System32\\drivers\\etc\\hosts");
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(ReadAll(file, 64), expected);
  EXPECT_TRUE(CloseHandle(file));
}

TEST(ReadFiles, OpensFilesOnly) {
  const FakeRoot root;
  ASSERT_EQ(mkfifo((root.Path() / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(OpenFileForReading(Wide(root.Path().string()).c_str()), nullptr);
  EXPECT_EQ(LastError(), 5u);
  EXPECT_EQ(OpenFileForReading((Wide(root.Path().string()) + L"\\pipe").c_str()), nullptr);
  EXPECT_EQ(LastError(), 5u);
  EXPECT_EQ(OpenFileForReading(L"/dev/zero"), nullptr);
  EXPECT_EQ(LastError(), 5u);
  EXPECT_EQ(OpenFileForReading((Wide(root.Path().string()) + L"\\missing").c_str()), nullptr);
  EXPECT_EQ(LastError(), 2u);
  EXPECT_EQ(OpenFileForReading(L"C:\\Windows\\INF\\oem1.inf"), nullptr);
  EXPECT_EQ(LastError(), 3u);
}

}  // namespace
}  // namespace velmora::os
