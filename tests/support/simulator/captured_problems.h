#pragma once

#include <string>
#include <vector>

#include "simulator/run.h"

namespace velmora::testing {

/// While it lives, what the simulator complains about is kept here instead of failing the test. One at a
/// time.
class CapturedProblems {
 public:
  CapturedProblems();
  CapturedProblems(const CapturedProblems&) = delete;
  CapturedProblems& operator=(const CapturedProblems&) = delete;
  ~CapturedProblems();

  const std::vector<std::string>& Problems() const;

 private:
  simulator::ProblemHandler previous_;
};

}  // namespace velmora::testing
