#include "tests/integration/linux/mock_bus.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>
#include <utility>

namespace velmora::os::test {
namespace {

std::string ReadLine(int descriptor) {
  std::string line;
  char character = 0;
  while (read(descriptor, &character, 1) == 1 && character != '\n') line.push_back(character);
  return line;
}

}  // namespace

HelperProgram::HelperProgram(const std::vector<std::string>& arguments, int output) {
  std::vector<std::string> texts = arguments;
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  int started[2] = {-1, -1};  // closed by the start of the program
  if (pipe2(started, O_CLOEXEC) != 0) return;
  id_ = fork();
  if (id_ != 0) {
    close(started[1]);
    ReadLine(started[0]);
    close(started[0]);
    return;
  }
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(output >= 0 ? output : nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  execvp(pointers[0], pointers.data());
  _exit(127);
}

HelperProgram::~HelperProgram() { Stop(); }

void HelperProgram::Stop() {
  if (id_ <= 0) return;
  kill(id_, SIGKILL);
  waitpid(std::exchange(id_, -1), nullptr, 0);
}

Variable::Variable(const char* name, const std::string& value) : name_(name) {
  const char* before = std::getenv(name);
  was_set_ = before != nullptr;
  if (was_set_) before_ = before;
  setenv(name, value.c_str(), 1);
}

Variable::~Variable() {
  if (was_set_) {
    setenv(name_, before_.c_str(), 1);
  } else {
    unsetenv(name_);
  }
}

PrivateBus::Pipe::Pipe() {
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
}

PrivateBus::Pipe::~Pipe() {
  close(ends[0]);
  close(ends[1]);
}

PrivateBus::PrivateBus()
    : daemon_({"dbus-daemon", "--session", "--nofork", "--print-address"}, pipe_.ends[1]),
      address_("DBUS_SYSTEM_BUS_ADDRESS", ReadLine(pipe_.ends[0])) {}

MockService::MockService(const std::string& bus_template, std::string name, std::string path)
    : program_({"/usr/bin/python3", "-m", "dbusmock", "--system", "--template", bus_template}),
      name_(std::move(name)),
      path_(std::move(path)),
      bus_(ConnectToSystemBus()) {
  constexpr int kTries = 200;
  for (int i = 0; i < kTries; ++i) {
    if (bus_ && IsOnBus(bus_.get(), name_.c_str())) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  throw std::runtime_error("python3-dbusmock did not come up with " + name_);
}

std::string MockService::Call(const char* interface, const char* method,
                              std::initializer_list<const char*> texts) const {
  const SystemdLibrary& library = bus_->Library();
  sd_bus_message* made = nullptr;
  if (library.bus_message_new_method_call(bus_->Get(), &made, name_.c_str(), path_.c_str(), interface,
                                          method) < 0) {
    throw std::runtime_error("no message");
  }
  const BusMessage message(library, made);
  for (const char* text : texts) message.Append("s", text);
  BusError error;
  sd_bus_message* got = nullptr;
  const int result = library.bus_call(bus_->Get(), made, 0, error.Out(library), &got);
  const BusMessage reply(library, got);
  if (result < 0) throw std::runtime_error(std::string(method) + ": " + error.Message());
  const char* text = "";
  char type = 0;
  const char* contents = nullptr;
  if (reply.PeekType(type, contents) > 0 && type == 's') reply.ReadBasic('s', &text);
  return text;
}

}  // namespace velmora::os::test
