/// A machine in use: while a `Run` lives, both platform contracts answer from its machine.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/machine.h"

namespace simulator {

/// How a platform call is made to go wrong.
enum class Fault {
  kNone,
  kFail,          ///< the call reports failure
  kEmpty,         ///< the call reports success and gives nothing
  kUnterminated,  ///< the call fills the whole buffer and leaves out the terminating zero
  kThrow,         ///< the call throws InjectedFault
};

/// What a call throws when it is made to.
struct InjectedFault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// One platform call as it was made.
struct Call {
  std::string function;   ///< such as "HalQueryInformation"
  std::string arguments;  ///< such as "4, null, 0, 260"
};

/// Is told what a test should know: a call that nothing was scripted for, a handle left open or closed twice.
using ProblemHandler = void (*)(const std::string& problem);

/// Sets who is told and returns who was. At first problems end the program with a message.
ProblemHandler SetProblemHandler(ProblemHandler handler);

/// True while this thread is inside the simulator, whose own allocations are nobody's concern.
bool IsInsideSimulator() noexcept;

/// One query as the hardware-abstraction library meets it.
struct HalQuery {
  unsigned int device_class;
  void* device;
  unsigned int information_id;
  std::span<unsigned char> buffer;
  unsigned int& returned_size;
};

/// Answers a query: writes what it likes and returns the value of the call; nothing leaves the query to the
/// machine.
using QueryAnswer = std::function<std::optional<int>(const HalQuery&)>;

/// Gives the value of HalInit, for answers that no machine should give. The table of the class has been
/// handed out by then, and may be changed.
using InitAnswer = std::function<int(unsigned int device_class, void* table)>;

class Session;

/// Uses `machine` for the object's life; a second one meanwhile is a problem. Ending reports handles that
/// were left open.
class Run {
 public:
  explicit Run(Machine machine);
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  ~Run();

  /// The machine as it stands now; a repair changes it, and so may the test.
  Machine& machine();

  /// How often a function was called.
  int Calls(std::string_view function) const;

  /// How many calls were made in all.
  int Calls() const;

  /// Every call in order, each as "Function(arguments)".
  std::vector<std::string> Trace() const;

  /// Makes call number `number` go wrong, counted from 0 over all calls; with `forever` every call from it
  /// on.
  void Inject(Fault fault, int number, bool forever = false);

  /// Has the machine changed just before call number `number`, counted as above: what happens meanwhile.
  void BeforeCall(int number, std::function<void(Machine&)> change);

  /// Lets `answer` stand before the machine, for answers that no machine should give: a success value of 2, a
  /// buffer that is half written by a query that fails, a returned size of 4 GB. It may throw.
  void OnQuery(QueryAnswer answer);

  /// Lets `answer` give the value of every HalInit that is not made to go wrong.
  void OnInit(InitAnswer answer);

  /// Handles that stand open.
  int OpenHandles() const;

 private:
  std::unique_ptr<Session> session_;
  Session* previous_;
};

/// Reads as a sentence in a test: `const auto run = simulator::Use(machine);`
[[nodiscard]] Run Use(Machine machine);

}  // namespace simulator
