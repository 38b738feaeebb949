#include "system/name_query.h"

#include <gtest/gtest.h>

#include <random>

#include "ostrine/common/wql.h"

namespace {

using velmora::NameQuery;

constexpr const wchar_t* kHead = L"WHERE Name='";

TEST(NameQuery, PutsTheNameBetweenItsQuotesAsItStands) {
  EXPECT_EQ(NameQuery(kHead, L"ssh"), L"WHERE Name='ssh'");
  EXPECT_EQ(NameQuery(kHead, L""), L"WHERE Name=''");
  EXPECT_EQ(NameQuery(kHead, L"50% \"a_b\" \u00E4"), L"WHERE Name='50% \"a_b\" \u00E4'");
}

TEST(NameQuery, IsNoneForANameThatEndsItsQuotes) {
  EXPECT_EQ(NameQuery(kHead, L"it's"), std::nullopt);
  EXPECT_EQ(NameQuery(kHead, L"'"), std::nullopt);
  EXPECT_EQ(NameQuery(kHead, L"it\\'s"), std::nullopt);
  EXPECT_EQ(NameQuery(kHead, std::wstring_view(L"a\0b", 3)), std::nullopt);
}

TEST(NameQuery, IsNoneForANameWhoseLastBackslashWouldTakeTheQuoteIn) {
  EXPECT_EQ(NameQuery(kHead, L"\\"), std::nullopt);
  EXPECT_EQ(NameQuery(kHead, L"a\\"), std::nullopt);
  EXPECT_EQ(NameQuery(kHead, L"a\\\\\\"), std::nullopt);
  EXPECT_EQ(NameQuery(kHead, L"a\\\\"), L"WHERE Name='a\\\\'");
  EXPECT_EQ(NameQuery(kHead, L"a\\b"), L"WHERE Name='a\\b'");
}

TEST(NameQuery, AsksForOneNameOrForNothingWhateverTheNameIs) {
  constexpr std::wstring_view kUnits(L"'\\\"%_[ =()ORANDaz\0\n\u00E4", 21);
  std::mt19937 random(5);
  int asked = 0;
  for (int i = 0; i < 50'000; ++i) {
    std::wstring name(random() % 12, L' ');
    for (wchar_t& unit : name) unit = kUnits[random() % kUnits.size()];
    const auto query = NameQuery(L"SELECT State FROM Win32_Service WHERE Name='", name);
    if (!query) continue;
    const auto parsed = ostrine::ParseWql(*query);
    if (!parsed)
      continue;  // it is asked, and is no query: a backslash stands before what it cannot stand for
    ++asked;
    ASSERT_EQ(parsed->conditions.size(), 1U);
    ASSERT_EQ(parsed->conditions[0].comparison, ostrine::WqlOperator::kEqual);
  }
  EXPECT_GT(asked, 5'000);
}

}  // namespace
