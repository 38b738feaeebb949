#include "velmora-report/system.h"

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "velmora-report/command_line.h"
#include "velmora-report/utf8.h"

namespace report {
namespace {

/// A kernel object's handle, owned.
class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { CloseHandle(handle_); }
  HANDLE Get() const { return handle_; }

 private:
  HANDLE handle_;
};

[[noreturn]] void Fail(const std::string& what) {
  throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

std::wstring ToWide(std::string_view narrow, UINT code_page = CP_UTF8) {
  const std::string text(narrow);
  const int size = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  const int units = MultiByteToWideChar(code_page, 0, text.c_str(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(units));
  return wide;
}

/// A console takes wide text, which spares it from guessing a code page.
bool WriteToConsole(HANDLE console, std::string_view utf8) {
  constexpr std::size_t kChunk = 8192;  // greater ones are refused by some consoles
  const std::wstring text = ToWide(utf8);
  for (std::size_t at = 0; at < text.size();) {
    const auto size = static_cast<DWORD>(std::min(kChunk, text.size() - at));
    DWORD written = 0;
    if (WriteConsoleW(console, &text[at], size, &written, nullptr) == FALSE || written == 0) return false;
    at += written;
  }
  return true;
}

bool WriteAll(HANDLE file, std::string_view bytes) {
  DWORD mode = 0;
  if (GetConsoleMode(file, &mode) != FALSE) return WriteToConsole(file, bytes);
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(bytes.size());
    if (WriteFile(file, bytes.data(), size, &written, nullptr) == FALSE || written == 0) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

std::filesystem::path OwnFolder() {
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    if (length == 0) Fail("cannot tell where this program is");
    if (length < name.size()) return std::filesystem::path(name.substr(0, length)).parent_path();
    name.resize(2 * name.size());
  }
}

/// Starts a program that shares this one's input and output.
PROCESS_INFORMATION Start(const std::wstring& file, std::wstring command_line) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION process{};
  if (CreateProcessW(file.c_str(), command_line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                     &process) == FALSE) {
    Fail("cannot run the program for simulated machines");
  }
  return process;
}

}  // namespace

bool WriteOutput(std::string_view utf8) { return WriteAll(GetStdHandle(STD_OUTPUT_HANDLE), utf8); }
void WriteError(std::string_view utf8) { WriteAll(GetStdHandle(STD_ERROR_HANDLE), utf8); }

std::string FromNarrow(std::string_view narrow) { return ToUtf8(ToWide(narrow, CP_ACP)); }

int RunOnMachine(const std::string& program, const std::string& machine,
                 const std::vector<std::string>& arguments) {
  const std::wstring file = (OwnFolder() / program).lexically_normal().wstring();
  std::vector<std::wstring> all{file};
  std::ranges::transform(arguments, std::back_inserter(all),
                         [](const std::string& text) { return ToWide(text); });
  if (SetEnvironmentVariableW(L"VELMORA_MACHINE", ToWide(machine).c_str()) == FALSE) {
    Fail("cannot name the machine file");
  }

  const PROCESS_INFORMATION started = Start(file, CommandLine(all));
  const Handle process(started.hProcess);
  const Handle thread(started.hThread);
  DWORD status = 0;
  if (WaitForSingleObject(process.Get(), INFINITE) != WAIT_OBJECT_0 ||
      GetExitCodeProcess(process.Get(), &status) == FALSE) {
    Fail("cannot tell how the program for simulated machines ended");
  }
  return static_cast<int>(status);
}

}  // namespace report
