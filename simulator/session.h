/// The simulator's inside: what the simulated platform functions stand on. Tests use run.h.
#pragma once

#include <any>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/ostrine/guid.h"
#include "simulator/run.h"

namespace simulator {

/// A device table that was handed out. It is the caller's to free, so only its addresses are compared.
struct HandedOutTable {
  const char* begin;
  std::size_t count;
  std::size_t entry_size;
  std::vector<std::uint32_t> numbers;  ///< what each entry stands for; empty: for its position

  /// The position of the entry that begins at `address`; nothing when none does.
  std::optional<std::uint32_t> EntryAt(const void* address) const;
};

/// The machine in use and what has happened to it.
class Session {
 public:
  explicit Session(Machine used) : machine(std::move(used)) {}

  /// The session of the run that lives now. Without a run, one that lasts as long as the program is begun
  /// with the machine file that the environment variable VELMORA_MACHINE names.
  static Session& Current();

  /// Notes a call and tells how it shall go wrong; throws where that is by throwing.
  Fault Enter(std::string_view function, std::string arguments);

  /// The same for a call that gives something back. Such calls stand in destructors, so none throws: where it
  /// should, it reports failure.
  Fault EnterClosing(std::string_view function, std::string arguments);

  /// Says that the machine has no script for what `function` asks.
  void ReportUnscripted(std::string_view function, std::string_view what);

  /// Handles are counted; closing one that is not open is a problem. A closing function calls this before it
  /// is entered: also a close that is made to fail or throw was asked for, and the caller owes no second one.
  std::uint64_t OpenHandle();
  void CloseHandle(std::uint64_t handle, std::string_view function);

  /// Opens a handle that stands for `state` and that the function `closer` closes.
  template <class State>
  void* Open(std::string_view closer, State state) {
    const std::uint64_t handle = OpenHandle();
    opened_.emplace(handle, Opened{std::string(closer), std::move(state)});
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(handle));
  }

  /// What an open handle stands for. Null, and a problem, for one that is not open or is of another kind.
  template <class State>
  State* Find(const void* handle, std::string_view function) {
    const auto found = opened_.find(NumberOf(handle));
    auto* state = found == opened_.end() ? nullptr : std::any_cast<State>(&found->second.state);
    if (state == nullptr) ReportBadHandle(function);
    return state;
  }

  /// Closes what Open gave; false, and a problem, for what is not open or another function closes.
  bool Close(const void* handle, std::string_view closer);

  /// Closes the newest handle that `closer` closes; false, and a problem, when there is none.
  bool CloseNewest(std::string_view closer);

  /// Memory that the caller owes back through the function `closer`; it counts as an open handle.
  void* Lend(std::string_view closer, std::size_t size);
  void TakeBack(void* memory, std::string_view closer);

  /// How many handles are open that `closer` closes.
  int CountOpen(std::string_view closer) const;

  Machine machine;
  std::vector<Call> calls;
  Fault fault = Fault::kNone;
  int fault_at = 0;
  bool fault_is_forever = false;
  QueryAnswer query_answer;
  InitAnswer init_answer;
  std::vector<HandedOutTable> tables;
  std::set<std::uint64_t> open_handles;
  std::vector<std::shared_ptr<void>> kept;  ///< what has to live as long as the session
  std::function<void(Machine&)> before_call;
  int before_call_number = 0;

 private:
  struct Opened {
    std::string closer;
    std::any state;
  };

  static std::uint64_t NumberOf(const void* handle) {
    return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(handle));
  }
  static void ReportBadHandle(std::string_view function);

  struct Lent {
    void* handle;
    std::shared_ptr<void> memory;
  };

  std::map<std::uint64_t, Opened> opened_;
  std::map<const void*, Lent> lent_;
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
std::string Shown(const std::wstring& text);
std::string Shown(const wchar_t* text);
std::string Shown(const char* text);
std::string Shown(const GUID& id);  ///< a setup class by its name
inline std::string Shown(const void* pointer) { return pointer == nullptr ? "null" : "pointer"; }

/// A number that is shown as hexadecimal, as access masks and codes are written.
struct Hex {
  std::uint64_t number;
};
std::string Shown(Hex hex);
std::string Shown(const Bytes& bytes);  ///< as a machine file has them

/// Marks the thread as inside the simulator.
class InsideSimulator {
 public:
  InsideSimulator() noexcept;
  InsideSimulator(const InsideSimulator&) = delete;
  InsideSimulator& operator=(const InsideSimulator&) = delete;
  ~InsideSimulator();
};

/// The arguments of a call as a trace has them.
template <class... Arguments>
std::string Joined(const Arguments&... arguments) {
  std::string text;
  [[maybe_unused]] bool is_first = true;
  ((text += (std::exchange(is_first, false) ? "" : ", ") + Shown(arguments)), ...);
  return text;
}

/// Stands at the head of every simulated platform function: notes the call and holds what the test wants of
/// it.
class Entered {
 public:
  template <class... Arguments>
  explicit Entered(std::string_view function, const Arguments&... arguments)
      : session(Session::Current()), fault(session.Enter(function, Joined(arguments...))) {}

  bool Fails() const { return fault == Fault::kFail; }

 private:
  InsideSimulator inside_;

 public:
  Session& session;
  Fault fault;
};

/// The same at the head of a function that gives something back; it never throws.
class Closing {
 public:
  template <class... Arguments>
  explicit Closing(std::string_view function, const Arguments&... arguments)
      : session(Session::Current()), fault(session.EnterClosing(function, Joined(arguments...))) {}

  bool Fails() const { return fault == Fault::kFail; }

 private:
  InsideSimulator inside_;

 public:
  Session& session;
  Fault fault;
};

}  // namespace simulator
