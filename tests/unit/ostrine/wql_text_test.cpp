#include "ostrine/common/wql_text.h"

#include <gtest/gtest.h>

#include <string>

namespace ostrine {
namespace {

TEST(WqlPattern, MatchesTheWholeText) {
  EXPECT_TRUE(MatchesLike(L"abc", L"ABC"));
  EXPECT_FALSE(MatchesLike(L"abc", L"ab"));
  EXPECT_FALSE(MatchesLike(L"abc", L"bc"));
  EXPECT_TRUE(MatchesLike(L"", L""));
  EXPECT_TRUE(MatchesLike(L"", L"%%"));
  EXPECT_FALSE(MatchesLike(L"", L"_"));
}

TEST(WqlPattern, TakesAPercentSignForAnyCharactersAndAnUnderscoreForOne) {
  EXPECT_TRUE(MatchesLike(L"USB\\VID_8087", L"USB%"));
  EXPECT_FALSE(MatchesLike(L"PCI\\USB", L"USB%"));
  EXPECT_TRUE(MatchesLike(L"aXbXc", L"a%b%c"));
  EXPECT_TRUE(MatchesLike(L"abab", L"%ab"));
  EXPECT_TRUE(MatchesLike(L"abc", L"_b_"));
  EXPECT_FALSE(MatchesLike(L"abc", L"__"));
  EXPECT_TRUE(MatchesLike(L"mississippi", L"m%iss%ip_i"));
  EXPECT_FALSE(MatchesLike(L"WpnUserService", L"WpnUserService_%"));
}

TEST(WqlPattern, StaysQuickOnPatternsMadeToBeSlow) {
  std::wstring pattern;
  for (int i = 0; i < 2000; ++i) pattern += L"%a";
  pattern += L"%b";
  EXPECT_FALSE(MatchesLike(std::wstring(4000, L'a'), pattern));
}

TEST(WqlCase, IsIgnoredForLettersOfEuropeanScripts) {
  EXPECT_TRUE(EqualIgnoringCase(L"\u00C4\u00D6\u00DC \u0160\u0178", L"\u00E4\u00F6\u00FC \u0161\u00FF"));
  EXPECT_TRUE(EqualIgnoringCase(L"\u0391\u0386\u03A3", L"\u03B1\u03AC\u03C2"));
  EXPECT_TRUE(EqualIgnoringCase(L"\u0411\u0401\u0490", L"\u0431\u0451\u0491"));
  EXPECT_TRUE(EqualIgnoringCase(L"\uFF21\u1EA0\u0531", L"\uFF41\u1EA1\u0561"));
}

TEST(WqlCase, CountsWhereACharacterHasNoSingleOtherCase) {
  EXPECT_FALSE(EqualIgnoringCase(L"I", L"\u0131"));
  EXPECT_FALSE(EqualIgnoringCase(L"\u0130", L"i"));
  EXPECT_FALSE(EqualIgnoringCase(L"\u00DF", L"ss"));
  EXPECT_FALSE(EqualIgnoringCase(L"\u00D7", L"\u00F7"));
  EXPECT_FALSE(EqualIgnoringCase(L"[", L"{"));
  EXPECT_FALSE(EqualIgnoringCase(L"a", L"ab"));
}

TEST(WqlCase, FoldsToACharacterThatFoldsToItself) {
  for (unsigned code = 0; code <= 0xFFFF; ++code) {
    const wchar_t folded = FoldCase(static_cast<wchar_t>(code));
    EXPECT_EQ(FoldCase(folded), folded) << code;
  }
}

}  // namespace
}  // namespace ostrine
