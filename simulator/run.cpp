#include "simulator/run.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include "simulator/machine_file.h"
#include "simulator/session.h"

namespace simulator {
namespace {

void EndProgram(const std::string& problem) {
  std::fprintf(stderr, "simulator: %s\n", problem.c_str());
  std::_Exit(2);
}

ProblemHandler problem_handler = EndProgram;
Session* current_session = nullptr;
thread_local int inside_depth = 0;

/// The machine file that the environment names; null when it names none.
auto NamedMachineFile() {
#ifdef _WIN32
  return _wgetenv(L"VELMORA_MACHINE");  // the narrow environment cannot hold every path
#else
  return std::getenv("VELMORA_MACHINE");
#endif
}

/// What the handle of lent memory stands for.
struct LentMemory {};

/// The session of a program that was given its machine by the environment.
Session& EnvironmentSession() {
  static const auto session = [] {
    const auto* file = NamedMachineFile();
    if (file == nullptr) EndProgram("no machine is in use, and VELMORA_MACHINE names no machine file");
    try {
      return std::make_unique<Session>(ReadMachine(file));
    } catch (const MachineFileError& error) {
      EndProgram(error.what());
      throw;
    }
  }();
  return *session;
}

}  // namespace

ProblemHandler SetProblemHandler(ProblemHandler handler) { return std::exchange(problem_handler, handler); }
void ReportProblem(const std::string& problem) { problem_handler(problem); }
bool IsInsideSimulator() noexcept { return inside_depth > 0; }
InsideSimulator::InsideSimulator() noexcept { ++inside_depth; }
InsideSimulator::~InsideSimulator() { --inside_depth; }

Session& Session::Current() { return current_session != nullptr ? *current_session : EnvironmentSession(); }

Fault Session::Enter(std::string_view function, std::string arguments) {
  const int number = static_cast<int>(calls.size());
  if (before_call && number == before_call_number) before_call(machine);
  calls.push_back({std::string(function), std::move(arguments)});
  const bool is_hit =
      fault != Fault::kNone && (number == fault_at || (fault_is_forever && number > fault_at));
  if (!is_hit) return Fault::kNone;
  if (fault == Fault::kThrow) throw InjectedFault("call " + std::to_string(number) + " was made to throw");
  return fault;
}

Fault Session::EnterClosing(std::string_view function, std::string arguments) {
  const Fault wanted = fault;
  if (wanted == Fault::kThrow) fault = Fault::kFail;
  const Fault result = Enter(function, std::move(arguments));
  fault = wanted;
  return result;
}

void Session::ReportUnscripted(std::string_view function, std::string_view what) {
  ReportProblem(std::string(function) + " was called, but the machine has no script for " +
                std::string(what));
}

std::uint64_t Session::OpenHandle() {
  open_handles.insert(next_handle_);
  return next_handle_++;
}

void Session::CloseHandle(std::uint64_t handle, std::string_view function) {
  const InsideSimulator inside;
  if (open_handles.erase(handle) == 0)
    ReportProblem(std::string(function) + " closed a handle that is not open");
}

bool Session::Close(const void* handle, std::string_view closer) {
  const auto found = opened_.find(NumberOf(handle));
  if (found == opened_.end()) {
    ReportBadHandle(closer);
    return false;
  }
  if (found->second.closer != closer) {
    ReportProblem(std::string(closer) + " was given a handle that " + found->second.closer + " closes");
    return false;
  }
  opened_.erase(found);
  CloseHandle(NumberOf(handle), closer);
  return true;
}

bool Session::CloseNewest(std::string_view closer) {
  const auto newest = std::find_if(opened_.rbegin(), opened_.rend(),
                                   [closer](const auto& entry) { return entry.second.closer == closer; });
  if (newest == opened_.rend()) {
    ReportProblem(std::string(closer) + " was called, but nothing is open that it closes");
    return false;
  }
  return Close(reinterpret_cast<void*>(static_cast<std::uintptr_t>(newest->first)), closer);
}

void* Session::Lend(std::string_view closer, std::size_t size) {
  const std::shared_ptr<void> memory(std::calloc(1, size), std::free);
  lent_.emplace(memory.get(), Lent{Open(closer, LentMemory{}), memory});
  return memory.get();
}

void Session::TakeBack(void* memory, std::string_view closer) {
  const auto found = lent_.find(memory);
  if (found == lent_.end()) {
    ReportProblem(std::string(closer) + " was given memory that is not lent");
    return;
  }
  Close(found->second.handle, closer);
  lent_.erase(found);
}

int Session::CountOpen(std::string_view closer) const {
  return static_cast<int>(
      std::ranges::count_if(opened_, [&](const auto& entry) { return entry.second.closer == closer; }));
}

void Session::ReportBadHandle(std::string_view function) {
  ReportProblem(std::string(function) + " was given a handle that is not open");
}

Run::Run(Machine machine)
    : session_(std::make_unique<Session>(std::move(machine))), previous_(current_session) {
  if (previous_ != nullptr) ReportProblem("two machines are in use at once");
  current_session = session_.get();  // last, so that a handler that throws leaves everything as it was
}

Run::~Run() {
  current_session = previous_;
  const auto open = session_->open_handles.size();
  if (open != 0) ReportProblem("handles left open: " + std::to_string(open));
}

Machine& Run::machine() { return session_->machine; }
int Run::Calls() const { return static_cast<int>(session_->calls.size()); }
int Run::OpenHandles() const { return static_cast<int>(session_->open_handles.size()); }

int Run::Calls(std::string_view function) const {
  return static_cast<int>(
      std::ranges::count_if(session_->calls, [&](const Call& call) { return call.function == function; }));
}

std::vector<std::string> Run::Trace() const {
  std::vector<std::string> trace;
  for (const auto& call : session_->calls) trace.push_back(call.function + "(" + call.arguments + ")");
  return trace;
}

void Run::Inject(Fault fault, int number, bool forever) {
  session_->fault = fault;
  session_->fault_at = number;
  session_->fault_is_forever = forever;
}

void Run::BeforeCall(int number, std::function<void(Machine&)> change) {
  session_->before_call = std::move(change);
  session_->before_call_number = number;
}

void Run::OnQuery(QueryAnswer answer) { session_->query_answer = std::move(answer); }
void Run::OnInit(InitAnswer answer) { session_->init_answer = std::move(answer); }

Run Use(Machine machine) { return Run(std::move(machine)); }

}  // namespace simulator
