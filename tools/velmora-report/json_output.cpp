#include "velmora-report/json_output.h"

#include <nlohmann/json.hpp>

namespace report {
namespace {

// Members keep the order in which a person reads the report.
using Json = nlohmann::ordered_json;

struct JsonValue {
  Json operator()(Absent) const { return nullptr; }
  Json operator()(Hundredths value) const { return static_cast<double>(value.number) / 100; }
  template <class Given>
  Json operator()(const Given& given) const {
    return given;
  }
};

Json RowsObject(const Rows& rows) {
  Json object = Json::object();
  for (const Row& row : rows) object[row.key] = std::visit(JsonValue(), row.value);
  return object;
}

Json SectionObject(const Section& section) {
  Json object = RowsObject(section.rows);
  if (!section.verdict.empty()) object["verdict"] = section.verdict;
  for (const List& list : section.lists) {
    Json& items = object[list.key] = Json::array();
    for (const Rows& item : list.items) items.push_back(RowsObject(item));
  }
  return object;
}

}  // namespace

std::string WriteJson(const Report& report) {
  Json json = Json::object();
  for (const Section& section : report) json[section.key] = SectionObject(section);
  return json.dump(2) + "\n";
}

}  // namespace report
