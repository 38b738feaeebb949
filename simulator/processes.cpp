/// Processes of a machine: they are opened, ended and started.
#include "platform/os/processes.h"

#include <algorithm>
#include <cstdint>

#include "platform/case_folding.h"
#include "platform/unicode.h"
#include "simulator/failing.h"
#include "simulator/file_tree.h"

using simulator::Entered;
using simulator::Error;
using simulator::Fault;
using simulator::Hex;
using simulator::Process;
using simulator::Refuse;
using simulator::Session;
using simulator::Succeed;

namespace velmora::os {
namespace {

constexpr Error kNoProgram = 193;
constexpr std::uint32_t kRightToEnd = 1;
constexpr std::uint32_t kStandardInput = 0xFFFFFFF6;
constexpr const char* kProcessCloser = "CloseHandle";

struct OpenedProcess {
  std::uint32_t process_id;
  std::uint32_t access;
};
struct OpenedThread {};

Process* FindProcess(Session& session, std::uint32_t process_id) {
  auto& processes = session.machine.processes;
  if (!processes) return nullptr;
  const auto found = std::ranges::find(*processes, process_id, &Process::process_id);
  return found == processes->end() ? nullptr : &*found;
}

/// Why the program file cannot be started; 0 when it can.
Error CheckProgram(Session& session, const wchar_t* application) {
  if (!session.machine.files) return simulator::Unscripted(session, "CreateProcessW", "files");
  const simulator::File* file = simulator::FindFile(session.machine, unicode::Utf8FromWide(application));
  if (file == nullptr) return kErrorFileNotFound;
  if (file->start_error != 0) return file->start_error;
  if (file->folder) return kErrorAccessDenied;
  return file->program ? 0 : kNoProgram;
}

/// Adds the process that runs `application`, and gives its number.
std::uint32_t AddProcess(Session& session, const std::string& application) {
  auto& processes = session.machine.processes;
  if (!processes) processes.emplace();
  std::uint32_t process_id = 1000;
  for (const auto& process : *processes) process_id = std::max(process_id, process.process_id + 4);
  const auto caption = application.substr(application.find_last_of("\\/") + 1);
  processes->push_back({.process_id = process_id, .caption = caption, .executable_path = application});
  return process_id;
}

}  // namespace

Handle OpenProcess(std::uint32_t access, bool inherit, std::uint32_t process_id, std::wstring_view caption) {
  Entered call("OpenProcess", Hex{access}, inherit, process_id);
  if (simulator::IsRefused(call)) return nullptr;
  if (!call.session.machine.processes) {
    return Refuse(simulator::Unscripted(call.session, "OpenProcess", "processes"));
  }
  const Process* process = FindProcess(call.session, process_id);
  if (process == nullptr || !EqualIgnoringCase(unicode::WideFromUtf8(process->caption), caption)) {
    return Refuse(kErrorInvalidParameter);
  }
  if (process->open_error != 0) return Refuse(process->open_error);
  return call.session.Open(kProcessCloser, OpenedProcess{process_id, access});
}

bool TerminateProcess(Handle handle, std::uint32_t exit_code) {
  Entered call("TerminateProcess", exit_code);
  if (call.fault != Fault::kNone) return Succeed(call.Fails() ? simulator::kInjectedError : 0);
  const auto* opened = call.session.Find<OpenedProcess>(handle, "TerminateProcess");
  if (opened == nullptr) return Succeed(kErrorInvalidHandle);
  const Process* process = FindProcess(call.session, opened->process_id);
  const bool may_end = process != nullptr && (opened->access & kRightToEnd) != 0;
  if (!may_end) return Succeed(kErrorAccessDenied);
  if (process->end_error != 0) return Succeed(process->end_error);
  std::erase(*call.session.machine.processes, Process(*process));
  return true;
}

bool CreateProcessW(const wchar_t* application, wchar_t* command_line, bool inherit, std::uint32_t flags,
                    const StartupInfo& startup, ProcessInformation& information) {
  Entered call("CreateProcessW", application, command_line, inherit, Hex{flags}, startup.size);
  if (call.fault == Fault::kEmpty) return true;  // started, and gone before its handles were made
  if (call.fault != Fault::kNone) return Succeed(simulator::kInjectedError);
  const Error error = CheckProgram(call.session, application);
  if (error != 0) return Succeed(error);
  const std::uint32_t process_id = AddProcess(call.session, unicode::Utf8FromWide(application));
  constexpr std::uint32_t kAllAccess = 0x1FFFFF;
  information.process = call.session.Open(kProcessCloser, OpenedProcess{process_id, kAllAccess});
  information.thread = call.session.Open(kProcessCloser, OpenedThread{});
  information.process_id = process_id;
  information.thread_id = process_id + 1;
  return true;
}

Handle GetStdHandle(std::uint32_t which) {
  const Entered call("GetStdHandle", Hex{which});
  // A standard handle belongs to the process; nobody closes it, so it is not counted.
  const bool is_there = call.fault == Fault::kNone && which == kStandardInput;
  return is_there ? reinterpret_cast<Handle>(std::uintptr_t{0x50}) : nullptr;
}

}  // namespace velmora::os
