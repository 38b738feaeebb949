#include "system/name_query.h"

#include <gtest/gtest.h>

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

}  // namespace
