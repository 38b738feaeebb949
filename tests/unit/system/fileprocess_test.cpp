#include "velmora/fileprocess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/allocations.h"

namespace {

using simulator::Fault;
using simulator::File;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmora::testing::CapturedLog;

constexpr const char* kDump = "C:\\dump";

File Folder(const std::string& path) { return {.path = path, .folder = true}; }
File Written(const std::string& path, std::uint64_t time) { return {.path = path, .last_write_time = time}; }
File Link(const std::string& path, const std::string& target) {
  return {.path = path, .link_target = target};
}

simulator::Machine MachineWithFiles(const std::vector<File>& files) {
  auto machine = simulator::BlankMachine();
  machine.files = {Folder("C:"), Folder(kDump)};
  machine.files->insert(machine.files->end(), files.begin(), files.end());
  return machine;
}

/// Files "0" to "COUNT-1" in the folder, the first the oldest.
std::vector<File> FilesOfRisingAge(int count, const std::string& folder = kDump) {
  std::vector<File> files;
  for (int i = 0; i < count; ++i) {
    files.push_back(Written(folder + "\\" + std::to_string(i), 1000 + static_cast<std::uint64_t>(i)));
  }
  return files;
}

/// The names of the files that are left in the dump folder itself.
std::vector<std::string> FilesLeft(simulator::Run& run) {
  std::vector<std::string> names;
  const std::string folder = std::string(kDump) + "\\";
  for (const File& file : *run.machine().files) {
    if (file.path.starts_with(folder)) names.push_back(file.path.substr(folder.size()));
  }
  return names;
}

std::vector<std::string> LeftAfter(const std::vector<File>& files, int kept) {
  auto run = simulator::Use(MachineWithFiles(files));
  CFileProcess().DeleteFileByPath(kDump, kept);
  return FilesLeft(run);
}

TEST(GetTypeFiles, ListsDepthFirstEachSubfolderWhereItWasMet) {
  const auto run = simulator::Use(MachineWithFiles(
      {Written("C:\\dump\\1.dmp", 1), Folder("C:\\dump\\b"), Written("C:\\dump\\2.dmp", 1),
       Folder("C:\\dump\\a"), Written("C:\\dump\\3.txt", 1), Written("C:\\dump\\b\\4.dmp", 1),
       Folder("C:\\dump\\b\\c"), Written("C:\\dump\\b\\c\\5.dmp", 1), Written("C:\\dump\\b\\6.dmp", 1),
       Written("C:\\dump\\a\\7.dmp", 1)}));
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".dmp", L"C:\\dump"),
              ElementsAre(L"C:\\dump\\1.dmp", L"C:\\dump\\b\\4.dmp", L"C:\\dump\\b\\c\\5.dmp",
                          L"C:\\dump\\b\\6.dmp", L"C:\\dump\\2.dmp", L"C:\\dump\\a\\7.dmp"));
}

TEST(GetTypeFiles, HandsTheDoubledSlashToTheSearch) {
  const auto run = simulator::Use(MachineWithFiles({Folder("C:\\dump\\a")}));
  CFileProcess().GetTypeFiles(L".dmp", L"C:\\dump");
  EXPECT_THAT(run.Trace(), ElementsAre("PathFileExistsW(C:\\dump)", "FindFirstFileW(C:\\dump//*.*)",
                                       "FindNextFileW()", "FindNextFileW()", "FindNextFileW()", "FindClose()",
                                       "FindFirstFileW(C:\\dump\\a//*.*)", "FindNextFileW()",
                                       "FindNextFileW()", "FindClose()"));
}

TEST(GetTypeFiles, TakesExactlyTheExtensionThatItWasGiven) {
  const auto run = simulator::Use(MachineWithFiles(
      {Written("C:\\dump\\a.dmp", 1), Written("C:\\dump\\b.DMP", 1), Written("C:\\dump\\c.dmp.txt", 1),
       Written("C:\\dump\\d.dmp1", 1), Written("C:\\dump\\e.dm", 1), Written("C:\\dump\\dmp", 1),
       Written("C:\\dump\\.dmp", 1)}));
  CFileProcess files;
  EXPECT_THAT(files.GetTypeFiles(L".DMP", L"C:\\dump"), ElementsAre(L"C:\\dump\\b.DMP"));
  EXPECT_THAT(files.GetTypeFiles(L".dmp", L"C:\\dump"), ElementsAre(L"C:\\dump\\a.dmp", L"C:\\dump\\.dmp"));
  EXPECT_THAT(files.GetTypeFiles(L"dmp", L"C:\\dump"), IsEmpty());
  EXPECT_THAT(files.GetTypeFiles(L".dmp.txt", L"C:\\dump"), IsEmpty());
}

