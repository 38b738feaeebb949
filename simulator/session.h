/// The simulator's inside: what the simulated platform functions stand on. Tests use run.h.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "simulator/run.h"

namespace simulator {

/// The machine in use and what has happened to it.
class Session {
 public:
  explicit Session(Machine used) : machine(std::move(used)) {}

  /// The session of the run that lives now. Without a run, one that lasts as long as the program is begun
  /// with the machine file that the environment variable VELMORA_MACHINE names.
  static Session& Current();

  /// Notes a call and tells how it shall go wrong; throws where that is by throwing.
  Fault Enter(std::string_view function, std::string arguments);

  /// Says that the machine has no script for what `function` asks.
  void ReportUnscripted(std::string_view function, std::string_view what);

  /// Handles are counted; closing one that is not open is a problem. A closing function calls this before it
  /// is entered: also a close that is made to fail or throw was asked for, and the caller owes no second one.
  std::uint64_t OpenHandle();
  void CloseHandle(std::uint64_t handle, std::string_view function);

  Machine machine;
  std::vector<Call> calls;
  Fault fault = Fault::kNone;
  int fault_at = 0;
  bool fault_is_forever = false;
  QueryAnswer query_answer;
  std::set<std::uint64_t> open_handles;

 private:
  std::uint64_t next_handle_ = 0x1000;
};

void ReportProblem(const std::string& problem);

// How arguments are written in a trace.
inline std::string Shown(const std::string& text) { return text; }
template <class Number>
  requires std::is_arithmetic_v<Number>
std::string Shown(Number number) {
  return std::to_string(number);
}
inline std::string Shown(const void* pointer) { return pointer == nullptr ? "null" : "pointer"; }

/// Marks the thread as inside the simulator.
class InsideSimulator {
 public:
  InsideSimulator() noexcept;
  InsideSimulator(const InsideSimulator&) = delete;
  InsideSimulator& operator=(const InsideSimulator&) = delete;
  ~InsideSimulator();
};

/// Stands at the head of every simulated platform function: notes the call and holds what the test wants of
/// it.
class Entered {
 public:
  template <class... Arguments>
  explicit Entered(std::string_view function, const Arguments&... arguments)
      : session(Session::Current()), fault(session.Enter(function, Joined(arguments...))) {}

  bool Fails() const { return fault == Fault::kFail; }

 private:
  template <class... Arguments>
  static std::string Joined(const Arguments&... arguments) {
    std::string text;
    ((text += (text.empty() ? "" : ", ") + Shown(arguments)), ...);
    return text;
  }

  InsideSimulator inside_;

 public:
  Session& session;
  Fault fault;
};

}  // namespace simulator
