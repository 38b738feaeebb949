/// Every operation on every machine of machines/ and on the empty one, with and without a host that logs.
#include <gtest/gtest.h>
#include <log4cxx/helpers/loglog.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <map>

#include "simulator/machine_file.h"
#include "tests/support/logging/captured_log.h"
#include "tests/torture/torture.h"

namespace torture {
namespace {

std::vector<Operation> AllOperations() {
  std::vector<Operation> all;
  for (const auto table : {BaseboardOperations, BluetoothOperations, DeviceDriverOperations, FamilyOperations,
                           InventoryOperations, NetworkAdapterOperations, NetworkCardOperations,
                           PartsOperations, PowerOperations, ServiceAndFileOperations}) {
    Append(all, table());
  }
  return all;
}

/// The machines by name; the same ones in every run.
const std::map<std::string, simulator::Machine>& Machines() {
  static const auto machines = [] {
    std::map<std::string, simulator::Machine> all{{"the empty machine", simulator::EmptyMachine()}};
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_MACHINES)) {
      if (entry.path().extension() == ".json")
        all.emplace(entry.path().filename().string(), simulator::ReadMachine(entry.path()));
    }
    return all;
  }();
  return machines;
}

/// A name that the test library takes.
std::string TestName(const Operation& operation) {
  std::string name = operation.Name();
  std::ranges::replace_if(name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

/// Tells at the end how much was tried.
class Tally : public testing::Environment {
 public:
  void SetUp() override { log4cxx::helpers::LogLog::setQuietMode(true); }  // its reports are expected here
  void TearDown() override {
    std::printf(
        "torture: %d points tried over %d operations and %zu machines, %d left out by the bound of %d\n",
        points, operations, Machines().size(), left_out, kMostPlaces);
  }
  int operations = 0;
  int points = 0;
  int left_out = 0;
};

auto* const tally = static_cast<Tally*>(testing::AddGlobalTestEnvironment(new Tally));

class EveryOperation : public testing::TestWithParam<Operation> {
 protected:
  static void TortureOnEveryMachine() {
    ASSERT_GT(Machines().size(), 1u) << "no machine files in " << VELMORA_MACHINES;
    for (const auto& [name, machine] : Machines()) {
      const Survey survey = Torture(GetParam(), machine, name);
      for (const auto& finding : survey.findings) ADD_FAILURE() << finding;
      tally->points += survey.points;
      tally->left_out += survey.left_out;
    }
  }
};

TEST_P(EveryOperation, SurvivesWhateverGoesWrongBelowIt) {
  const velmora::testing::NoLogger no_logger;
  TortureOnEveryMachine();
  ++tally->operations;
}

TEST_P(EveryOperation, SurvivesItAlsoWhileItsHostLogs) {
  const velmora::testing::CapturedLog log;
  TortureOnEveryMachine();
}

INSTANTIATE_TEST_SUITE_P(Torture, EveryOperation, testing::ValuesIn(AllOperations()),
                         [](const auto& operation) { return TestName(operation.param); });

}  // namespace
}  // namespace torture
