#include "platform/os/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using simulator::File;
using testing::ElementsAre;
using testing::IsEmpty;

simulator::Machine MachineWith(std::vector<File> files) {
  auto machine = simulator::BlankMachine();
  machine.files = {{.path = "C:", .folder = true}, {.path = "C:\\dump", .folder = true}};
  machine.files->insert(machine.files->end(), files.begin(), files.end());
  return machine;
}

/// The names of a folder.
std::vector<std::string> List(const char* pattern) {
  std::vector<std::string> names;
  FindData<char> data{};
  const Handle find = FindFirstFileA(pattern, data);
  if (find == InvalidHandle()) return names;
  do {
    names.emplace_back(data.name);
  } while (FindNextFileA(find, data));
  EXPECT_EQ(LastError(), 18u);
  FindClose(find);
  return names;
}

/// The whole of a file.
std::string Read(const wchar_t* path) {
  const Handle file = OpenFileForReading(path);
  if (file == nullptr) return "none";
  std::string contents;
  std::array<char, 4> buffer{};
  while (const auto size = ReadFile(file, buffer.data(), buffer.size())) contents.append(buffer.data(), size);
  CloseHandle(file);
  return contents;
}

TEST(SimulatedFiles, AreListedInTheMachinesOrderBehindTheTwoPoints) {
  const auto run = simulator::Use(MachineWith({{.path = "C:\\dump\\b.dmp"},
                                               {.path = "C:\\dump\\sub", .folder = true},
                                               {.path = "C:\\dump\\sub\\deep.dmp"},
                                               {.path = "C:\\dump\\A.dmp"}}));
  EXPECT_THAT(List("c:\\DUMP//*.*"), ElementsAre(".", "..", "b.dmp", "sub", "A.dmp"));
  EXPECT_THAT(List("C:\\dump\\sub//*.*"), ElementsAre(".", "..", "deep.dmp"));
}

TEST(SimulatedFiles, AreListedWithTheirFacts) {
  const auto run = simulator::Use(MachineWith({{.path = "C:\\dump\\\xC3\xA4.dmp",
                                                .read_only = true,
                                                .creation_time = 1,
                                                .last_access_time = 2,
                                                .last_write_time = 0x100000003,
                                                .contents = "12345"}}));
  FindData<char> data{};
  const Handle find = FindFirstFileA("C:\\dump//*.*", data);
  EXPECT_EQ(data.attributes, kFileAttributeDirectory);
  FindNextFileA(find, data);
  ASSERT_TRUE(FindNextFileA(find, data));
  FindClose(find);
  EXPECT_STREQ(data.name, "\xC3\xA4.dmp");
  EXPECT_EQ(data.attributes & (kFileAttributeDirectory | kFileAttributeReadOnly), kFileAttributeReadOnly);
  EXPECT_EQ(data.last_write_time.high, 1u);
  EXPECT_EQ(data.last_write_time.low, 3u);
  EXPECT_EQ(data.size, 5u);
}

TEST(SimulatedFiles, AreListedByNameAndKindInAWideSearch) {
  const auto run = simulator::Use(MachineWith({{.path = "C:\\dump\\\xC3\xA4.dmp", .read_only = true}}));
  FindData<wchar_t> data{};
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
      MachineWith({{.path = "C:\\file"}, {.path = "C:\\denied", .folder = true, .list_error = 5}}));
  FindData<char> data{};
  EXPECT_EQ(FindFirstFileA("C:\\none//*.*", data), InvalidHandle());
  EXPECT_EQ(LastError(), 3u);
  EXPECT_EQ(FindFirstFileA("C:\\file//*.*", data), InvalidHandle());
  EXPECT_EQ(FindFirstFileA("C:\\denied//*.*", data), InvalidHandle());
  EXPECT_EQ(LastError(), 5u);
}

TEST(SimulatedFiles, LinkToOtherPlaces) {
  const auto run = simulator::Use(MachineWith({{.path = "C:\\other", .folder = true},
                                               {.path = "C:\\other\\secret.dmp", .contents = "secret"},
                                               {.path = "C:\\dump\\link", .link_target = "C:\\other"},
                                               {.path = "C:\\dump\\broken", .link_target = "C:\\nowhere"}}));
  FindData<char> data{};
  const Handle find = FindFirstFileA("C:\\dump//*.*", data);
  FindNextFileA(find, data);
  FindNextFileA(find, data);
  EXPECT_STREQ(data.name, "link");
  EXPECT_EQ(data.attributes, kFileAttributeDirectory | kFileAttributeReparsePoint);
  FindNextFileA(find, data);
  EXPECT_EQ(data.attributes & kFileAttributeReparsePoint, kFileAttributeReparsePoint);
  FindClose(find);

  EXPECT_THAT(List("C:\\dump\\link//*.*"), ElementsAre(".", "..", "secret.dmp"));
  EXPECT_EQ(Read(L"C:\\dump\\link\\secret.dmp"), "secret");
  EXPECT_FALSE(PathFileExistsW(L"C:\\dump\\broken"));
}

