#include "platform/os/processes.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/case_folding.h"
#include "platform/linux/handle_object.h"
#include "platform/linux/process_descriptor.h"
#include "platform/linux/process_start.h"
#include "platform/linux/small_file.h"
#include "platform/linux/system_path.h"
#include "platform/os/last_error.h"
#include "platform/process_caption.h"
#include "platform/unicode.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kRightToEnd = 0x1;
constexpr std::uint32_t kAllRights = 0x1FFFFF;
constexpr std::uint32_t kUsesStandardHandles = 0x100;

/// A process, held by a descriptor that stays with it also when its number is used again.
class Process : public KernelObject {
 public:
  explicit Process(std::uint32_t rights) noexcept : rights_(rights) {}

  void Hold(Descriptor process) noexcept { process_ = std::move(process); }

  bool MayBeEnded() const noexcept { return (rights_ & kRightToEnd) != 0; }
  bool Signal(int signal) const noexcept { return SignalProcess(process_, signal); }

 private:
  Descriptor process_;
  std::uint32_t rights_;
};

/// The first thread of a started process. Nothing can be asked of it: callers only close it.
class Thread : public KernelObject {};

/// What the process that now has the number is called; empty when there is none.
std::wstring CaptionOf(std::uint32_t process_id) {
  const std::filesystem::path folder = "/proc/" + std::to_string(process_id);
  std::error_code error;
  const std::string link = std::filesystem::read_symlink(folder / "exe", error).string();
  return unicode::WideFromUtf8(
      ProcessCaption(ProgramPath(link), ReadAttribute(folder / "comm").value_or("")));
}

bool Fail(std::uint32_t error) noexcept {
  SetLastError(error);
  return false;
}

}  // namespace

Handle OpenProcess(std::uint32_t access, bool inherit, std::uint32_t process_id, std::wstring_view caption) {
  if (process_id == 0 || process_id > INT_MAX) {
    SetLastError(kErrorInvalidParameter);
    return nullptr;
  }
  Descriptor descriptor = OpenProcessDescriptor(static_cast<pid_t>(process_id));
  if (!descriptor) return nullptr;
  if (!EqualIgnoringCase(CaptionOf(process_id), caption)) {
    SetLastError(kErrorInvalidParameter);
    return nullptr;
  }
  // While the descriptor's process is there, the number is no other's: the caption was this one's if a signal
  // that does nothing still finds it now. Opening never asks for a right on this system, so the signal does.
  const bool may_be_ended = SignalProcess(descriptor, 0);
  if (!may_be_ended && (errno == ESRCH || (access & kRightToEnd) != 0)) return nullptr;
  if (inherit && fcntl(descriptor.Number(), F_SETFD, 0) != 0) return nullptr;
  auto process = std::make_unique<Process>(access);
  process->Hold(std::move(descriptor));
  return HandleOf(std::move(process));
}

bool TerminateProcess(Handle handle, std::uint32_t /*exit_code*/) {
  // An exit code cannot be given to another process here: who waits for it learns that it was killed.
  const auto* process = ObjectOf<Process>(handle);
  if (process == nullptr) return Fail(kErrorInvalidHandle);
  if (!process->MayBeEnded()) return Fail(kErrorAccessDenied);
  if (process->Signal(SIGKILL)) return true;
  if (errno == ESRCH) SetLastError(kErrorAccessDenied);  // it has ended already
  return false;
}

bool CreateProcessW(const wchar_t* application, wchar_t* command_line, bool inherit, std::uint32_t /*flags*/,
                    const StartupInfo& startup, ProcessInformation& information) {
  if (application == nullptr || startup.size != sizeof startup) return Fail(kErrorInvalidParameter);
  // A program gets neither arguments nor standard handles from callers; what they do not ask for is refused.
  if (command_line != nullptr || (startup.flags & kUsesStandardHandles) != 0) return Fail(kErrorNotSupported);
  const auto path = SystemPath(std::wstring_view(application));
  if (!path) return Fail(kErrorFileNotFound);

  const int last_error = errno;
  auto process = std::make_unique<Process>(kAllRights);
  auto thread = std::make_unique<Thread>();
  auto started = StartProcess(*path, inherit);
  if (!started) return false;
  process->Hold(std::move(started->process));
  information.process = HandleOf(std::move(process));
  information.thread = HandleOf(std::move(thread));
  information.process_id = information.thread_id = static_cast<std::uint32_t>(started->id);
  errno = last_error;
  return true;
}

Handle GetStdHandle(std::uint32_t which) {
  constexpr std::uint32_t kFirst = 0xFFFFFFF6;  // input; output and error are one and two less
  constexpr std::uint32_t kCount = 3;
  const std::uint32_t number = kFirst - which;
  if (number >= kCount || fcntl(static_cast<int>(number), F_GETFD) < 0) return nullptr;
  // The name itself is the handle: it belongs to the process, is never closed, and no object stands there.
  return reinterpret_cast<Handle>(static_cast<std::intptr_t>(static_cast<std::int32_t>(which)));
}

}  // namespace velmora::os
