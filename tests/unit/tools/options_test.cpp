#include "velmora-report/options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using report::Options;
using report::ParseOptions;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string UsageErrorOf(const std::vector<std::string>& arguments) {
  try {
    ParseOptions(arguments);
  } catch (const report::UsageError& error) {
    return error.what();
  }
  return "no error";
}

TEST(Options, AskForTheTextReportOfThisMachineWithoutArguments) {
  const Options options = ParseOptions({});

  EXPECT_EQ(options.action, Options::Action::kReport);
  EXPECT_FALSE(options.json);
  EXPECT_EQ(options.machine, "");
  EXPECT_THAT(options.others, IsEmpty());
}

TEST(Options, MayAskForJson) { EXPECT_TRUE(ParseOptions({"--json"}).json); }

TEST(Options, NameAMachineFileWhateverItIsCalled) {
  EXPECT_EQ(ParseOptions({"--machine", "--json"}).machine, "--json");
  EXPECT_EQ(ParseOptions({"--machine", "a b\xC3\xA9\".json"}).machine, "a b\xC3\xA9\".json");
}

TEST(Options, PassEverythingButTheMachineFileOn) {
  EXPECT_THAT(ParseOptions({"--machine", "a.json", "--json"}).others, ElementsAre("--json"));
  EXPECT_THAT(ParseOptions({"--json", "--machine", "a.json"}).others, ElementsAre("--json"));
}

TEST(Options, MayAskForHelpAndVersion) {
  EXPECT_EQ(ParseOptions({"--help"}).action, Options::Action::kHelp);
  EXPECT_EQ(ParseOptions({"--version"}).action, Options::Action::kVersion);
}

TEST(Options, AreRefusedByNameWhenTheyAreUnknown) {
  for (const std::string argument : {"--jsn", "-j", "machine.json", "", "--json=1"}) {
    EXPECT_THAT(UsageErrorOf({"--json", argument}), HasSubstr("\"" + argument + "\""));
  }
}

TEST(Options, AreRefusedWhenTheMachineFileIsMissing) {
  EXPECT_EQ(UsageErrorOf({"--machine"}), "--machine needs a file");
  EXPECT_EQ(UsageErrorOf({"--machine", ""}), "--machine needs a file");
}

TEST(Options, GatherTheNamesOfServicesAndProcesses) {
  const Options options = ParseOptions({"--service", "a", "--process", "--json", "--service", "b"});
  EXPECT_THAT(options.services, ElementsAre("a", "b"));
  EXPECT_THAT(options.processes, ElementsAre("--json"));
  EXPECT_FALSE(options.json);
  EXPECT_THAT(options.others, ElementsAre("--service", "a", "--process", "--json", "--service", "b"));
  EXPECT_EQ(UsageErrorOf({"--service"}), "--service needs a name");
}

TEST(Options, GatherTheNamesOfNetworks) {
  const Options options = ParseOptions({"--network", "Office", "--network", "two words"});
  EXPECT_THAT(options.networks, ElementsAre("Office", "two words"));
  EXPECT_EQ(UsageErrorOf({"--network"}), "--network needs a name");
}

TEST(Options, TakeACommandWithEverythingBehindIt) {
  const Options options =
      ParseOptions({"--machine", "a.json", "files", "prune", "x", "--keep", "3", "--json"});
  EXPECT_EQ(options.action, Options::Action::kCommand);
  EXPECT_THAT(options.command, ElementsAre("files", "prune", "x", "--keep", "3"));
  EXPECT_TRUE(options.json);
  EXPECT_THAT(options.others, ElementsAre("files", "prune", "x", "--keep", "3", "--json"));
}

TEST(Options, MayAskForTheListOfDevices) {
  EXPECT_EQ(ParseOptions({"--devices"}).action, Options::Action::kDevices);
  EXPECT_THAT(ParseOptions({"--devices", "--machine", "a.json"}).others, ElementsAre("--devices"));
}

TEST(Options, PassEverythingBehindRepairOnButTheProgramsOwnOptions) {
  const Options options =
      ParseOptions({"--json", "repair", "reset", "--id", "x", "--machine", "a.json", "--yes", "repair"});
  EXPECT_EQ(options.action, Options::Action::kRepair);
  EXPECT_TRUE(options.json);
  EXPECT_EQ(options.machine, "a.json");
  EXPECT_THAT(options.repair, ElementsAre("reset", "--id", "x", "--yes", "repair"));
  EXPECT_THAT(options.others, ElementsAre("--json", "repair", "reset", "--id", "x", "--yes", "repair"));
}

TEST(Options, AskForHelpAlsoInTheMiddleOfARepair) {
  EXPECT_EQ(ParseOptions({"repair", "rescan", "--yes", "--help"}).action, Options::Action::kHelp);
}

TEST(Options, AreAllToldByTheHelp) {
  for (const char* const option : {"--devices", "repair", "--service NAME", "--process NAME", "COMMAND",
                                   "--json", "--machine FILE", "--help", "--version"}) {
    EXPECT_THAT(std::string(report::kHelp), HasSubstr(option));
  }
}

}  // namespace
