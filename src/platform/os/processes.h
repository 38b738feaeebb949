/// What Velmora requires of the operating system about processes. Their handles are closed with CloseHandle.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/os/handle.h"

namespace velmora::os {

/// STARTUPINFOW, 104 bytes.
struct StartupInfo {
  std::uint32_t size;
  std::uint32_t padding;
  wchar_t* reserved;
  wchar_t* desktop;
  wchar_t* title;
  std::uint32_t x;
  std::uint32_t y;
  std::uint32_t width;
  std::uint32_t height;
  std::uint32_t width_in_characters;
  std::uint32_t height_in_characters;
  std::uint32_t fill_attribute;
  std::uint32_t flags;
  std::uint16_t show_window;
  std::uint16_t reserved_size;
  std::uint32_t padding2;
  void* reserved2;
  Handle standard_input;
  Handle standard_output;
  Handle standard_error;
};
static_assert(sizeof(void*) != 8 || sizeof(StartupInfo) == 104);

/// PROCESS_INFORMATION, 24 bytes.
struct ProcessInformation {
  Handle process;
  Handle thread;
  std::uint32_t process_id;
  std::uint32_t thread_id;
};

/// Opens the process `process_id`, which was found by `caption`, with the rights `access` (1: to end it);
/// null with the last error on failure: 87 no such process, 5 not permitted. The handle means this very
/// process, also when its number is used again. Where a number may by now be another process's, that process
/// is not opened unless it has the caption too (87). Windows does not look at it: a handle with the right to
/// end a process may not ask for its name.
Handle OpenProcess(std::uint32_t access, bool inherit, std::uint32_t process_id, std::wstring_view caption);

/// Ends the process at once with `exit_code`; false with the last error when it could not be ended.
bool TerminateProcess(Handle process, std::uint32_t exit_code);

/// Starts the program file `application` and returns without waiting for it. `command_line` null: the
/// application alone; handles are passed on when `inherit`. On success `information` holds two handles, which
/// the caller closes, and true is returned; else false with the last error: 2 no such file, 193 no program,
/// 5 not permitted. A child that ends leaves nothing behind.
bool CreateProcessW(const wchar_t* application, wchar_t* command_line, bool inherit, std::uint32_t flags,
                    const StartupInfo& startup, ProcessInformation& information);

/// The calling process's standard handle `which` (0xFFFFFFF6: input); null when it has none.
Handle GetStdHandle(std::uint32_t which);

}  // namespace velmora::os
