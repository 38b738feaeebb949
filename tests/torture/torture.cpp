#include "tests/torture/torture.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>

#include "simulator/run.h"
#include "tests/support/simulator/allocations.h"
#include "tests/support/simulator/captured_problems.h"

namespace torture {
namespace {

using simulator::Fault;
using velmora::testing::AllocationCounter;
using velmora::testing::CapturedProblems;
using velmora::testing::FailingAllocation;

/// One thing that goes wrong. Without a fault it is an allocation that fails.
struct Point {
  std::optional<Fault> fault;
  int place = 0;
  bool forever = false;
};

/// What one run came to.
struct RunResult {
  std::string outcome;
  bool has_thrown = false;
  int calls = 0;
  int allocations = 0;
  std::vector<std::string> problems;
};

const char* NameOf(Fault fault) {
  switch (fault) {
    case Fault::kFail:
      return "fails";
    case Fault::kEmpty:
      return "succeeds with nothing";
    case Fault::kUnterminated:
      return "answers without end";
    case Fault::kThrow:
      return "throws";
    case Fault::kNone:
      break;
  }
  return "goes well";
}

std::string Describe(const Point& point) {
  const std::string what = point.fault ? "call " : "allocation ";
  return what + std::to_string(point.place) + (point.forever ? " and each behind it " : " ") +
         (point.fault ? NameOf(*point.fault) : "fails");
}

/// Tells what was tried when an exception meets a noexcept, which ends the program on the spot.
class TerminationNotice {
 public:
  explicit TerminationNotice(std::string text) : previous_(std::set_terminate(Report)) {
    DyingWords() = std::move(text);
  }
  TerminationNotice(const TerminationNotice&) = delete;
  TerminationNotice& operator=(const TerminationNotice&) = delete;
  ~TerminationNotice() { std::set_terminate(previous_); }

 private:
  static std::string& DyingWords() {
    static std::string text;
    return text;
  }
  [[noreturn]] static void Report() {
    std::fprintf(stderr, "terminated: %s\n", DyingWords().c_str());
    std::abort();
  }

  std::terminate_handler previous_;
};

/// Says what is wrong with a result; nothing when all is well.
std::vector<std::string> Judge(const Operation& operation, const std::string& clean, const Point& point,
                               const RunResult& result) {
  std::vector<std::string> findings = result.problems;
  if (result.has_thrown) {
    findings.push_back("threw " + result.outcome);
    return findings;
  }
  const bool is_spoiled = point.fault == Fault::kUnterminated && operation.IsSpoiled(result.outcome);
  if (result.outcome == clean || operation.IsFailure(result.outcome) || is_spoiled) return findings;
  findings.push_back("came to " + result.outcome + ", which is neither right (" + clean +
                     ") nor a documented failure");
  return findings;
}

/// One operation on one machine.
class Torturer {
 public:
  Torturer(const Operation& operation, const simulator::Machine& machine, std::string place)
      : operation_(operation), machine_(machine), used_(machine), place_(std::move(place)) {}

  Survey Run() {
    RunOnce(std::nullopt);  // what is set up at first use is no allocation of the next
    const RunResult clean = RunOnce(std::nullopt);
    Note("run clean", clean.problems);
    if (clean.has_thrown) Note("run clean", {"threw " + clean.outcome});
    clean_ = clean.outcome;
    for (const Fault fault : {Fault::kFail, Fault::kEmpty, Fault::kUnterminated, Fault::kThrow}) {
      TryEach(fault, clean.calls);
    }
    TryEach(std::nullopt, clean.allocations);
    return std::move(survey_);
  }

 private:
  /// Runs the operation with `point` going wrong, or clean without one.
  RunResult RunOnce(const std::optional<Point>& point) {
    RunResult result;
    const CapturedProblems captured;
    {
      auto run = simulator::Use(std::move(used_));
      if (point && point->fault) run.Inject(*point->fault, point->place, point->forever);
      const AllocationCounter allocations;
      try {
        std::optional<FailingAllocation> failing;
        if (point && !point->fault) failing.emplace(point->place, point->forever);
        operation_.Run();
      } catch (const std::exception& error) {
        result.has_thrown = true;
        result.outcome = error.what();
      } catch (...) {
        result.has_thrown = true;
        result.outcome = "something that is no std::exception";
      }
      result.allocations = allocations.Count();
      result.calls = run.Calls();
      used_ = std::move(run.machine());
    }
    if (used_ != machine_) used_ = machine_;
    if (!result.has_thrown) result.outcome = operation_.TakeOutcome();
    result.problems = captured.Problems();
    return result;
  }

  void TryEach(std::optional<Fault> fault, int count) {
    const auto places = PlacesToTry(count);
    survey_.left_out += 2 * (count - static_cast<int>(places.size()));
    for (const int place : places) {
      Try({fault, place, false});
      Try({fault, place, true});
    }
  }

  void Try(const Point& point) {
    const TerminationNotice notice(place_ + ": " + Describe(point));
    ++survey_.points;
    Note(Describe(point), Judge(operation_, clean_, point, RunOnce(point)));
  }

  void Note(const std::string& when, const std::vector<std::string>& findings) {
    for (const auto& finding : findings) survey_.findings.push_back(place_ + ": " + when + ": " + finding);
  }

  const Operation& operation_;
  const simulator::Machine& machine_;
  simulator::Machine used_;  // equal between runs: comparing takes much less than copying
  std::string place_;
  std::string clean_;
  Survey survey_;
};

}  // namespace

std::vector<int> PlacesToTry(int count) {
  constexpr int kFirst = kMostPlaces * 2 / 3;
  constexpr int kLast = kMostPlaces / 6;
  constexpr int kBetween = kMostPlaces - kFirst - kLast;
  std::vector<int> places;
  const int begin_of_last = count - kLast;
  for (int i = 0; i < count; ++i) {
    const bool is_between = i >= kFirst && i < begin_of_last && count > kMostPlaces;
    const int stride = (begin_of_last - kFirst + kBetween - 1) / kBetween;
    if (!is_between || (i - kFirst) % stride == 0) places.push_back(i);
  }
  return places;
}

Survey Torture(const Operation& operation, const simulator::Machine& machine,
               const std::string& machine_name) {
  return Torturer(operation, machine, operation.Name() + " on " + machine_name).Run();
}

}  // namespace torture
