#include "platform/text_search.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/case_folding.h"

namespace velmora {
namespace {

TEST(CaseFolding, PairsTheLettersOfTheScriptsItKnowsAndLeavesTheRest) {
  EXPECT_EQ(FoldCase(L'A'), L'a');
  EXPECT_EQ(FoldCase(L'a'), L'a');
  EXPECT_EQ(FoldCase(L'\x00C4'), L'\x00E4') << "Latin with diaeresis";
  EXPECT_EQ(FoldCase(L'\x0178'), L'\x00FF') << "a capital that stands behind its small letter";
  EXPECT_EQ(FoldCase(L'\x03A9'), L'\x03C9') << "Greek";
  EXPECT_EQ(FoldCase(L'\x0416'), L'\x0436') << "Cyrillic";
  EXPECT_EQ(FoldCase(L'\xFF21'), L'\xFF41') << "full width";
  for (const wchar_t own : {L'0', L'@', L'[', L'\x00D7', L'\x00DF', L'\x0130', L'\x0131', L'\x4E00'}) {
    EXPECT_EQ(FoldCase(own), own);
  }
}

TEST(TextSearch, FindsTheFirstOccurrenceInEitherCase) {
  const wchar_t* text = L"PCI\\VEN_8086&ven_8086";
  EXPECT_EQ(FindIgnoringCase(text, L"ven_"), text + 4);
  EXPECT_EQ(FindIgnoringCase(text, L"pci\\ven_8086&VEN_8086"), text);
  const char* narrow = "wan miniport (IP)";
  EXPECT_EQ(FindIgnoringCase(narrow, "WAN Miniport"), narrow);
  EXPECT_EQ(FindIgnoringCase(narrow, "(ip)"), narrow + 13);
}

TEST(TextSearch, FindsNothingThatIsAbsentEmptyOrCutOff) {
  EXPECT_EQ(FindIgnoringCase(L"abc", L"abcd"), nullptr);
  EXPECT_EQ(FindIgnoringCase(L"abc", L""), nullptr);
  EXPECT_EQ(FindIgnoringCase(L"", L"a"), nullptr);
  const wchar_t* none = nullptr;
  EXPECT_EQ(FindIgnoringCase(none, L"a"), nullptr);
  EXPECT_EQ(FindIgnoringCase(L"a", none), nullptr);
  EXPECT_EQ(FindIgnoringCase("abc", "cd"), nullptr);
  EXPECT_EQ(FindIgnoringCase("abc", ""), nullptr);
}

TEST(TextSearch, FoldsNarrowTextByCharactersNotByBytes) {
  const char* text = "Gro\xC3\x9F \xC3\x84rger";
  EXPECT_EQ(FindIgnoringCase(text, "\xC3\xA4RGER"), text + 6);
}

TEST(TextSearch, MatchesABrokenByteWithItselfOnly) {
  const char* text = "a\xFE\xFF";
  EXPECT_EQ(FindIgnoringCase(text, "\xFF"), text + 2);
  EXPECT_EQ(FindIgnoringCase(text, "\xEF\xBF\xBD"), nullptr) << "the replacement character is not there";
  EXPECT_EQ(FindIgnoringCase("\xE2\x82", "\xE2\x82"), std::string("\xE2\x82")) << "cut in a character";
}

TEST(TextSearch, ComparesInEitherCase) {
  EXPECT_EQ(CompareIgnoringCase(L"Mouse", L"mOUSE"), 0);
  EXPECT_EQ(CompareIgnoringCase(L"", L""), 0);
  EXPECT_LT(CompareIgnoringCase(L"abc", L"ABD"), 0);
  EXPECT_GT(CompareIgnoringCase(L"abcd", L"ABC"), 0);
  EXPECT_LT(CompareIgnoringCase(L"", L"a"), 0);
}

TEST(TextSearch, TakesTheExtensionFromTheLastElement) {
  EXPECT_EQ(FindExtension(L"C:\\a.b\\dump.1.DMP"), std::wstring(L".DMP"));
  EXPECT_EQ(FindExtension(L"C:\\a.b\\dump"), std::wstring(L""));
  EXPECT_EQ(FindExtension(L"dump."), std::wstring(L"."));
  EXPECT_EQ(FindExtension(L""), std::wstring(L""));
}

}  // namespace
}  // namespace velmora
