#include "devices/inf_source.h"

#include <gtest/gtest.h>

#include <string>

namespace velmora::devices {
namespace {

const std::string kMarked = "%Codec% = Install, HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_7B2D22D6";
const std::string kForeign = "%Codec% = Install, HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA22D6";

/// The line that gives the file away; "none" for none.
std::string Scan(const std::string& file) {
  ForeignModelScan scan;
  scan.Take(file);
  return scan.Finish().value_or("none");
}

TEST(InfScan, FindsNothingInAFileWithoutModels) {
  EXPECT_EQ(Scan(""), "none");
  EXPECT_EQ(Scan("\n\n\n"), "none");
  EXPECT_EQ(Scan("[Version]\nClass = MEDIA\n"), "none");
}

TEST(InfScan, FindsNothingWhenEveryModelIsTheMakers) {
  EXPECT_EQ(Scan("[Models]\n" + kMarked + "\n" + kMarked + "\n[Other]\n"), "none");
}

TEST(InfScan, FindsAModelWithoutTheMark) { EXPECT_EQ(Scan("[Models]\n" + kForeign + "\n"), kForeign); }

TEST(InfScan, FindsTheFirstModelOfTheRunThatLacksTheMark) {
  EXPECT_EQ(Scan(kMarked + "\n" + kForeign + "\n" + kForeign + " second\n"), kForeign);
}

TEST(InfScan, EndsWithTheFirstUnbrokenRun) {
  EXPECT_EQ(Scan(kMarked + "\n; a word between\n" + kForeign + "\n"), "none");
  EXPECT_EQ(Scan(kMarked + "\n\n" + kForeign + "\n"), "none") << "an empty line breaks the run too";
}

TEST(InfScan, PassesOverWhateverComesBeforeTheRun) {
  EXPECT_EQ(Scan("one\n\nSUBSYS_7B2D\n" + kForeign), kForeign);
}

TEST(InfScan, TakesALastLineWithoutALineEnd) {
  EXPECT_EQ(Scan(kForeign), kForeign);
  EXPECT_EQ(Scan(kMarked + "\n" + kForeign), kForeign);
  EXPECT_EQ(Scan(kMarked), "none");
}

TEST(InfScan, HeedsLetterCase) {
  EXPECT_EQ(Scan("hdaudio\\func_01&ven_10ec\n"), "none");
  const std::string small_mark = "HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&subsys_7b2d\n";
  EXPECT_EQ(Scan(small_mark) + "\n", small_mark);
}

TEST(InfScan, FindsThePhrasesAnywhereInALineAndInAnyOrder) {
  EXPECT_EQ(Scan("SUBSYS_7B2D before AUDIO\\FUNC_01&VEN_10EC"), "none");
  EXPECT_EQ(Scan("AUDIO\\FUNC_01&VEN_10EC"), "AUDIO\\FUNC_01&VEN_10EC");
  EXPECT_EQ(Scan("INTELAUDIO\\FUNC_01&VEN_10ECx"), "INTELAUDIO\\FUNC_01&VEN_10ECx");
}

TEST(InfScan, TakesNoOtherFunctionOrVendorForAModel) {
  EXPECT_EQ(Scan("HDAUDIO\\FUNC_02&VEN_10EC\nHDAUDIO\\FUNC_01&VEN_8086\n"), "none");
}

TEST(InfScan, EndsLinesAtTheNewlineOnlyAndKeepsTheCarriageReturn) {
  EXPECT_EQ(Scan(kMarked + "\r\n" + kForeign + "\r\n"), kForeign + "\r");
  EXPECT_EQ(Scan(kMarked + "\r" + kForeign), "none") << "that is one line, and it has the mark";
}

TEST(InfScan, FindsNothingInAFileOfWideCharacters) {
  std::string wide = "\xFF\xFE";
  for (const char c : kForeign + "\n") wide += {c, '\0'};
  EXPECT_EQ(Scan(wide), "none");
}

TEST(InfScan, ReadsPastZeroBytes) {
  const std::string zero("\0", 1);
  EXPECT_EQ(Scan(zero + kForeign + zero + "\n"), zero + kForeign + zero);
  EXPECT_EQ(Scan("AUDIO\\FUNC_01" + zero + "&VEN_10EC\n"), "none");
}

TEST(InfScan, GivesTheSameHoweverTheFileIsCut) {
  const std::string file = "[Models]\r\n" + kMarked + "\r\n" + kForeign + "\r\n" + kMarked + "\r\n";
  for (std::size_t size = 1; size <= file.size(); ++size) {
    ForeignModelScan scan;
    for (std::size_t at = 0; at < file.size() && scan.Take(std::string_view(file).substr(at, size));
         at += size) {
    }
    EXPECT_EQ(scan.Finish(), kForeign + "\r") << size << " bytes at a time";
  }
}

TEST(InfScan, SaysWhenItNeedsNoMore) {
  ForeignModelScan scan;
  EXPECT_TRUE(scan.Take(kMarked));
  EXPECT_TRUE(scan.Take("\nother")) << "that line may still name a model";
  EXPECT_FALSE(scan.Take("\n"));
  EXPECT_FALSE(scan.Take(kForeign + "\n"));
  EXPECT_EQ(scan.Finish(), std::nullopt);
}

TEST(InfScan, CutsALineThatNoFileShouldHave) {
  const std::string file = kForeign + std::string(200'000, 'x') + "\n";
  EXPECT_EQ(Scan(file), file.substr(0, kMostBytesOfLine));
  const std::string far = std::string(200'000, 'x') + kForeign;
  EXPECT_EQ(Scan(far), far.substr(0, kMostBytesOfLine));
}

TEST(InfScan, ReadsALineOfAGigabyte) {
  const std::string piece(1 << 20, 'x');
  ForeignModelScan scan;
  for (int i = 0; i < 1024; ++i) ASSERT_TRUE(scan.Take(piece));
  ASSERT_TRUE(scan.Take("AUDIO\\FUNC_01&VEN_10EC"));
  EXPECT_EQ(scan.Finish(), std::string(kMostBytesOfLine, 'x'));
}

TEST(InfScan, FindsTheMarkHoweverFarBehindTheModelItStands) {
  EXPECT_EQ(Scan(kForeign + std::string(200'000, 'x') + "SUBSYS_7B2D\n"), "none");
}

TEST(PhraseSearchInPieces, FindsAPhraseThatEveryByteCuts) {
  PhraseSearch search("abac");
  for (const char c : std::string("ababac")) {
    EXPECT_FALSE(search.IsFound());
    search.Take({&c, 1});
  }
  EXPECT_TRUE(search.IsFound());
}

TEST(PhraseSearchInPieces, ForgetsTheTextWhenAnotherBegins) {
  PhraseSearch search("ab");
  search.Take("a");
  search.Restart();
  search.Take("b");
  EXPECT_FALSE(search.IsFound());
  search.Take("ab");
  EXPECT_TRUE(search.IsFound());
  search.Restart();
  EXPECT_FALSE(search.IsFound());
}

TEST(InfName, IsBareWithoutAnyPathInIt) {
  EXPECT_TRUE(IsBareFileName(L"oem8.inf"));
  EXPECT_TRUE(IsBareFileName(L"a file..inf"));
  for (const wchar_t* const name :
       {L"", L".", L"..", L"..\\oem8.inf", L"../oem8.inf", L"C:oem8.inf", L"C:\\oem8.inf", L"\\oem8.inf",
        L"sub\\oem8.inf", L"oem8.inf:stream", L"\\\\host\\share\\oem8.inf", L"oem8.inf\\"}) {
    EXPECT_FALSE(IsBareFileName(name)) << name;
  }
}

}  // namespace
}  // namespace velmora::devices
