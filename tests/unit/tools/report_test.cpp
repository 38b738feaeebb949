#include "velmora-report/report.h"

#include <gtest/gtest.h>

#include <set>

#include "velmora-report/sections.h"

namespace {

using report::Absent;
using report::TextValue;
using report::Value;

TEST(TextValue, IsAbsentForTheEmptyText) { EXPECT_EQ(TextValue(L""), Value(Absent{})); }

TEST(TextValue, IsTheTextAsUtf8) {
  EXPECT_EQ(TextValue(L"caf\xE9"), Value(std::string("caf\xC3\xA9")));
  EXPECT_EQ(TextValue(L" "), Value(std::string(" "))) << "a blank is what the firmware holds";
}

TEST(ReportOfThisMachine, HasSectionsAndRowsOfDifferentNames) {
  std::set<std::string> sections;
  for (const auto& section : report::ReadMachine()) {
    EXPECT_TRUE(sections.insert(section.key).second) << section.key;
    EXPECT_NE(section.title, "") << section.key;
    std::set<std::string> keys;
    for (const auto& row : section.rows) {
      EXPECT_TRUE(keys.insert(row.key).second) << section.key << "." << row.key;
      EXPECT_NE(row.label, "") << section.key << "." << row.key;
    }
    for (const auto& list : section.lists) EXPECT_TRUE(keys.insert(list.key).second) << list.key;
  }
  EXPECT_TRUE(sections.contains("baseboard"));
}

}  // namespace