TEST(GetTypeFiles, NeverListsAFileWithoutAnExtension) {
  const auto run =
      simulator::Use(MachineWithFiles({Written("C:\\dump\\plain", 1), Written("C:\\dump\\a.", 1),
                                       Folder("C:\\dump\\x.y"), Written("C:\\dump\\x.y\\plain", 1)}));
  EXPECT_THAT(CFileProcess().GetTypeFiles(L"", L"C:\\dump"), IsEmpty());
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".y", L"C:\\dump"), IsEmpty());
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".", L"C:\\dump"), ElementsAre(L"C:\\dump\\a."));
}

TEST(GetTypeFiles, IsEmptyWithoutTheFolder) {
  const auto run = simulator::Use(MachineWithFiles({}));
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".dmp", L"C:\\nosuch"), IsEmpty());
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".dmp", L""), IsEmpty());
  EXPECT_EQ(run.Calls("FindFirstFileW"), 0);
}

TEST(GetTypeFiles, IsEmptyForATextOfWhichTheSystemWouldReadOnlyTheBeginning) {
  auto run = simulator::Use(MachineWithFiles({}));
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".dmp", std::wstring(L"C:\\dump\0x", 9)), IsEmpty());
  EXPECT_THAT(run.Trace(), IsEmpty());
}

TEST(GetTypeFiles, LeavesOutFoldersThatCannotBeRead) {
  auto closed = Folder("C:\\dump\\closed");
  closed.list_error = 5;
  const auto run = simulator::Use(
      MachineWithFiles({closed, Written("C:\\dump\\closed\\1.dmp", 1), Written("C:\\dump\\2.dmp", 1)}));
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".dmp", L"C:\\dump"), ElementsAre(L"C:\\dump\\2.dmp"));
}

TEST(GetTypeFiles, EntersNoLink) {
  const auto run = simulator::Use(
      MachineWithFiles({Link("C:\\dump\\loop", "C:\\dump"), Link("C:\\dump\\out", "C:\\other"),
                        Folder("C:\\other"), Written("C:\\other\\1.dmp", 1),
                        Link("C:\\dump\\dangling", "C:\\nowhere"), Written("C:\\dump\\2.dmp", 1)}));
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".dmp", L"C:\\dump"), ElementsAre(L"C:\\dump\\2.dmp"));
}

TEST(GetTypeFiles, FollowsTheLinkThatTheHostNames) {
  const auto run = simulator::Use(MachineWithFiles({Link("C:\\link", kDump), Written("C:\\dump\\2.dmp", 1)}));
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".dmp", L"C:\\link"), ElementsAre(L"C:\\link\\2.dmp"));
}

TEST(GetTypeFiles, HasNoLimitOfDepthAndOneOpenFolderAtATime) {
  std::vector<File> files;
  std::string path = kDump;
  for (int i = 0; i < 60; ++i) files.push_back(Folder(path += "\\d"));
  files.push_back(Written(path + "\\deep.dmp", 1));
  auto run = simulator::Use(MachineWithFiles(files));
  EXPECT_THAT(CFileProcess().GetTypeFiles(L".dmp", L"C:\\dump"), SizeIs(1));
  const auto trace = run.Trace();
  EXPECT_EQ(std::ranges::count(trace, "FindClose()"), 61);
  for (std::size_t i = 0; i + 1 < trace.size(); ++i) {
    if (trace[i].starts_with("FindFirstFileW")) {
      const auto end =
          std::find(trace.begin() + static_cast<std::ptrdiff_t>(i) + 1, trace.end(), "FindClose()");
      EXPECT_EQ(std::count_if(trace.begin() + static_cast<std::ptrdiff_t>(i) + 1, end,
                              [](const auto& call) { return call.starts_with("FindFirstFileW"); }),
                0);
    }
  }
}

TEST(GetTypeFiles, LogsNothing) {
  const auto run = simulator::Use(MachineWithFiles({Written("C:\\dump\\2.dmp", 1)}));
  const CapturedLog log;
  CFileProcess().GetTypeFiles(L".dmp", L"C:\\dump");
  EXPECT_THAT(log.Texts(), IsEmpty());
}

