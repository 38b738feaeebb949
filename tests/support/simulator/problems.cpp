/// What the simulator complains about fails the test that runs.
#include <gtest/gtest.h>

#include "simulator/run.h"

namespace {

class SimulatorProblems : public testing::Environment {
 public:
  void SetUp() override {
    simulator::SetProblemHandler([](const std::string& problem) { ADD_FAILURE() << problem; });
  }
};

const auto* const kRegistered = testing::AddGlobalTestEnvironment(new SimulatorProblems);

}  // namespace
