#include "platform/os/processes.h"

#include <windows.h>

#include <bit>
#include <cstddef>

namespace velmora::os {

static_assert(sizeof(StartupInfo) == sizeof(STARTUPINFOW));
static_assert(offsetof(StartupInfo, reserved) == offsetof(STARTUPINFOW, lpReserved));
static_assert(offsetof(StartupInfo, x) == offsetof(STARTUPINFOW, dwX));
static_assert(offsetof(StartupInfo, flags) == offsetof(STARTUPINFOW, dwFlags));
static_assert(offsetof(StartupInfo, show_window) == offsetof(STARTUPINFOW, wShowWindow));
static_assert(offsetof(StartupInfo, reserved2) == offsetof(STARTUPINFOW, lpReserved2));
static_assert(offsetof(StartupInfo, standard_input) == offsetof(STARTUPINFOW, hStdInput));
static_assert(offsetof(StartupInfo, standard_error) == offsetof(STARTUPINFOW, hStdError));
static_assert(sizeof(ProcessInformation) == sizeof(PROCESS_INFORMATION));
static_assert(offsetof(ProcessInformation, thread) == offsetof(PROCESS_INFORMATION, hThread));
static_assert(offsetof(ProcessInformation, process_id) == offsetof(PROCESS_INFORMATION, dwProcessId));

Handle OpenProcess(std::uint32_t access, bool inherit, std::uint32_t process_id,
                   std::wstring_view /*caption*/) {
  return ::OpenProcess(access, inherit ? TRUE : FALSE, process_id);
}

bool TerminateProcess(Handle process, std::uint32_t exit_code) {
  return ::TerminateProcess(process, exit_code) != FALSE;
}

bool CreateProcessW(const wchar_t* application, wchar_t* command_line, bool inherit, std::uint32_t flags,
                    const StartupInfo& startup, ProcessInformation& information) {
  auto start = std::bit_cast<STARTUPINFOW>(startup);
  return ::CreateProcessW(application, command_line, nullptr, nullptr, inherit ? TRUE : FALSE, flags, nullptr,
                          nullptr, &start, reinterpret_cast<PROCESS_INFORMATION*>(&information)) != FALSE;
}

Handle GetStdHandle(std::uint32_t which) {
  const HANDLE handle = ::GetStdHandle(which);
  return handle != INVALID_HANDLE_VALUE ? handle : nullptr;
}

}  // namespace velmora::os
