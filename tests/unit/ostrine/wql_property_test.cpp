#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "ostrine/common/wql.h"
#include "ostrine/common/wql_text.h"

// Random queries are written out as text, read back, and evaluated twice: by the reader and by an evaluator
// that is too simple and too slow to be wrong.

namespace ostrine {
namespace {

using Engine = std::mt19937;
using Records = std::vector<WqlRecord>;

constexpr int kQueries = 20000;
const wchar_t* const kNames[] = {L"Name", L"State", L"Caption", L"ProcessId"};

std::size_t Below(Engine& random, std::size_t limit) {
  return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

/// Few letters, so that texts and patterns often meet.
std::wstring RandomText(Engine& random, std::wstring_view letters, std::size_t longest) {
  std::wstring text(Below(random, longest + 1), L' ');
  for (wchar_t& c : text) c = letters[Below(random, letters.size())];
  return text;
}

WqlValue RandomValue(Engine& random) {
  switch (Below(random, 4)) {
    case 0:
      return {};
    case 1:
      return static_cast<std::uint64_t>(Below(random, 3));
    default:
      return RandomText(random, L"abA_\\'", 3);
  }
}

std::wstring RandomCase(Engine& random, std::wstring word) {
  for (wchar_t& c : word) {
    const bool is_letter = (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
    if (is_letter && Below(random, 2) == 0) c = static_cast<wchar_t>(c ^ 0x20);
  }
  return word;
}

std::wstring Quoted(std::wstring_view text) {
  std::wstring quoted = L"'";
  for (const wchar_t c : text) {
    if (c == L'\\' || c == L'\'') quoted += L'\\';
    quoted += c;
  }
  return quoted + L"'";
}

WqlCondition RandomCondition(Engine& random) {
  WqlCondition condition;
  condition.property = kNames[Below(random, std::size(kNames))];
  condition.comparison = static_cast<WqlOperator>(Below(random, 5));
  if (condition.comparison == WqlOperator::kLike) {
    condition.literal = RandomText(random, L"ab%_\\'", 4);
  } else if (condition.comparison == WqlOperator::kEqual || condition.comparison == WqlOperator::kNotEqual) {
    do {
      condition.literal = RandomValue(random);
    } while (condition.literal.index() == 0);
  }
  return condition;
}

std::wstring Written(Engine& random, const WqlCondition& condition) {
  const auto literal = [&] {
    const auto* text = std::get_if<std::wstring>(&condition.literal);
    return text ? Quoted(*text) : TextOf(condition.literal);
  };
  std::wstring text = RandomCase(random, condition.property);
  switch (condition.comparison) {
    case WqlOperator::kEqual:
      return text + L" = " + literal();
    case WqlOperator::kNotEqual:
      return text + L"<>" + literal();
    case WqlOperator::kLike:
      return text + RandomCase(random, L" like ") + literal();
    case WqlOperator::kIsNull:
      return text + RandomCase(random, L" is null");
    case WqlOperator::kIsNotNull:
      return text + RandomCase(random, L" is not null");
  }
  return text;
}

bool NaiveLike(std::wstring_view text, std::wstring_view pattern) {
  if (pattern.empty()) return text.empty();
  if (pattern[0] == L'%') {
    return NaiveLike(text, pattern.substr(1)) || (!text.empty() && NaiveLike(text.substr(1), pattern));
  }
  if (text.empty()) return false;
  return (pattern[0] == L'_' || FoldCase(pattern[0]) == FoldCase(text[0])) &&
         NaiveLike(text.substr(1), pattern.substr(1));
}

std::wstring Lowered(std::wstring text) {
  for (wchar_t& c : text) {
    if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c + 32);
  }
  return text;
}

bool NaivelyHolds(const WqlCondition& condition, const WqlValue& value) {
  if (condition.comparison == WqlOperator::kIsNull) return value.index() == 0;
  if (condition.comparison == WqlOperator::kIsNotNull) return value.index() != 0;
  if (value.index() != condition.literal.index()) return false;
  const bool is_text = value.index() == 1;
  const std::wstring have = Lowered(TextOf(value));
  const std::wstring want = Lowered(TextOf(condition.literal));
  switch (condition.comparison) {
    case WqlOperator::kEqual:
      return have == want;
    case WqlOperator::kNotEqual:
      return have != want;
    default:
      return is_text && NaiveLike(have, want);
  }
}

const WqlRecord* NaivelyFirst(const Records& records, const std::vector<WqlCondition>& conditions) {
  for (const WqlRecord& record : records) {
    bool all = true;
    for (const WqlCondition& condition : conditions) {
      all = all && NaivelyHolds(condition, FindProperty(record, condition.property));
    }
    if (all) return &record;
  }
  return nullptr;
}

TEST(WqlProperty, AgreesWithANaiveEvaluatorOnRandomTablesAndQueries) {
  Engine random(20240117);
  int matched = 0;
  for (int round = 0; round < kQueries; ++round) {
    Records records(Below(random, 6));
    for (WqlRecord& record : records) {
      for (const wchar_t* name : kNames) record.emplace_back(RandomCase(random, name), RandomValue(random));
    }
    std::vector<WqlCondition> conditions(Below(random, 4));
    const std::wstring property = kNames[Below(random, std::size(kNames))];
    std::wstring text =
        RandomCase(random, L"select ") + property + RandomCase(random, L" from ") + L"Win32_T";
    const wchar_t* joint = L" where ";
    for (WqlCondition& condition : conditions) {
      condition = RandomCondition(random);
      text += RandomCase(random, joint) + Written(random, condition);
      joint = L" and ";
    }

    const auto query = ParseWql(text);
    ASSERT_TRUE(query) << testing::PrintToString(text);
    const WqlValue selected = SelectFirst(*query, [&](const WqlVisitor& visit) {
      for (const WqlRecord& record : records) {
        if (!visit([&](std::wstring_view name) { return FindProperty(record, name); })) return;
      }
    });
    const WqlRecord* expected = NaivelyFirst(records, conditions);
    ASSERT_EQ(selected, expected ? FindProperty(*expected, property) : WqlValue{})
        << testing::PrintToString(text);
    matched += expected != nullptr;
  }
  EXPECT_GT(matched, kQueries / 10);
  EXPECT_LT(matched, kQueries * 9 / 10);
}

TEST(WqlProperty, MatchesRandomPatternsAsANaiveMatcherDoes) {
  Engine random(7);
  int matched = 0;
  for (int round = 0; round < kQueries; ++round) {
    const std::wstring text = RandomText(random, L"abB", 10);
    const std::wstring pattern = RandomText(random, L"ab%_%", 8);
    ASSERT_EQ(MatchesLike(text, pattern), NaiveLike(text, pattern))
        << testing::PrintToString(text) << testing::PrintToString(pattern);
    matched += MatchesLike(text, pattern);
  }
  EXPECT_GT(matched, kQueries / 20);
  EXPECT_LT(matched, kQueries * 19 / 20);
}

TEST(WqlProperty, NeverSelectsAnotherRowByAQuotedRandomName) {
  Engine random(11);
  int rejected = 0;
  for (int round = 0; round < kQueries; ++round) {
    const std::wstring name = RandomText(random, L"ab'\\ %_=<>AND or like NULL", 12);
    const auto query = ParseWql(L"SELECT Name FROM t WHERE Name='" + name + L"'");
    if (!query) {
      ++rejected;
      continue;
    }
    // Whatever the name did, the first condition still asks for a name that stands at its front.
    const auto& literal = std::get<std::wstring>(query->conditions.at(0).literal);
    ASSERT_LE(literal.size(), name.size());
    ASSERT_EQ(query->conditions[0].property, L"Name");
    ASSERT_EQ(query->conditions[0].comparison, WqlOperator::kEqual);
  }
  EXPECT_GT(rejected, 0);
}

TEST(WqlProperty, SurvivesRandomlyDamagedQueries) {
  Engine random(3);
  const std::wstring whole =
      L"SELECT MACAddress FROM Win32_NetworkAdapter WHERE MACAddress IS NOT NULL and Name='x'";
  int accepted = 0;
  for (int round = 0; round < kQueries; ++round) {
    std::wstring text = whole;
    for (std::size_t changes = 1 + Below(random, 3); changes > 0; --changes) {
      text[Below(random, text.size())] = static_cast<wchar_t>(Below(random, 128));
    }
    const auto query = ParseWql(text);
    if (!query) continue;
    ++accepted;
    ASSERT_EQ(query->conditions.size(), 2u);
  }
  EXPECT_GT(accepted, 0);
  EXPECT_LT(accepted, kQueries);
}

}  // namespace
}  // namespace ostrine
