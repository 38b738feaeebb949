#include "velmora-report/json_output.h"

#include <gtest/gtest.h>

namespace {

using report::Absent;
using report::Report;
using report::WriteJson;

TEST(JsonOutput, WritesAnEmptyObjectForNothing) { EXPECT_EQ(WriteJson({}), "{}\n"); }

TEST(JsonOutput, WritesEachKindOfValueAsItsOwn) {
  const Report report = {{.key = "fan",
                          .title = "Fan",
                          .rows = {{"speed_rpm", "Speed", std::uint64_t{18446744073709551615U}, "rpm"},
                                   {"maker", "Who made it", std::string("ACME"), ""},
                                   {"current_ma", "Current", std::int64_t{-750}, "mA"},
                                   {"wear_percent", "Wear", report::Hundredths{1234}, "%"},
                                   {"runs", "Runs", true, ""},
                                   {"serial", "Serial", Absent{}, ""}}}};

  EXPECT_EQ(WriteJson(report), R"({
  "fan": {
    "speed_rpm": 18446744073709551615,
    "maker": "ACME",
    "current_ma": -750,
    "wear_percent": 12.34,
    "runs": true,
    "serial": null
  }
}
)");
}

TEST(JsonOutput, EscapesWhatJsonWantsEscapedAndKeepsTheRest) {
  const Report report = {
      {.key = "k", .title = "K", .rows = {{"v", "V", std::string("\"\\\n\x1B caf\xC3\xA9"), ""}}}};

  EXPECT_EQ(WriteJson(report), "{\n  \"k\": {\n    \"v\": \"\\\"\\\\\\n\\u001b caf\xC3\xA9\"\n  }\n}\n");
}

TEST(JsonOutput, WritesAVerdictOnlyWhereThereIsOne) {
  const Report report = {{.key = "fan", .title = "Fan", .verdict = "It stands still"},
                         {.key = "lid", .title = "Lid"}};

  EXPECT_EQ(WriteJson(report), R"({
  "fan": {
    "verdict": "It stands still"
  },
  "lid": {}
}
)");
}

TEST(JsonOutput, WritesAListAlsoWhenItIsEmpty) {
  const Report report = {{.key = "memory",
                          .title = "Memory",
                          .lists = {{.key = "modules",
                                     .item_title = "Module",
                                     .items = {{{"size_mb", "Size", std::uint64_t{8192}, "MB"}}}},
                                    {.key = "slots", .item_title = "Slot"}}}};

  EXPECT_EQ(WriteJson(report), R"({
  "memory": {
    "modules": [
      {
        "size_mb": 8192
      }
    ],
    "slots": []
  }
}
)");
}

}  // namespace
