#include "velmora-report/text_output.h"

#include <gtest/gtest.h>

namespace {

using report::Absent;
using report::Report;
using report::WriteText;

Report OneRow(report::Value value, std::string unit = "") {
  return {{.key = "fan", .title = "Fan", .rows = {{"speed", "Speed", std::move(value), std::move(unit)}}}};
}

TEST(TextOutput, WritesNothingForNothing) { EXPECT_EQ(WriteText({}), ""); }

TEST(TextOutput, AlignsTheValuesOfASection) {
  const Report report = {{.key = "fan",
                          .title = "Fan",
                          .rows = {{"speed", "Speed", std::uint64_t{2900}, "rpm"},
                                   {"maker", "Who made it", std::string("ACME"), ""},
                                   {"runs", "Runs", true, ""},
                                   {"stuck", "Stuck", false, ""}}}};

  EXPECT_EQ(WriteText(report),
            "Fan\n"
            "  Speed        2900 rpm\n"
            "  Who made it  ACME\n"
            "  Runs         yes\n"
            "  Stuck        no\n");
}

TEST(TextOutput, WritesNumbersBelowZeroAndHundredths) {
  EXPECT_EQ(WriteText(OneRow(std::int64_t{-4}, "mA")), "Fan\n  Speed  -4 mA\n");
  const auto shown = [](std::int64_t hundredths) {
    return WriteText(OneRow(report::Hundredths{hundredths}, "%"));
  };
  EXPECT_EQ(shown(1234), "Fan\n  Speed  12.34 %\n");
  EXPECT_EQ(shown(7), "Fan\n  Speed  0.07 %\n");
  EXPECT_EQ(shown(-150), "Fan\n  Speed  -1.50 %\n");
  EXPECT_EQ(shown(INT64_MIN), "Fan\n  Speed  -92233720368547758.08 %\n");
}

TEST(TextOutput, SaysOfAnAbsentValueThatItIsNotReportedWithoutItsUnit) {
  EXPECT_EQ(WriteText(OneRow(Absent{}, "rpm")), "Fan\n  Speed  not reported\n");
}

TEST(TextOutput, TellsAZeroAndAnAbsentValueApart) {
  EXPECT_EQ(WriteText(OneRow(std::uint64_t{0}, "rpm")), "Fan\n  Speed  0 rpm\n");
}

TEST(TextOutput, PutsTheVerdictFirstAndAnEmptyLineBetweenSections) {
  Report report = OneRow(std::uint64_t{0});
  report[0].verdict = "The fan stands still";
  report.push_back({.key = "lid", .title = "Lid"});

  EXPECT_EQ(WriteText(report), "Fan\n  The fan stands still\n  Speed  0\n\nLid\n");
}

TEST(TextOutput, NumbersTheItemsOfAList) {
  const Report report = {{.key = "memory",
                          .title = "Memory",
                          .lists = {{.key = "modules",
                                     .item_title = "Module",
                                     .items = {{{"size_mb", "Size", std::uint64_t{8192}, "MB"}},
                                               {{"size_mb", "Size", Absent{}, "MB"}}}}}}};

  EXPECT_EQ(WriteText(report),
            "Memory\n"
            "  Module 1\n"
            "    Size  8192 MB\n"
            "  Module 2\n"
            "    Size  not reported\n");
}

TEST(TextOutput, MakesControlCharactersVisible) {
  EXPECT_EQ(WriteText(OneRow(std::string("\x1B[2J\n\x7F\xC2\x9B"))),
            "Fan\n  Speed  \\u001B[2J\\u000A\\u007F\\u009B\n");
}

TEST(TextOutput, KeepsOtherCharactersAsTheyAre) {
  EXPECT_EQ(WriteText(OneRow(std::string("caf\xC3\xA9 \xC2\xA0 \xC2\xAE"))),
            "Fan\n  Speed  caf\xC3\xA9 \xC2\xA0 \xC2\xAE\n");
}

}  // namespace
