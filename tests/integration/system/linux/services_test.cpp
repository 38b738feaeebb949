/// Services and processes of this system: a made-up service manager, and real processes.
#include "velmora/services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "platform/unicode.h"
#include "tests/integration/linux/mock_bus.h"
#include "tests/support/logging/captured_log.h"
#include "tests/unit/ostrine/linux/fake_root.h"

namespace {

using testing::ElementsAre;
using velmora::os::test::HelperProgram;
using velmora::os::test::kMockControl;
using velmora::os::test::MockService;
using velmora::os::test::PrivateBus;
using velmora::testing::CapturedLog;

class ManagedServices : public testing::Test {
 protected:
  void AddUnit(const char* name, const char* active_state) {
    systemd_.Call(kMockControl, "AddMockUnit", {name, "loaded", active_state});
  }
  std::string Requests() { return systemd_.Call(kMockControl, "Requests"); }

  PrivateBus bus_;
  MockService systemd_{VELMORA_TEST_FILES "/systemd_mock.py", "org.freedesktop.systemd1",
                       "/org/freedesktop/systemd1"};
};

template <class Operation>
std::chrono::milliseconds Time(Operation operation) {
  const auto start = std::chrono::steady_clock::now();
  operation();
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
}

TEST_F(ManagedServices, AreStartedAsJobsAndGivenTwoSeconds) {
  AddUnit("down.service", "inactive");
  bool is_started = false;
  const auto time = Time([&] { is_started = StartServiceByName(L"down"); });
  EXPECT_TRUE(is_started);
  EXPECT_GE(time.count(), 1990);
  EXPECT_EQ(Requests(), "start down.service");
}

TEST_F(ManagedServices, ThatRunAreNotStartedAgain) {
  AddUnit("up.service", "active");
  const auto time = Time([] { EXPECT_TRUE(StartServiceByName(L"up")); });
  EXPECT_LT(time.count(), 1900);
  EXPECT_EQ(Requests(), "");
}

TEST_F(ManagedServices, AreStoppedAtOnceWhenTheyStopAtOnce) {
  AddUnit("up.service", "active");
  const auto time = Time([] { StopServiceByName(L"up"); });
  EXPECT_LT(time.count(), 1900);
  EXPECT_EQ(Requests(), "stop up.service");
}

TEST_F(ManagedServices, ThatDoNotRunAreNotStopped) {
  AddUnit("down.service", "inactive");
  AddUnit("rising.service", "activating");
  for (const wchar_t* const name : {L"down", L"rising", L"nosuch", L"it's"}) StopServiceByName(name);
  EXPECT_EQ(Requests(), "");
}

TEST_F(ManagedServices, TellTheErrorOfAStartThatFails) {
  AddUnit("down.service", "inactive");
  systemd_.Call(kMockControl, "AddMockUnit", {"masked.service", "masked", "inactive"});
  const CapturedLog log;
  EXPECT_FALSE(StartServiceByName(L"nosuch"));
  EXPECT_FALSE(StartServiceByName(L"masked"));
  systemd_.Call(kMockControl, "Refuse", {"org.freedesktop.DBus.Error.AccessDenied"});
  EXPECT_FALSE(StartServiceByName(L"down"));
  EXPECT_THAT(log.Texts(), ElementsAre("StartServiceByName: bRet=0, LastError=1060StartServiceByName",
                                       "StartServiceByName: bRet=0, LastError=1058StartServiceByName",
                                       "StartServiceByName: bRet=0, LastError=5StartServiceByName"));
}

/// A program of a name of its own that runs until it is ended.
class NamedProgram {
 public:
  explicit NamedProgram(const std::string& name) {
    std::filesystem::copy_file("/bin/sleep", root_.Path() / name);
    program_.emplace(std::vector<std::string>{(root_.Path() / name).string(), "100"});
    const auto start = std::chrono::steady_clock::now();
    while (!IsProcessRunning(velmora::unicode::WideFromUtf8(name))) {
      if (std::chrono::steady_clock::now() - start > std::chrono::seconds(10)) break;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }
  /// Starts the same program once more.
  HelperProgram Again(const std::string& name) const {
    return HelperProgram({(root_.Path() / name).string(), "100"});
  }
  pid_t Id() const { return program_->Id(); }

 private:
  ostrine::test::FakeRoot root_;
  std::optional<HelperProgram> program_;
};

bool HasEnded(pid_t id) {
  siginfo_t child{};
  return waitid(P_PID, static_cast<id_t>(id), &child, WEXITED | WNOWAIT) == 0 && child.si_code == CLD_KILLED;
}

TEST(RealProcesses, AreFoundByTheFileNameOfTheirProgram) {
  EXPECT_FALSE(IsProcessRunning(L"velmora-sleeper-1"));
  const NamedProgram program("velmora-sleeper-1");
  EXPECT_TRUE(IsProcessRunning(L"velmora-sleeper-1"));
  EXPECT_TRUE(IsProcessRunning(L"VELMORA-sleeper-1"));
  EXPECT_FALSE(IsProcessRunning(L"velmora-sleeper"));
  EXPECT_FALSE(IsProcessRunning(L"velmora-sleeper-_"));
  EXPECT_FALSE(IsProcessRunning(L"zz' OR Name LIKE '%"));
}

TEST(RealProcesses, AreEndedOneAtATime) {
  const NamedProgram program("velmora-sleeper-2");
  const HelperProgram second = program.Again("velmora-sleeper-2");
  const auto image = "/proc/" + std::to_string(second.Id()) + "/exe";
  std::error_code error;
  for (int i = 0; i < 2000 && std::filesystem::read_symlink(image, error).filename() != "velmora-sleeper-2";
       ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_TRUE(KillProcByName(L"velmora-sleeper-2"));
  const pid_t first = std::min(program.Id(), second.Id());
  EXPECT_TRUE(HasEnded(first));
  EXPECT_EQ(kill(std::max(program.Id(), second.Id()), 0), 0);
  EXPECT_TRUE(IsProcessRunning(L"velmora-sleeper-2"));
  EXPECT_TRUE(KillProcByName(L"velmora-sleeper-2"));
  EXPECT_TRUE(HasEnded(std::max(program.Id(), second.Id())));
  EXPECT_FALSE(KillProcByName(L"velmora-sleeper-2")) << "what has ended is no process any more";
}

TEST(RealProcesses, AreNotEndedByANameThatIsNone) {
  const NamedProgram program("velmora-sleeper-3");
  for (const wchar_t* const name :
       {L"zz' OR Name LIKE '%", L"velmora-sleeper-_", L"%", L"", L"'", L"velmora-sleeper-3'", L"\\"}) {
    EXPECT_FALSE(KillProcByName(name));
  }
  EXPECT_EQ(kill(program.Id(), 0), 0);
  EXPECT_FALSE(KillProcByName(std::wstring(65536, L'x')));
}

TEST(RealProcesses, WithAnApostropheInTheirNameAreLeftAlone) {
  const NamedProgram program("velmora's-sleeper");
  EXPECT_FALSE(IsProcessRunning(L"velmora's-sleeper")) << "nobody is asked";
  EXPECT_FALSE(KillProcByName(L"velmora's-sleeper"));
  EXPECT_EQ(kill(program.Id(), 0), 0);
}

TEST(RealProcesses, HaveNoUnsecappHere) { EXPECT_FALSE(IsProc_unsecapp_Exist()); }

}  // namespace