TEST(SimulatedFiles, MayLinkInALoop) {
  const auto run = simulator::Use(MachineWith({{.path = "C:\\dump\\up", .link_target = "C:\\dump"},
                                               {.path = "C:\\dump\\self", .link_target = "C:\\dump\\self"}}));
  EXPECT_THAT(List("C:\\dump\\up\\up\\up//*.*"), ElementsAre(".", "..", "up", "self"));
  EXPECT_FALSE(PathFileExistsW(L"C:\\dump\\self"));
}

TEST(SimulatedFiles, AreDeletedAndLinksInsteadOfWhatTheyPointTo) {
  auto run = simulator::Use(MachineWith(
      {{.path = "C:\\dump\\a.dmp"}, {.path = "C:\\dump\\link", .link_target = "C:\\dump\\a.dmp"}}));
  EXPECT_TRUE(DeleteFileA("C:\\dump\\link"));
  EXPECT_THAT(List("C:\\dump//*.*"), ElementsAre(".", "..", "a.dmp"));
  EXPECT_TRUE(DeleteFileA("C:\\dump\\a.dmp"));
  EXPECT_FALSE(DeleteFileA("C:\\dump\\a.dmp"));
  EXPECT_EQ(LastError(), 2u);
  EXPECT_FALSE(DeleteFileA("C:\\none\\a.dmp"));
  EXPECT_EQ(LastError(), 3u);
}

TEST(SimulatedFiles, MayRefuseToBeDeletedForAWhileOrForGood) {
  const auto run =
      simulator::Use(MachineWith({{.path = "C:\\dump\\ro", .read_only = true},
                                  {.path = "C:\\dump\\busy", .delete_error = 32, .failing_deletions = 2},
                                  {.path = "C:\\dump\\held", .delete_error = 32}}));
  for (const char* path :
       {"C:\\dump\\ro", "C:\\dump", "C:\\dump\\busy", "C:\\dump\\busy", "C:\\dump\\held"}) {
    EXPECT_FALSE(DeleteFileA(path)) << path;
  }
  EXPECT_EQ(LastError(), 32u);
  EXPECT_TRUE(DeleteFileA("C:\\dump\\busy")) << "the third time";
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(DeleteFileA("C:\\dump\\held"));
}

TEST(SimulatedFiles, AreReadToTheirEnd) {
  const auto run = simulator::Use(MachineWith({{.path = "C:\\hosts", .contents = "127.0.0.1 x\r\n"},
                                               {.path = "C:\\raw", .raw = simulator::Bytes{{0xFF, 0xFE, 0}}},
                                               {.path = "C:\\denied", .open_error = 5}}));
  EXPECT_EQ(Read(L"C:\\hosts"), "127.0.0.1 x\r\n");
  EXPECT_EQ(Read(L"C:/hosts"), "127.0.0.1 x\r\n");
  EXPECT_EQ(Read(L"C:\\raw"), std::string("\xFF\xFE\0", 3));
  EXPECT_EQ(Read(L"C:\\dump"), "none") << "a folder";
  EXPECT_EQ(Read(L"C:\\denied"), "none");
  EXPECT_EQ(LastError(), 5u);
}

TEST(SimulatedFiles, MayBeHugeWithoutTakingMemory) {
  const auto run =
      simulator::Use(MachineWith({{.path = "C:\\huge", .contents = "abc", .repeated = 1'000'000'000'000},
                                  {.path = "C:\\few", .contents = "abc", .repeated = 3}}));
  EXPECT_EQ(Read(L"C:\\few"), "abcabcabc");
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
    const auto run = simulator::Use(MachineWith({}));
    FindData<char> data{};
    const Handle find = FindFirstFileA("C:\\dump//*.*", data);
    EXPECT_FALSE(CloseHandle(find));
  }
  EXPECT_THAT(captured.Problems(),
              ElementsAre("CloseHandle was given a handle that FindClose closes", "handles left open: 1"));
}

TEST(SimulatedFiles, GoWrongAsATestWishes) {
  auto run = simulator::Use(MachineWith({{.path = "C:\\dump\\a", .contents = "12345"}}));
  run.Inject(Fault::kFail, 0, true);
  EXPECT_THAT(List("C:\\dump//*.*"), IsEmpty());
  EXPECT_FALSE(DeleteFileA("C:\\dump\\a"));
  EXPECT_FALSE(PathFileExistsW(L"C:\\dump\\a"));
  EXPECT_EQ(Read(L"C:\\dump\\a"), "none");
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_TRUE(DeleteFileA("C:\\dump\\a"));
  EXPECT_EQ(run.machine().files->size(), 3u) << "it is still there";
  run.Inject(Fault::kUnterminated, 0, true);
  EXPECT_THAT(List("C:\\dump//*.*"),
              ElementsAre(std::string(259, 'A'), std::string(259, 'A'), std::string(259, 'A')));
  EXPECT_EQ(Read(L"C:\\dump\\a"), "AAAAA");
}

TEST(SimulatedFiles, HaveAnExtensionFromTheLastPoint) {
  EXPECT_EQ(std::wstring(PathFindExtensionW(L"C:\\a.b\\c.dmp")), L".dmp");
}

}  // namespace
