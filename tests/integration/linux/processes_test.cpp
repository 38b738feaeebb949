#include "platform/os/processes.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>
#include <vector>

#include "platform/os/last_error.h"
#include "platform/unicode.h"
#include "tests/integration/linux/mock_bus.h"
#include "tests/unit/ostrine/linux/fake_root.h"

namespace velmora::os {
namespace {

using ostrine::test::ContentOf;
using ostrine::test::FakeRoot;
using ostrine::test::WithoutRights;

constexpr std::uint32_t kRightToEnd = 1;
constexpr std::uint32_t kNoWindow = 0x08000000;

/// Waits until `condition` holds, for five seconds at most, and tells whether it does.
template <class Condition>
bool Eventually(Condition condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

/// A folder with a command file in it, which notes that it has run by making the file "done".
class CommandFile {
 public:
  explicit CommandFile(const std::string& commands) {
    const std::string done = (root_.Path() / "done").string();
    Write("#!/bin/sh\n" + commands + "\nmv '" + done + ".new' '" + done + "'\n");
  }
  void Write(const std::string& text) const {
    root_.Write("command", text);
    std::filesystem::permissions(root_.Path() / "command", std::filesystem::perms(0755));
  }
  std::filesystem::path Folder() const { return root_.Path(); }
  std::wstring Path() const { return unicode::WideFromUtf8((root_.Path() / "command").string()); }
  bool WasDone() const { return std::filesystem::exists(root_.Path() / "done"); }
  std::string Output() const { return ContentOf(root_.Path() / "done"); }

 private:
  FakeRoot root_;
};

bool Start(const wchar_t* path, ProcessInformation& information, bool inherit = false) {
  StartupInfo startup{.size = sizeof(StartupInfo)};
  startup.standard_input = GetStdHandle(0xFFFFFFF6);
  return CreateProcessW(path, nullptr, inherit, kNoWindow, startup, information);
}

void CloseBoth(const ProcessInformation& information) {
  EXPECT_TRUE(CloseHandle(information.process));
  EXPECT_TRUE(CloseHandle(information.thread));
}

/// What the command file of `commands`, which write into "$1", has written.
std::string OutputOf(const std::string& commands, bool inherit = false) {
  const CommandFile file("out=\"$(dirname \"$0\")/done.new\"\n{ " + commands + "\n} > \"$out\" 3>&- 2>&1");
  ProcessInformation information{};
  EXPECT_TRUE(Start(file.Path().c_str(), information, inherit)) << LastError();
  EXPECT_TRUE(Eventually([&] { return file.WasDone(); }));
  CloseBoth(information);
  return file.Output();
}

TEST(ProcessHandles, EndTheProcessThatTheyWereOpenedFor) {
  test::HelperProgram program({"sleep", "100"});
  const Handle process = OpenProcess(kRightToEnd, false, static_cast<std::uint32_t>(program.Id()), L"sleep");
  ASSERT_NE(process, nullptr);
  EXPECT_TRUE(TerminateProcess(process, 0));
  int status = 0;
  EXPECT_EQ(waitpid(program.Id(), &status, 0), program.Id());
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGKILL);
  EXPECT_TRUE(CloseHandle(process));
}

TEST(ProcessHandles, DoNotReachAProcessThatHasEnded) {
  test::HelperProgram program({"sleep", "100"});
  const Handle process = OpenProcess(kRightToEnd, false, static_cast<std::uint32_t>(program.Id()), L"sleep");
  ASSERT_NE(process, nullptr);
  program.Stop();  // its number is free now, and the handle must not mean whoever gets it
  EXPECT_FALSE(TerminateProcess(process, 0));
  EXPECT_EQ(LastError(), 5u);
  EXPECT_TRUE(CloseHandle(process));
}

TEST(ProcessHandles, EndNothingWithoutTheRight) {
  test::HelperProgram program({"sleep", "100"});
  const Handle process = OpenProcess(0x400, false, static_cast<std::uint32_t>(program.Id()), L"sleep");
  ASSERT_NE(process, nullptr);
  EXPECT_FALSE(TerminateProcess(process, 0));
  EXPECT_EQ(LastError(), 5u);
  EXPECT_EQ(kill(program.Id(), 0), 0);
  EXPECT_TRUE(CloseHandle(process));
}

TEST(ProcessHandles, AreNotGivenForWhatIsNoProcess) {
  test::HelperProgram program({"true"});
  const auto ended = static_cast<std::uint32_t>(program.Id());
  program.Stop();
  for (const std::uint32_t id : {0u, ended, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(OpenProcess(kRightToEnd, false, id, L"true"), nullptr) << id;
    EXPECT_EQ(LastError(), 87u) << id;
  }
}

TEST(ProcessHandles, AreNotGivenForAProcessOfAnotherCaption) {
  test::HelperProgram program({"sleep", "100"});
  const auto id = static_cast<std::uint32_t>(program.Id());
  for (const auto* caption : {L"", L"slee", L"sleep ", L"sleep.exe", L"init"}) {
    EXPECT_EQ(OpenProcess(kRightToEnd, false, id, caption), nullptr) << "whoever was called so has gone";
    EXPECT_EQ(LastError(), 87u);
  }
  const Handle process = OpenProcess(kRightToEnd, false, id, L"SLEEP");
  EXPECT_NE(process, nullptr) << "captions are found without regard to letter case";
  EXPECT_TRUE(CloseHandle(process));
}

TEST(ProcessHandles, AreNotGivenWithoutPermission) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a process of another user";
  test::HelperProgram program({"sleep", "100"});
  const pid_t stranger = fork();
  if (stranger == 0) {
    if (setuid(65534) != 0) _exit(2);
    const bool refused =
        OpenProcess(kRightToEnd, false, static_cast<std::uint32_t>(program.Id()), L"sleep") == nullptr &&
        LastError() == 5;
    _exit(refused ? 0 : 1);
  }
  int status = 0;
  waitpid(stranger, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST(ProcessHandles, AreToldFromOthers) {
  for (const Handle handle : {Handle{nullptr}, InvalidHandle(), GetStdHandle(0xFFFFFFF6)}) {
    EXPECT_FALSE(TerminateProcess(handle, 0));
    EXPECT_EQ(LastError(), 6u);
    EXPECT_FALSE(CloseHandle(handle));
    EXPECT_EQ(LastError(), 6u);
  }
}

TEST(StartedProcesses, RunWhileTheStartHasLongReturned) {
  const CommandFile file("sleep 100 > \"$0.new\"");
  ProcessInformation information{};
  ASSERT_TRUE(Start(file.Path().c_str(), information));
  EXPECT_EQ(kill(static_cast<pid_t>(information.process_id), 0), 0);
  EXPECT_FALSE(file.WasDone());
  EXPECT_TRUE(TerminateProcess(information.process, 0));
  CloseBoth(information);
}

TEST(StartedProcesses, LeaveNothingBehindWhenTheyEnd) {
  ProcessInformation information{};
  ASSERT_TRUE(Start(L"/bin/true", information));
  const auto id = static_cast<pid_t>(information.process_id);
  CloseBoth(information);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);  // no child, running or ended
  EXPECT_EQ(errno, ECHILD);
  const std::string status_file = "/proc/" + std::to_string(id) + "/stat";
  EXPECT_TRUE(Eventually([&] {
    const std::string stat = ContentOf(status_file);
    return stat.empty() || stat.find(") Z " + std::to_string(getpid())) == std::string::npos;
  }));
}

TEST(StartedProcesses, GetTheCallersEnvironmentAndFolder) {
  const test::Variable variable("VELMORA_TEST_VALUE", "from the caller");
  EXPECT_EQ(OutputOf("echo \"$VELMORA_TEST_VALUE\"; pwd -P; echo $#"),
            "from the caller\n" + std::filesystem::current_path().string() + "\n0\n");
}

TEST(StartedProcesses, HaveTheirOwnSessionAndNothingToRead) {
  // A shell is its session's leader when both numbers are its own.
  EXPECT_EQ(
      OutputOf("set -- $(cut -d' ' -f1,6 /proc/$$/stat); [ $1 = $2 ] && echo leads; readlink /proc/$$/fd/0"),
      "leads\n/dev/null\n");
}

TEST(StartedProcesses, GetNoFilesOfTheCallerUnlessTheyAreToInherit) {
  const int leaking = fcntl(0, F_DUPFD, 50);  // not marked to be closed
  const std::string question =
      "[ -e /proc/$$/fd/" + std::to_string(leaking) + " ] && echo open || echo closed";
  EXPECT_EQ(OutputOf(question), "closed\n");
  EXPECT_EQ(OutputOf(question, true), "open\n");
  close(leaking);
}

TEST(StartedProcesses, BeginWithSignalsAsUsual) {
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, &before);
  const auto handler_before = signal(SIGINT, SIG_IGN);
  EXPECT_EQ(OutputOf("grep -E '^Sig(Blk|Ign)' /proc/$$/status | tr -s '\\t0' ' '"), "SigBlk: \nSigIgn: \n");
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  signal(SIGINT, handler_before);
}

TEST(StartedProcesses, AreRefusedWhereThereIsNoProgram) {
  const CommandFile file("");
  ProcessInformation information{.process_id = 77};
  EXPECT_FALSE(Start((file.Path() + L"-missing").c_str(), information));
  EXPECT_EQ(LastError(), 2u);
  EXPECT_FALSE(Start(unicode::WideFromUtf8(file.Folder().string()).c_str(), information));
  EXPECT_EQ(LastError(), 5u);
  EXPECT_FALSE(Start(L"C:\\Windows\\notepad.exe", information));
  EXPECT_EQ(LastError(), 2u);
  file.Write("no interpreter is named\n");
  EXPECT_FALSE(Start(file.Path().c_str(), information));
  EXPECT_EQ(LastError(), 193u);
  file.Write("#!/nonexistent/interpreter\n");
  EXPECT_FALSE(Start(file.Path().c_str(), information));
  EXPECT_EQ(LastError(), 2u);
  std::filesystem::permissions(file.Folder() / "command", std::filesystem::perms(0644));
  EXPECT_FALSE(Start(file.Path().c_str(), information));
  EXPECT_EQ(LastError(), 193u);
  EXPECT_EQ(information.process_id, 77u);
  EXPECT_EQ(information.process, nullptr);
}

TEST(StartedProcesses, AreRefusedWithoutPermission) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a file of another user";
  const CommandFile file("");
  std::filesystem::permissions(file.Folder() / "command", std::filesystem::perms(0700));
  const pid_t stranger = fork();
  if (stranger == 0) {
    ProcessInformation information{};
    if (setuid(65534) != 0) _exit(2);
    const bool refused = !Start(file.Path().c_str(), information) && LastError() == 5;
    _exit(refused ? 0 : 1);
  }
  int status = 0;
  waitpid(stranger, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST(StartedProcesses, TakeNeitherArgumentsNorOtherRecords) {
  ProcessInformation information{};
  StartupInfo startup{.size = sizeof(StartupInfo)};
  wchar_t command_line[] = L"true --help";
  EXPECT_FALSE(CreateProcessW(L"/bin/true", command_line, false, 0, startup, information));
  EXPECT_EQ(LastError(), 50u);
  EXPECT_FALSE(CreateProcessW(nullptr, nullptr, false, 0, startup, information));
  EXPECT_EQ(LastError(), 87u);
  startup.size = 68;
  EXPECT_FALSE(CreateProcessW(L"/bin/true", nullptr, false, 0, startup, information));
  EXPECT_EQ(LastError(), 87u);
}

TEST(StartedProcesses, MayBeStartedFromManyThreadsOfAHostThatTakesAllChildren) {
  const auto before = signal(SIGCHLD, SIG_IGN);  // ended children vanish by themselves
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([] {
      for (int j = 0; j < 25; ++j) {
        ProcessInformation information{};
        ASSERT_TRUE(Start(L"/bin/true", information)) << LastError();
        CloseBoth(information);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  signal(SIGCHLD, before);
}

TEST(StartedProcesses, MayBeStartedByAHostWithoutStandardFiles) {
  const CommandFile file("true > \"$(dirname \"$0\")/done.new\"");
  const pid_t host = fork();
  if (host == 0) {
    for (const int number : {0, 1, 2}) close(number);
    ProcessInformation information{};
    const bool has_no_input = GetStdHandle(0xFFFFFFF6) == nullptr;
    _exit(has_no_input && Start(file.Path().c_str(), information) ? 0 : 1);
  }
  int status = 0;
  waitpid(host, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(Eventually([&] { return file.WasDone(); }));
}

TEST(StartedProcesses, LeaveNoFileOpenInTheCaller) {
  const int before = dup(0);
  close(before);
  for (int i = 0; i < 20; ++i) {
    ProcessInformation information{};
    ASSERT_TRUE(Start(L"/bin/true", information));
    CloseBoth(information);
    EXPECT_FALSE(Start(L"/nonexistent", information));
  }
  const int after = dup(0);
  close(after);
  EXPECT_EQ(after, before);
}

TEST(StandardHandles, AreTheThreeThatProgramsHave) {
  for (const std::uint32_t which : {0xFFFFFFF6u, 0xFFFFFFF5u, 0xFFFFFFF4u})
    EXPECT_NE(GetStdHandle(which), nullptr);
  for (const std::uint32_t which : {0u, 0xFFFFFFF7u, 0xFFFFFFF3u}) EXPECT_EQ(GetStdHandle(which), nullptr);
}

}  // namespace
}  // namespace velmora::os
