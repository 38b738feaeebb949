// Any text as a query over a small table. A query that is read must mean the same when it is written out
// anew, and the row that it selects must meet its conditions.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ostrine/common/wql.h"

namespace {

using namespace ostrine;

void Require(bool condition) {
  if (!condition) std::abort();
}

const WqlRecord kRows[] = {
    {{L"Name", L"Audiosrv"}, {L"State", L"Running"}, {L"ProcessId", std::uint64_t{4}}},
    {{L"Name", L"WpnUserService_4a1f2"}, {L"State", WqlValue{}}, {L"ProcessId", std::uint64_t{812}}},
    {{L"Name", L"\u00DCber 'x' \\ %"}, {L"State", L""}},
};

std::wstring Quoted(const std::wstring& text) {
  std::wstring quoted = L"'";
  for (const wchar_t c : text) {
    if (c == L'\\' || c == L'\'') quoted += L'\\';
    quoted += c;
  }
  return quoted + L"'";
}

std::wstring Written(const WqlQuery& query) {
  std::wstring text = L"SELECT " + query.property + L" FROM " + query.class_name;
  const wchar_t* joint = L" WHERE ";
  for (const WqlCondition& condition : query.conditions) {
    constexpr const wchar_t* kOperators[] = {L" = ", L" <> ", L" LIKE ", L" IS NULL", L" IS NOT NULL"};
    text += joint + condition.property + kOperators[static_cast<int>(condition.comparison)];
    const auto* literal = std::get_if<std::wstring>(&condition.literal);
    text += literal ? Quoted(*literal) : TextOf(condition.literal);
    joint = L" AND ";
  }
  return text;
}

WqlRow RowOf(const WqlRecord& record) {
  return [&record](std::wstring_view property) { return FindProperty(record, property); };
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::wstring text(data, data + size);
  const auto query = ParseWql(text);
  if (!query) return 0;

  const auto again = ParseWql(Written(*query));
  Require(again && again->property == query->property && again->class_name == query->class_name);
  Require(again->conditions.size() == query->conditions.size());
  for (std::size_t i = 0; i < query->conditions.size(); ++i) {
    Require(again->conditions[i].property == query->conditions[i].property);
    Require(again->conditions[i].comparison == query->conditions[i].comparison);
    Require(again->conditions[i].literal == query->conditions[i].literal);
  }

  const WqlRecord* first = nullptr;
  for (const WqlRecord& record : kRows) {
    if (!first && MatchesConditions(*query, RowOf(record))) first = &record;
  }
  const WqlValue selected = SelectFirst(*query, [](const WqlVisitor& visit) {
    for (const WqlRecord& record : kRows) {
      if (!visit(RowOf(record))) return;
    }
  });
  Require(selected == (first ? FindProperty(*first, query->property) : WqlValue{}));
  return 0;
}