TEST(GetTypeFiles, IsEmptyWhenMemoryRunsOut) {
  const auto run = simulator::Use(
      MachineWithFiles({Folder("D:"), Folder("D:\\a"), Written("D:\\a\\1.d", 1), Written("D:\\2.d", 1)}));
  // So short texts are handed over without an allocation of the caller's own.
  const auto results =
      velmora::testing::WithEachAllocationFailing([] { return CFileProcess().GetTypeFiles(L".d", L"D:"); });
  EXPECT_THAT(results.back(), SizeIs(2));
  EXPECT_THAT(std::vector(results.begin(), results.end() - 1), Each(IsEmpty()));
}

simulator::Machine MachineWithProgram() {
  return MachineWithFiles({{.path = "C:\\dump\\run.cmd", .program = true}, {.path = "C:\\dump\\text.txt"}});
}

TEST(ExcuteCmdFile, StartsTheProgramAndClosesItsHandlesAtOnce) {
  auto run = simulator::Use(MachineWithProgram());
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(L"C:\\dump\\run.cmd"), 1);
  EXPECT_THAT(run.Trace(), ElementsAre("PathFileExistsW(C:\\dump\\run.cmd)", "GetStdHandle(0xFFFFFFF6)",
                                       "CreateProcessW(C:\\dump\\run.cmd, null, 0, 0x8000000, 104)",
                                       "CloseHandle()", "CloseHandle()"));
  EXPECT_EQ(run.machine().processes->at(0).caption, "run.cmd") << "it runs on";
}

TEST(ExcuteCmdFile, TriesNothingForAFileThatIsMissing) {
  const auto run = simulator::Use(MachineWithProgram());
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(L"C:\\dump\\nosuch.cmd"), 0);
  EXPECT_THAT(run.Trace(), ElementsAre("PathFileExistsW(C:\\dump\\nosuch.cmd)"));
}

TEST(ExcuteCmdFile, FailsForWhatIsNoProgram) {
  const auto run = simulator::Use(MachineWithProgram());
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(L"C:\\dump\\text.txt"), 0);
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(L"C:\\dump"), 0);
}

TEST(ExcuteCmdFile, StartsNothingForATextOfWhichTheSystemWouldReadOnlyTheBeginning) {
  auto run = simulator::Use(MachineWithProgram());
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(std::wstring(L"C:\\dump\\run.cmd").append(1, L'\0').append(L"x")),
            0);
  EXPECT_THAT(run.Trace(), IsEmpty());
}

TEST(ExcuteCmdFile, ClosesOnlyTheHandlesThatItGot) {
  auto run = simulator::Use(MachineWithProgram());
  run.Inject(Fault::kEmpty, 2);
  EXPECT_EQ(CFileProcess().ExcuteCmdFile(L"C:\\dump\\run.cmd"), 1);
  EXPECT_EQ(run.Calls("CloseHandle"), 0);
}

TEST(ExcuteCmdFile, LogsItsResultAndTheLastErrorWhetherItStartedOrNot) {
  const auto run = simulator::Use(MachineWithProgram());
  const CapturedLog log;
  velmora::os::SetLastError(0);
  CFileProcess().ExcuteCmdFile(L"C:\\dump\\run.cmd");
  velmora::os::SetLastError(77);
  CFileProcess().ExcuteCmdFile(L"C:\\dump\\run.cmd");
  CFileProcess().ExcuteCmdFile(L"C:\\dump\\text.txt");
  CFileProcess().ExcuteCmdFile(L"C:\\dump\\nosuch");
  EXPECT_THAT(log.Texts(), ElementsAre(",bRet=1, lasterror=0(CFileProcess::ExcuteCmdFile)",
                                       ",bRet=1, lasterror=77(CFileProcess::ExcuteCmdFile)",
                                       ",bRet=0, lasterror=193(CFileProcess::ExcuteCmdFile)",
                                       ",bRet=0, lasterror=2(CFileProcess::ExcuteCmdFile)"));
  EXPECT_EQ(log.Lines()[0].function, "CFileProcess::ExcuteCmdFile");
  EXPECT_THAT(log.Lines()[0].file, testing::EndsWith("src/system/fileprocess.cpp"));
}

