#include "tests/support/simulator/captured_problems.h"

namespace velmora::testing {
namespace {

std::vector<std::string> problems;

}  // namespace

CapturedProblems::CapturedProblems() {
  problems.clear();
  previous_ = simulator::SetProblemHandler([](const std::string& problem) { problems.push_back(problem); });
}

CapturedProblems::~CapturedProblems() { simulator::SetProblemHandler(previous_); }

const std::vector<std::string>& CapturedProblems::Problems() const { return problems; }

}  // namespace velmora::testing
