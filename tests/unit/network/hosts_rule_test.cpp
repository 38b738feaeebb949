#include "network/hosts_rule.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/support/naive_network.h"

namespace {

using velmora::network::HostsRule;

bool IsChanged(std::string_view file, std::size_t piece = 4096) {
  HostsRule rule;
  for (std::size_t at = 0; at < file.size(); at += piece) {
    if (rule.Read(file.substr(at, piece))) return true;
  }
  return rule.IsChanged();
}

TEST(HostsRule, TakesAFileOfCommentsAndBlankLinesAsUnchanged) {
  EXPECT_FALSE(IsChanged(""));
  EXPECT_FALSE(IsChanged("\n\n"));
  EXPECT_FALSE(IsChanged("# Copyright\n#\n\n    \n# end"));
  EXPECT_FALSE(IsChanged("# Copyright\r\n#\r\n\r\n    \r\n# end\r\n"));
}

TEST(HostsRule, TakesAnEntryAsAChangeWhereverItStands) {
  EXPECT_TRUE(IsChanged("127.0.0.1 localhost"));
  EXPECT_TRUE(IsChanged("# a\r\n   127.0.0.1 localhost\r\n# b\r\n"));
  EXPECT_TRUE(IsChanged("# a\n\n#\nx"));
}

TEST(HostsRule, SkipsBlanksBeforeAComment) { EXPECT_FALSE(IsChanged("   # a\n # b")); }

TEST(HostsRule, DoesNotSkipTabs) {
  EXPECT_TRUE(IsChanged("\t# a"));
  EXPECT_TRUE(IsChanged("  \t# a"));
  EXPECT_TRUE(IsChanged("\t\n"));
  EXPECT_FALSE(IsChanged("#\t127.0.0.1"));
}

TEST(HostsRule, TakesACarriageReturnAsPartOfALinesEndOnlyBeforeItsLineFeed) {
  EXPECT_FALSE(IsChanged("  \r\n#\r\n"));
  EXPECT_TRUE(IsChanged("  \r"));
  EXPECT_TRUE(IsChanged("\r#\n"));
  EXPECT_TRUE(IsChanged("\r\r\n"));
  EXPECT_FALSE(IsChanged("# a\rb\r\r\n"));
}

TEST(HostsRule, TakesAMarkOfAnEncodingAsACharacterLikeAnyOther) {
  EXPECT_TRUE(IsChanged("\xEF\xBB\xBF# a"));
  EXPECT_TRUE(IsChanged(std::string_view("\xFF\xFE#\0", 4)));
  EXPECT_TRUE(IsChanged(std::string_view("\0", 1)));
}

TEST(HostsRule, GivesTheSameAnswerHoweverTheFileIsCut) {
  for (const std::size_t piece : {1U, 2U, 3U}) {
    EXPECT_FALSE(IsChanged("  # a\r\n \r\n#", piece));
    EXPECT_TRUE(IsChanged("  # a\r\n \r#", piece));
  }
}

TEST(HostsRule, KnowsTheAnswerAtTheFirstOtherCharacter) {
  HostsRule rule;
  EXPECT_FALSE(rule.Read("# comment\n  "));
  EXPECT_TRUE(rule.Read("1"));
  EXPECT_TRUE(rule.Read("\n# and comments only"));
  EXPECT_TRUE(rule.IsChanged());
}

TEST(HostsRuleProperty, IsWhatASlowReadingOfTheRuleGives) {
  static constexpr std::string_view kLikely = "##  \r\n\n\r\tx";
  std::mt19937 random(75);
  for (int round = 0; round < 50'000; ++round) {
    std::string file(random() % 12, '\0');
    for (char& c : file) c = kLikely[random() % kLikely.size()];
    const std::size_t piece = 1 + random() % 4;
    ASSERT_EQ(IsChanged(file, piece), velmora::testing::NaiveHostsChanged(file))
        << testing::PrintToString(file);
  }
}

}  // namespace
