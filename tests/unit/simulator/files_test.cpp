#include "platform/os/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "platform/os/folders.h"
#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using simulator::File;
using testing::ElementsAre;
using testing::IsEmpty;

simulator::Machine MachineWithFiles(std::vector<File> files) {
  auto machine = simulator::BlankMachine();
  machine.files = {{.path = "C:", .folder = true}, {.path = "C:\\dump", .folder = true}};
  machine.files->insert(machine.files->end(), files.begin(), files.end());
  return machine;
}

/// The names of a folder.
std::vector<std::string> NamesIn(const char* pattern) {
  std::vector<std::string> names;
  const FolderHandle folder = OpenFolderA(pattern);
  if (folder == nullptr) return names;
  FolderEntry entry{};
  while (ReadFolderA(folder, entry)) names.emplace_back(entry.name);
  EXPECT_EQ(LastError(), 18u);
  CloseFolder(folder);
  return names;
}

/// Deletes the file `path` below "C:".
bool Delete(const char* path) {
  constexpr FileTime kAnyTime{0xFFFFFFFF, 0xFFFFFFFF};
  const FolderHandle folder = OpenFolderA("C://*.*");
  const bool is_deleted = DeleteFileBelowA(folder, path, kAnyTime);
  CloseFolder(folder);
  return is_deleted;
}

/// The whole of a file.
std::string ContentsOf(const wchar_t* path) {
  const Handle file = OpenFileForReading(path);
  if (file == nullptr) return "none";
  std::string contents;
  std::array<char, 4> buffer{};
  while (const auto size = ReadFile(file, buffer.data(), buffer.size())) contents.append(buffer.data(), size);
  CloseHandle(file);
  return contents;
}

TEST(SimulatedFiles, AreListedInTheMachinesOrderBehindTheTwoPoints) {
  const auto run = simulator::Use(MachineWithFiles({{.path = "C:\\dump\\b.dmp"},
                                                    {.path = "C:\\dump\\sub", .folder = true},
                                                    {.path = "C:\\dump\\sub\\deep.dmp"},
                                                    {.path = "C:\\dump\\A.dmp"}}));
  EXPECT_THAT(NamesIn("c:\\DUMP//*.*"), ElementsAre(".", "..", "b.dmp", "sub", "A.dmp"));
  EXPECT_THAT(NamesIn("C:\\dump\\sub//*.*"), ElementsAre(".", "..", "deep.dmp"));
}

TEST(SimulatedFiles, AreReadWithTheirKindAndTheTimeTheyWereWritten) {
  const auto run = simulator::Use(MachineWithFiles(
      {{.path = "C:\\dump\\\xC3\xA4.dmp", .read_only = true, .last_write_time = 0x100000003}}));
  const FolderHandle folder = OpenFolderA("C:\\dump//*.*");
  FolderEntry entry{};
  ReadFolderA(folder, entry);
  EXPECT_EQ(entry.attributes, kFileAttributeDirectory);
  ReadFolderA(folder, entry);
  ASSERT_TRUE(ReadFolderA(folder, entry));
  CloseFolder(folder);
  EXPECT_STREQ(entry.name, "\xC3\xA4.dmp");
  EXPECT_EQ(entry.attributes, 0u);
  EXPECT_EQ(entry.last_write_time.high, 1u);
  EXPECT_EQ(entry.last_write_time.low, 3u);
}

TEST(SimulatedFiles, AreListedByNameAndKind) {
  const auto run = simulator::Use(MachineWithFiles({{.path = "C:\\dump\\\xC3\xA4.dmp", .read_only = true}}));
  FindData data{};
  const Handle find = FindFirstFileW(L"C:\\dump//*.*", data);
  EXPECT_EQ(data.attributes, kFileAttributeDirectory);
  FindNextFileW(find, data);
  ASSERT_TRUE(FindNextFileW(find, data));
  FindClose(find);
  EXPECT_EQ(std::wstring(data.name), L"\x00E4.dmp");
  EXPECT_EQ(data.attributes, 0u) << "only whether it is a folder or a link is told";
}

