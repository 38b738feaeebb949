#include "platform/linux/process_start.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <climits>
#include <csignal>

#include "platform/linux/process_descriptor.h"

namespace velmora::os {
namespace {

/// Holds back every signal of this thread, so that no handler of the host's runs in a copy of its process.
class SignalsHeld {
 public:
  SignalsHeld() noexcept {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;
  ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

/// Whether `path` is a file that could be a program; else errno tells why not.
bool IsProgram(const char* path) noexcept {
  constexpr unsigned int kAnyoneExecutes = S_IXUSR | S_IXGRP | S_IXOTH;
  struct stat status{};
  if (stat(path, &status) != 0) return false;
  if (!S_ISREG(status.st_mode)) {
    errno = EACCES;
    return false;
  }
  if ((status.st_mode & kAnyoneExecutes) == 0) {
    errno = ENOEXEC;
    return false;
  }
  return access(path, X_OK) == 0;
}

/// Two ends of a line on which whole messages travel.
struct Line {
  Descriptor ours;
  Descriptor theirs;

  bool Open() noexcept {
    int sockets[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) != 0) return false;
    ours = Descriptor(sockets[0]);
    const Descriptor low(sockets[1]);
    // Clear of the standard files' numbers, which the new process fills anew.
    theirs = Descriptor(fcntl(low.Number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    return static_cast<bool>(theirs);
  }
};

template <class Value>
bool SendValue(int socket, const Value& value) noexcept {
  return send(socket, &value, sizeof value, MSG_NOSIGNAL) == static_cast<ssize_t>(sizeof value);
}

template <class Value>
bool ReceiveValue(int socket, Value& value) noexcept {
  ssize_t count = 0;
  do {
    count = recv(socket, &value, sizeof value, 0);
  } while (count < 0 && errno == EINTR);
  return count == static_cast<ssize_t>(sizeof value);
}

/// Gives the copy of the process the state in which programs expect to begin.
bool PrepareForProgram(bool inherit) noexcept {
  struct sigaction standard{};
  standard.sa_handler = SIG_DFL;
  for (int signal = 1; signal < NSIG; ++signal) sigaction(signal, &standard, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  setsid();
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  if (nothing < 0) return false;
  for (const int standard_file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (nothing == standard_file) {
      fcntl(nothing, F_SETFD, 0);
    } else if (dup2(nothing, standard_file) < 0) {
      return false;
    }
  }
  return inherit || close_range(STDERR_FILENO + 1, UINT_MAX, CLOSE_RANGE_CLOEXEC) == 0;
}

/// Runs in the new process: tells its number, waits until the caller holds it, and becomes the program. What
/// prevents that is told to the caller.
[[noreturn]] void BecomeProgram(const char* path, char* const* arguments, int socket, bool inherit) noexcept {
  bool may_go_on = false;
  if (SendValue(socket, getpid()) && ReceiveValue(socket, may_go_on) && may_go_on &&
      PrepareForProgram(inherit)) {
    execve(path, arguments, environ);
  }
  SendValue(socket, errno);
  _exit(127);
}

/// Copies the process twice. The first copy ends at once, and with it the second one's tie to this process.
bool StartSecondCopy(const char* path, char* const* arguments, const Line& line, bool inherit) noexcept {
  const SignalsHeld held;
  const pid_t first = _Fork();
  if (first < 0) return false;
  if (first == 0) {
    close(line.ours.Number());  // so that the end of the caller's side is seen as such
    const pid_t second = _Fork();
    if (second == 0) BecomeProgram(path, arguments, line.theirs.Number(), inherit);
    _exit(0);
  }
  // A host that waits for every child may have taken this one: then it has ended too.
  while (waitpid(first, nullptr, 0) < 0 && errno == EINTR) {
  }
  return true;
}

}  // namespace

std::optional<StartedProcess> StartProcess(const std::string& path, bool inherit) {
  if (!IsProgram(path.c_str())) return std::nullopt;
  std::string name = path;
  char* const arguments[] = {name.data(), nullptr};

  Line line;
  if (!line.Open() || !StartSecondCopy(path.c_str(), arguments, line, inherit)) return std::nullopt;
  line.theirs = Descriptor();
  const int ours = line.ours.Number();

  StartedProcess started{};
  if (!ReceiveValue(ours, started.id)) {  // there was no second copy
    errno = EAGAIN;
    return std::nullopt;
  }
  // The new process waits for our word, so its number cannot be anybody else's yet.
  started.process = OpenProcessDescriptor(started.id);
  if (!started.process || !SendValue(ours, true)) return std::nullopt;
  int error = 0;
  if (ReceiveValue(ours, error)) {
    errno = error;
    return std::nullopt;
  }
  return started;
}

}  // namespace velmora::os
