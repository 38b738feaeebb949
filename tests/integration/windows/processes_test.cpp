#include "platform/os/processes.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kMayTerminate = PROCESS_TERMINATE;
constexpr std::uint32_t kStandardInput = 0xFFFFFFF6;

std::wstring Beside(const wchar_t* name) {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.rfind(L'\\') + 1) + name;
}

TEST(Processes, AreStartedAndEnded) {
  const std::wstring program = Beside(L"test_service.exe");
  std::wstring command_line = L"test_service wait";
  StartupInfo startup{.size = sizeof startup};
  ProcessInformation started{};
  ASSERT_TRUE(CreateProcessW(program.c_str(), command_line.data(), false, 0, startup, started))
      << LastError();
  ASSERT_NE(started.process, nullptr);
  ASSERT_NE(started.thread, nullptr);
  EXPECT_EQ(started.process_id, GetProcessId(started.process));

  const Handle again = OpenProcess(kMayTerminate, false, started.process_id, L"test_service.exe");
  ASSERT_NE(again, nullptr) << LastError();
  EXPECT_TRUE(TerminateProcess(again, 77));
  EXPECT_EQ(WaitForSingleObject(started.process, 10'000), DWORD{WAIT_OBJECT_0});
  DWORD code = 0;
  GetExitCodeProcess(started.process, &code);
  EXPECT_EQ(code, 77u);
  for (const Handle handle : {again, started.thread, started.process}) EXPECT_TRUE(CloseHandle(handle));
}

TEST(Processes, ThatAreMissingCannotBeOpened) {
  EXPECT_EQ(OpenProcess(kMayTerminate, false, 0xFFFFFFF0, L"test_service.exe"), nullptr);
  EXPECT_EQ(LastError(), kErrorInvalidParameter);
}

TEST(Processes, AreNotStartedFromAFileThatIsMissingOrNoProgram) {
  StartupInfo startup{.size = sizeof startup};
  ProcessInformation started{};
  EXPECT_FALSE(CreateProcessW(Beside(L"nosuch.exe").c_str(), nullptr, false, 0, startup, started));
  EXPECT_EQ(LastError(), kErrorFileNotFound);
  EXPECT_EQ(started.process, nullptr);
}

TEST(Processes, HaveNoStandardHandleThatIsInvalid) {
  const HANDLE before = ::GetStdHandle(kStandardInput);
  ::SetStdHandle(kStandardInput, INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetStdHandle(kStandardInput), nullptr);
  ::SetStdHandle(kStandardInput, nullptr);
  EXPECT_EQ(GetStdHandle(kStandardInput), nullptr);
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  ::SetStdHandle(kStandardInput, event);
  EXPECT_EQ(GetStdHandle(kStandardInput), event);
  ::SetStdHandle(kStandardInput, before);
  EXPECT_TRUE(CloseHandle(event));
  EXPECT_FALSE(CloseHandle(event));
  EXPECT_EQ(LastError(), kErrorInvalidHandle);
}

}  // namespace
}  // namespace velmora::os