TEST(SimulatedFiles, CannotBeListedWhereThereIsNoFolderOrNoPermission) {
  const auto run = simulator::Use(
      MachineWithFiles({{.path = "C:\\file"}, {.path = "C:\\denied", .folder = true, .list_error = 5}}));
  FindData data{};
  EXPECT_EQ(FindFirstFileW(L"C:\\none//*.*", data), InvalidHandle());
  EXPECT_EQ(LastError(), 3u);
  EXPECT_EQ(FindFirstFileW(L"C:\\file//*.*", data), InvalidHandle());
  EXPECT_EQ(FindFirstFileW(L"C:\\denied//*.*", data), InvalidHandle());
  EXPECT_EQ(LastError(), 5u);
  EXPECT_EQ(OpenFolderA("C:\\none//*.*"), nullptr);
  EXPECT_EQ(LastError(), 3u);
  EXPECT_EQ(OpenFolderA("C:\\denied//*.*"), nullptr);
  EXPECT_EQ(LastError(), 5u);
}

TEST(SimulatedFiles, LinkToOtherPlaces) {
  const auto run =
      simulator::Use(MachineWithFiles({{.path = "C:\\other", .folder = true},
                                       {.path = "C:\\other\\secret.dmp", .contents = "secret"},
                                       {.path = "C:\\dump\\link", .link_target = "C:\\other"},
                                       {.path = "C:\\dump\\broken", .link_target = "C:\\nowhere"}}));
  const FolderHandle folder = OpenFolderA("C:\\dump//*.*");
  FolderEntry entry{};
  for (int i = 0; i < 3; ++i) ReadFolderA(folder, entry);
  EXPECT_STREQ(entry.name, "link");
  EXPECT_EQ(entry.attributes, kFileAttributeDirectory | kFileAttributeReparsePoint);
  ReadFolderA(folder, entry);
  EXPECT_EQ(entry.attributes, kFileAttributeReparsePoint);
  CloseFolder(folder);

  EXPECT_THAT(NamesIn("C:\\dump\\link//*.*"), ElementsAre(".", "..", "secret.dmp"));
  EXPECT_EQ(ContentsOf(L"C:\\dump\\link\\secret.dmp"), "secret");
  EXPECT_FALSE(PathFileExistsW(L"C:\\dump\\broken"));
}

TEST(SimulatedFiles, MayLinkInALoop) {
  const auto run =
      simulator::Use(MachineWithFiles({{.path = "C:\\dump\\up", .link_target = "C:\\dump"},
                                       {.path = "C:\\dump\\self", .link_target = "C:\\dump\\self"}}));
  EXPECT_THAT(NamesIn("C:\\dump\\up\\up\\up//*.*"), ElementsAre(".", "..", "up", "self"));
  EXPECT_FALSE(PathFileExistsW(L"C:\\dump\\self"));
}

TEST(SimulatedFiles, AreDeletedAndLinksInsteadOfWhatTheyPointTo) {
  auto run = simulator::Use(MachineWithFiles(
      {{.path = "C:\\dump\\a.dmp"}, {.path = "C:\\dump\\link", .link_target = "C:\\dump\\a.dmp"}}));
  EXPECT_TRUE(Delete("dump\\link"));
  EXPECT_THAT(NamesIn("C:\\dump//*.*"), ElementsAre(".", "..", "a.dmp"));
  EXPECT_TRUE(Delete("dump\\a.dmp"));
  EXPECT_FALSE(Delete("dump\\a.dmp"));
  EXPECT_EQ(LastError(), 2u);
  EXPECT_FALSE(Delete("none\\a.dmp"));
  EXPECT_EQ(LastError(), 3u);
}

TEST(SimulatedFiles, MayRefuseToBeDeletedForAWhileOrForGood) {
  const auto run =
      simulator::Use(MachineWithFiles({{.path = "C:\\dump\\ro", .read_only = true},
                                       {.path = "C:\\dump\\busy", .delete_error = 32, .failing_deletions = 2},
                                       {.path = "C:\\dump\\held", .delete_error = 32}}));
  for (const char* path : {"dump\\ro", "dump", "dump\\busy", "dump\\busy", "dump\\held"}) {
    EXPECT_FALSE(Delete(path)) << path;
  }
  EXPECT_EQ(LastError(), 32u);
  EXPECT_TRUE(Delete("dump\\busy")) << "the third time";
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(Delete("dump\\held"));
}

