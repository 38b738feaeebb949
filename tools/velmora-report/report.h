/// What the program tells about a machine, as plain values: sections are built here and written elsewhere.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace report {

/// The machine does not give the value.
using Absent = std::monostate;

/// A number with two decimal places, such as 12.34, as the whole number of its hundredths.
struct Hundredths {
  std::int64_t number = 0;

  bool operator==(const Hundredths&) const = default;
};

/// One value; texts are UTF-8. Whoever writes a report visits it, so that a new kind cannot be forgotten.
using Value = std::variant<Absent, std::string, std::uint64_t, std::int64_t, Hundredths, bool>;

/// The value of a text, which is absent when the library gives the empty one.
Value TextValue(std::wstring_view text);

/// The value of a number, which is absent when the library gives 0 for not knowing it.
Value NumberValue(std::uint64_t number);

/// One thing that a section tells.
struct Row {
  std::string key;    ///< for programs: lower case with underscores, and the unit where there is one
  std::string label;  ///< for people
  Value value;
  std::string unit;  ///< what follows the value for people; empty when it has none
};

using Rows = std::vector<Row>;

/// Things of one kind that a machine may have several of, such as memory modules.
struct List {
  std::string key;
  std::string item_title;   ///< what people call one of them, such as "Module"
  std::vector<Rows> items;  ///< in the library's order
};

/// One part of the machine.
struct Section {
  std::string key;
  std::string title;
  std::string verdict;  ///< the one sentence that a person wants to read first; empty when there is none
  Rows rows;
  std::vector<List> lists;
};

using Report = std::vector<Section>;

}  // namespace report
