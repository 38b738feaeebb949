#include "velmora-report/repair_arguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "velmora-report/options.h"
#include "velmora-report/repair.h"

namespace {

using report::RepairArguments;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::string_view kOptions[] = {"--kind", "--id"};

RepairArguments Parse(const std::vector<std::string>& arguments, std::size_t most_words = 0) {
  return {arguments, kOptions, most_words};
}

template <class Action>
std::string UsageErrorIn(Action action) {
  try {
    action();
  } catch (const report::UsageError& error) {
    return error.what();
  }
  return "no error";
}

TEST(RepairArguments, AreNotConfirmedUnlessTheySaySo) {
  EXPECT_FALSE(Parse({"--kind", "usb"}).IsConfirmed());
  EXPECT_TRUE(Parse({"--kind", "usb", "--yes"}).IsConfirmed());
  EXPECT_FALSE(Parse({"--kind", "--yes"}).IsConfirmed()) << "there it is a value";
}

TEST(RepairArguments, GiveTheValuesOfTheirOptions) {
  const auto arguments = Parse({"--id", "PCI\\VEN_8086", "--kind", ""});
  EXPECT_EQ(arguments.Required("--id"), "PCI\\VEN_8086");
  EXPECT_EQ(arguments.Optional("--kind"), "");
  EXPECT_EQ(arguments.Optional("--force"), "");
}

TEST(RepairArguments, AreRefusedWhenAnOptionThatIsNeededIsMissingOrEmpty) {
  EXPECT_EQ(UsageErrorIn([] { Parse({}).Required("--id"); }), "--id is needed");
  EXPECT_EQ(UsageErrorIn([] { Parse({"--id", ""}).Required("--id"); }), "--id is needed");
}

TEST(RepairArguments, AreRefusedWithoutAValueAndWithTwo) {
  EXPECT_EQ(UsageErrorIn([] { Parse({"--id"}); }), "--id needs a value");
  EXPECT_EQ(UsageErrorIn([] { Parse({"--id", "a", "--id", "b"}); }), "--id is given twice");
}

TEST(RepairArguments, AreRefusedByNameWhenTheyAreUnknown) {
  for (const std::string argument : {"--force", "-y", "word", "--yes=1"})
    EXPECT_THAT(UsageErrorIn([&] { Parse({argument}); }), HasSubstr("\"" + argument + "\""));
}

TEST(RepairArguments, MayHaveAsManyWordsAsTheRepairTakes) {
  EXPECT_THAT(Parse({"one", "--yes", "two"}, 2).Words(), ElementsAre("one", "two"));
  EXPECT_THAT(UsageErrorIn([] { Parse({"one", "two", "three"}, 2); }), HasSubstr("\"three\""));
}

TEST(Repair, IsRefusedWithTheNamesOfAllWhenNoneOrAnUnknownOneIsNamed) {
  EXPECT_THAT(UsageErrorIn([] { report::RunRepair({}); }), HasSubstr("reset, uninstall, rescan"));
  const std::vector<std::string> unknown{"everything"};
  EXPECT_THAT(UsageErrorIn([&] { report::RunRepair(unknown); }), HasSubstr("no repair \"everything\""));
}

TEST(Repair, IsRefusedForAKindThatItDoesNotTake) {
  for (const std::string kind : {"keyboard", "Wireless", "0", "system"}) {
    const std::vector<std::string> arguments{"uninstall", "--kind", kind, "--id", "x"};
    EXPECT_THAT(UsageErrorIn([&] { report::RunRepair(arguments); }), HasSubstr("\"" + kind + "\""));
  }
  const std::vector<std::string> usb{"reset", "--kind", "usb", "--id", "x"};
  EXPECT_THAT(UsageErrorIn([&] { report::RunRepair(usb); }),
              HasSubstr("only wireless, bluetooth, fingerprint, audio, display"));
}

TEST(Repair, IsToldByTheHelpWithItsOptions) {
  for (const char* const text : {"repair reset --kind KIND --id HARDWARE_ID", "repair uninstall",
                                 "repair rescan", "--force NAME", "--yes"})
    EXPECT_THAT(report::RepairHelp(), HasSubstr(text));
}

TEST(Repair, OfADeviceThatThisMachineDoesNotHaveDoesNothingAndFails) {
  const std::vector<std::string> arguments{
      "uninstall", "--kind", "wireless", "--id", "PCI\\VEN_FFFF&DEV_FFFF", "--yes"};
  const auto outcome = report::RunRepair(arguments);
  EXPECT_EQ(outcome.status, report::kFailed);
  EXPECT_THAT(outcome.section.verdict, HasSubstr("no device of this kind"));
}

}  // namespace