TEST(SimulatedFiles, AreReadToTheirEnd) {
  const auto run =
      simulator::Use(MachineWithFiles({{.path = "C:\\hosts", .contents = "127.0.0.1 x\r\n"},
                                       {.path = "C:\\raw", .raw = simulator::Bytes{{0xFF, 0xFE, 0}}},
                                       {.path = "C:\\denied", .open_error = 5}}));
  EXPECT_EQ(ContentsOf(L"C:\\hosts"), "127.0.0.1 x\r\n");
  EXPECT_EQ(ContentsOf(L"C:/hosts"), "127.0.0.1 x\r\n");
  EXPECT_EQ(ContentsOf(L"C:\\raw"), std::string("\xFF\xFE\0", 3));
  EXPECT_EQ(ContentsOf(L"C:\\dump"), "none") << "a folder";
  EXPECT_EQ(ContentsOf(L"C:\\denied"), "none");
  EXPECT_EQ(LastError(), 5u);
}

TEST(SimulatedFiles, MayBeHugeWithoutTakingMemory) {
  const auto run =
      simulator::Use(MachineWithFiles({{.path = "C:\\huge", .contents = "abc", .repeated = 1'000'000'000'000},
                                       {.path = "C:\\few", .contents = "abc", .repeated = 3}}));
  EXPECT_EQ(ContentsOf(L"C:\\few"), "abcabcabc");
  const Handle file = OpenFileForReading(L"C:\\huge");
  std::array<char, 100> buffer{};
  EXPECT_EQ(ReadFile(file, buffer.data(), 100), 100u);
  EXPECT_EQ(ReadFile(file, buffer.data(), 3), 3u);
  EXPECT_EQ(std::string(buffer.data(), 3), "bca") << "it goes on where it stood";
  CloseHandle(file);
}

TEST(SimulatedFiles, CountsFindHandles) {
  const velmora::testing::CapturedProblems captured;
  {
    const auto run = simulator::Use(MachineWithFiles({}));
    FindData data{};
    const Handle find = FindFirstFileW(L"C:\\dump//*.*", data);
    EXPECT_FALSE(CloseHandle(find));
  }
  EXPECT_THAT(captured.Problems(),
              ElementsAre("CloseHandle was given a handle that FindClose closes", "handles left open: 1"));
}

TEST(SimulatedFiles, GoWrongAsATestWishes) {
  auto run = simulator::Use(MachineWithFiles({{.path = "C:\\dump\\a", .contents = "12345"}}));
  const FolderHandle folder = OpenFolderA("C:\\dump//*.*");
  const auto delete_a = [&] { return DeleteFileBelowA(folder, "a", FileTime{0xFFFFFFFF, 0xFFFFFFFF}); };
  run.Inject(Fault::kFail, 0, true);
  EXPECT_THAT(NamesIn("C:\\dump//*.*"), IsEmpty());
  EXPECT_FALSE(delete_a());
  EXPECT_FALSE(PathFileExistsW(L"C:\\dump\\a"));
  EXPECT_EQ(ContentsOf(L"C:\\dump\\a"), "none");
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_TRUE(delete_a());
  EXPECT_EQ(run.machine().files->size(), 3u) << "it is still there";
  run.Inject(Fault::kUnterminated, 0, true);
  EXPECT_THAT(NamesIn("C:\\dump//*.*"),
              ElementsAre(std::string(259, 'A'), std::string(259, 'A'), std::string(259, 'A')));
  EXPECT_EQ(ContentsOf(L"C:\\dump\\a"), "AAAAA");
  CloseFolder(folder);
}

TEST(SimulatedFiles, HaveAnExtensionFromTheLastPoint) {
  EXPECT_EQ(std::wstring(PathFindExtensionW(L"C:\\a.b\\c.dmp")), L".dmp");
}

}  // namespace