TEST(DeleteFileByPath, KeepsTheNewestAndDeletesTheOthers) {
  EXPECT_THAT(LeftAfter(FilesOfRisingAge(5), 5), SizeIs(5));
  EXPECT_THAT(LeftAfter(FilesOfRisingAge(5), 3), ElementsAre("2", "3", "4"));
  EXPECT_THAT(LeftAfter(FilesOfRisingAge(5), 0), IsEmpty());
  EXPECT_THAT(LeftAfter(FilesOfRisingAge(5), 6), SizeIs(5));
}

TEST(DeleteFileByPath, DeletesNothingForANegativeNumber) {
  for (const int kept : {-1, -3, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_THAT(LeftAfter(FilesOfRisingAge(5), kept), SizeIs(5)) << kept;
  }
}

TEST(DeleteFileByPath, DeletesNothingForATextOfWhichTheSystemWouldReadOnlyTheBeginning) {
  auto run = simulator::Use(MachineWithFiles({}));
  CFileProcess().DeleteFileByPath(std::string("C:\\dump\0x", 9), 0);
  EXPECT_THAT(run.Trace(), IsEmpty());
}

TEST(DeleteFileByPath, DeletesTheThousandOldestAtMost) {
  auto files = FilesOfRisingAge(1500);
  std::ranges::reverse(files);
  const auto left = LeftAfter(files, 0);
  ASSERT_THAT(left, SizeIs(500));
  EXPECT_EQ(left.front(), "1499");
  EXPECT_EQ(left.back(), "1000");
}

TEST(DeleteFileByPath, LooksAtTheTimesOfTheWholeTree) {
  auto run = simulator::Use(MachineWithFiles({Written("C:\\dump\\5", 5), Folder("C:\\dump\\a"),
                                              Written("C:\\dump\\a\\1", 1), Folder("C:\\dump\\a\\b"),
                                              Written("C:\\dump\\a\\b\\4", 4), Written("C:\\dump\\2", 2)}));
  CFileProcess().DeleteFileByPath(kDump, 2);
  EXPECT_THAT(FilesLeft(run), ElementsAre("5", "a", "a\\b", "a\\b\\4"));
}

TEST(DeleteFileByPath, OpensTheFolderOnceAndStepsDownFromIt) {
  const auto run = simulator::Use(
      MachineWithFiles({Written("C:\\dump\\2", 2), Folder("C:\\dump\\a"), Written("C:\\dump\\a\\1", 1)}));
  CFileProcess().DeleteFileByPath(kDump, 0);
  EXPECT_THAT(run.Trace(),
              ElementsAre("OpenFolderA(C:\\dump//*.*)", "ReadFolderA()", "ReadFolderA()", "ReadFolderA()",
                          "ReadFolderA()", "ReadFolderA()", "OpenSubfolderA(a)", "ReadFolderA()",
                          "ReadFolderA()", "ReadFolderA()", "ReadFolderA()", "CloseFolder()",
                          "DeleteFileBelowA(a\\1, 1)", "DeleteFileBelowA(2, 2)", "CloseFolder()"));
}

TEST(DeleteFileByPath, LogsEveryStep) {
  auto stubborn = Written("C:\\dump\\a\\1", 1);
  stubborn.delete_error = 32;
  stubborn.failing_deletions = 2;
  const auto run =
      simulator::Use(MachineWithFiles({Written("C:\\dump\\2", 2), Folder("C:\\dump\\a"), stubborn}));
  const CapturedLog log;
  CFileProcess().DeleteFileByPath(kDump, 0);
  EXPECT_THAT(log.Texts(),
              ElementsAre("AudioDumpPath num=0(CFileProcess::DeleteFileByPath)", "nums=0(GetFiles)",
                          "nums=1(GetFiles)", "delete file, isdeleted=0(CFileProcess::DeleteFileByPath)",
                          "delete file, isdeleted=0(CFileProcess::DeleteFileByPath)",
                          "delete file, isdeleted=1(CFileProcess::DeleteFileByPath)",
                          "delete file, isdeleted=1(CFileProcess::DeleteFileByPath)"));
  for (const auto& line : log.Lines()) {
    EXPECT_EQ(line.level, "DEBUG");
    EXPECT_THAT(line.file, testing::EndsWith("src/system/fileprocess.cpp"));
  }
  EXPECT_EQ(log.Lines()[3].function, "CFileProcess::DeleteFileByPath");
}

TEST(DeleteFileByPath, LogsTheKeptNumberWithItsSign) {
  const auto run = simulator::Use(MachineWithFiles({}));
  const CapturedLog log;
  CFileProcess().DeleteFileByPath(kDump, std::numeric_limits<int>::min());
  CFileProcess().DeleteFileByPath("C:\\nosuch", 3);
  EXPECT_THAT(log.Texts(),
              ElementsAre("AudioDumpPath num=-2147483648(CFileProcess::DeleteFileByPath)", "nums=0(GetFiles)",
                          "AudioDumpPath num=3(CFileProcess::DeleteFileByPath)", "nums=0(GetFiles)"));
}

TEST(DeleteFileByPath, TriesTenTimesAndThenGoesOn) {
  auto files = FilesOfRisingAge(3);
  files[0].delete_error = 32;
  files[1].delete_error = 32;
  files[1].failing_deletions = 9;
  auto run = simulator::Use(MachineWithFiles(files));
  const CapturedLog log;
  CFileProcess().DeleteFileByPath(kDump, 0);
  EXPECT_THAT(FilesLeft(run), ElementsAre("0"));
  EXPECT_EQ(run.Calls("DeleteFileBelowA"), 10 + 10 + 1);
  EXPECT_EQ(run.Calls("Sleep"), 0);
  EXPECT_EQ(std::ranges::count(log.Texts(), "delete file, isdeleted=0(CFileProcess::DeleteFileByPath)"), 19);
}

TEST(DeleteFileByPath, CountsEverySubfolderThatItMeetsAndLooksIntoAThousand) {
  std::vector<File> files;
  for (int i = 1; i <= 1003; ++i) {
    const std::string folder = "C:\\dump\\" + std::to_string(i);
    files.push_back(Folder(folder));
    files.push_back(Written(folder + "\\f", static_cast<std::uint64_t>(2000 - i)));
  }
  files.push_back(Written("C:\\dump\\late", 5000));
  auto run = simulator::Use(MachineWithFiles(files));
  const CapturedLog log;
  CFileProcess().DeleteFileByPath(kDump, 1);
  const auto left = FilesLeft(run);
  EXPECT_EQ(std::ranges::count_if(left, [](const auto& name) { return name.ends_with("\\f"); }), 3);
  EXPECT_THAT(left, Contains("1001\\f")) << "the older ones were not looked at";
  EXPECT_THAT(left, Contains("late")) << "a file of the folder itself counts, also behind the limit";
  EXPECT_THAT(log.Texts(), Contains("nums=1003(GetFiles)"));
  EXPECT_EQ(std::ranges::count_if(log.Texts(), [](const auto& text) { return text.starts_with("nums="); }),
            1004);
}

TEST(DeleteFileByPath, CountsNestedSubfoldersInTheOrderOfTheWalk) {
  // 500 folders with one in each: the counter passes the limit in the 501st.
  std::vector<File> files;
  for (int i = 0; i < 502; ++i) {
    const std::string folder = "C:\\dump\\" + std::to_string(i);
    files.push_back(Folder(folder));
    files.push_back(Written(folder + "\\f", 1));
    files.push_back(Folder(folder + "\\in"));
    files.push_back(Written(folder + "\\in\\f", 1));
  }
  auto run = simulator::Use(MachineWithFiles(files));
  CFileProcess().DeleteFileByPath(kDump, 0);
  const auto left = FilesLeft(run);
  EXPECT_THAT(left, Contains("500\\f"));
  EXPECT_THAT(left, Contains("500\\in\\f"));
  EXPECT_THAT(left, Contains("501\\f"));
  EXPECT_EQ(std::ranges::count_if(left, [](const auto& name) { return name.ends_with("\\f"); }), 4);
}

TEST(DeleteFileByPath, CountsALinkToAFileAndEntersNoLinkToAFolder) {
  auto linked = Link("C:\\dump\\link", "C:\\other\\kept");
  linked.last_write_time = 1;
  auto run = simulator::Use(
      MachineWithFiles({linked, Link("C:\\dump\\out", "C:\\other"), Link("C:\\dump\\loop", kDump),
                        Folder("C:\\other"), Written("C:\\other\\kept", 1), Written("C:\\dump\\new", 9)}));
  const CapturedLog log;
  CFileProcess().DeleteFileByPath(kDump, 1);
  EXPECT_THAT(FilesLeft(run), ElementsAre("out", "loop", "new"));
  EXPECT_EQ(std::ranges::count(*run.machine().files, "C:\\other\\kept", &File::path), 1);
  EXPECT_THAT(log.Texts(), testing::Not(Contains("nums=1(GetFiles)")))
      << "a link is no subfolder that is met";
}

TEST(DeleteFileByPath, LosesNothingOutsideWhenAFolderIsExchangedForALink) {
  const std::vector<File> files{Folder("C:\\dump\\a"),        Written("C:\\dump\\a\\1", 1),
                                Written("C:\\dump\\a\\2", 2), Folder("C:\\other"),
                                Written("C:\\other\\1", 1),   Written("C:\\other\\2", 2)};
  const auto exchange = [](simulator::Machine& now) {
    const auto is_inside = [](const File& file) { return file.path.starts_with("C:\\dump\\a"); };
    std::erase_if(*now.files, is_inside);
    now.files->push_back(Link("C:\\dump\\a", "C:\\other"));
  };
  for (int number = 1; number < 20; ++number) {
    auto run = simulator::Use(MachineWithFiles(files));
    run.BeforeCall(number, exchange);
    CFileProcess().DeleteFileByPath(kDump, 0);
    EXPECT_EQ(std::ranges::count_if(*run.machine().files,
                                    [](const File& file) { return file.path.starts_with("C:\\other\\"); }),
              2)
        << "exchanged before call " << number;
  }
}

TEST(DeleteFileByPath, KeepsWhatWasWrittenSinceItWasListed) {
  auto run = simulator::Use(MachineWithFiles(FilesOfRisingAge(3)));
  run.BeforeCall(6, [](simulator::Machine& now) { now.files->at(2).last_write_time = 9999; });
  CFileProcess().DeleteFileByPath(kDump, 1);
  EXPECT_THAT(FilesLeft(run), ElementsAre("0", "2"));
}

TEST(DeleteFileByPath, SkipsFoldersThatCannotBeRead) {
  auto closed = Folder("C:\\dump\\closed");
  closed.list_error = 5;
  const auto left = LeftAfter({closed, Written("C:\\dump\\closed\\1", 1), Written("C:\\dump\\2", 2)}, 0);
  EXPECT_THAT(left, ElementsAre("closed", "closed\\1"));
}

TEST(DeleteFileByPath, DeletesNothingWhenMemoryRunsOutBeforeTheChoiceIsMade) {
  for (int number = 0;; ++number) {
    auto run = simulator::Use(MachineWithFiles({Written("C:\\dump\\1", 1), Folder("C:\\dump\\a"),
                                                Written("C:\\dump\\a\\2", 2), Written("C:\\dump\\3", 3)}));
    bool happened = false;
    {
      const velmora::testing::FailingAllocation failing(number);
      CFileProcess().DeleteFileByPath(kDump, 1);
      happened = failing.Happened();
    }
    EXPECT_THAT(FilesLeft(run), Contains("3")) << "the newest stays whatever happens";
    if (!happened) {
      EXPECT_THAT(FilesLeft(run), ElementsAre("a", "3"));
      break;
    }
  }
}

TEST(DeleteFileByPath, LeavesNoHandleOpenWhateverFails) {
  for (int number = 0; number < 20; ++number) {
    for (const Fault fault : {Fault::kFail, Fault::kEmpty, Fault::kUnterminated, Fault::kThrow}) {
      auto run = simulator::Use(
          MachineWithFiles({Written("C:\\dump\\1", 1), Folder("C:\\dump\\a"), Written("C:\\dump\\a\\2", 2)}));
      run.Inject(fault, number);
      CFileProcess().DeleteFileByPath(kDump, 0);
      EXPECT_EQ(run.OpenHandles(), 0);
    }
  }
}

TEST(CFileProcess, HasNoMembersAndCopiesAreAsGood) {
  const auto run = simulator::Use(MachineWithFiles({Written("C:\\dump\\a.dmp", 1)}));
  CFileProcess files;
  CFileProcess copy(files);
  copy = files;
  EXPECT_EQ(copy.GetTypeFiles(L".dmp", L"C:\\dump"), files.GetTypeFiles(L".dmp", L"C:\\dump"));
}

}  // namespace
