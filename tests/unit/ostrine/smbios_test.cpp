#include "ostrine/common/smbios.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "smbios_builder.h"

namespace ostrine::smbios {
namespace {

using test::AppendEnd;
using test::AppendStructure;
using test::ByteVector;
using test::LaptopTable;

std::vector<Structure> Walk(const TableView& table) {
  std::vector<Structure> structures;
  StructureWalker walker(table);
  while (const auto structure = walker.Next()) structures.push_back(*structure);
  return structures;
}

std::vector<int> Types(const TableView& table) {
  std::vector<int> types;
  for (const Structure& structure : Walk(table)) types.push_back(structure.Type());
  return types;
}

TEST(Smbios, GivesTheStructuresInTheirOrderUpToTheEndOfTable) {
  ByteVector table = LaptopTable();
  test::AppendBios(table);  // beyond the end
  EXPECT_EQ(Types({table, {}}), (std::vector{0, 1, 2, 32, 4, 127}));
}

TEST(Smbios, GoesOnPastAnEndOfTableStructureWhileTheStatedCountIsNotReached) {
  ByteVector table;
  AppendEnd(table);
  test::AppendBios(table);
  test::AppendBios(table);
  EXPECT_EQ(Types({table, 2}), (std::vector{127, 0}));
}

TEST(Smbios, GivesNoMoreStructuresThanTheTableIsSaidToHave) {
  const ByteVector table = LaptopTable();
  EXPECT_EQ(Types({table, 3}), (std::vector{0, 1, 2}));
  EXPECT_EQ(Types({table, 0}), std::vector<int>{});
  EXPECT_EQ(Types({table, 60000}), (std::vector{0, 1, 2, 32, 4, 127}));
}

TEST(Smbios, ReadsHeaderAndLittleEndianFieldsAtTheirOffsets) {
  ByteVector table;
  AppendStructure(table, 17, 0x1234, {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88});
  const auto structure = FirstOfType({table, {}}, 17);
  ASSERT_TRUE(structure);
  EXPECT_EQ(structure->Type(), 17);
  EXPECT_EQ(structure->Handle(), 0x1234);
  EXPECT_EQ(structure->Formatted().size(), 12u);
  EXPECT_EQ(structure->U8(4), 0x11);
  EXPECT_EQ(structure->U16(4), 0x2211);
  EXPECT_EQ(structure->U32(8), 0x88776655u);
  EXPECT_EQ(structure->U64(4), 0x8877665544332211u);
}

TEST(Smbios, HasNoFieldThatDoesNotLieWhollyWithinTheStructuresLength) {
  ByteVector table;
  AppendStructure(table, 17, 1, {1, 1, 1, 1}, {"text"});  // length 8
  const auto structure = FirstOfType({table, {}}, 17);
  ASSERT_TRUE(structure);
  EXPECT_TRUE(structure->U8(7));
  EXPECT_FALSE(structure->U8(8));
  EXPECT_TRUE(structure->U16(6));
  EXPECT_FALSE(structure->U16(7));
  EXPECT_TRUE(structure->U32(4));
  EXPECT_FALSE(structure->U32(5));
  EXPECT_TRUE(structure->U64(0));
  EXPECT_FALSE(structure->U64(1));
  EXPECT_FALSE(structure->U64(SIZE_MAX));
  EXPECT_FALSE(structure->U8(SIZE_MAX));
  EXPECT_EQ(structure->Text(7), "text");
  EXPECT_EQ(structure->Text(8), "");
}

TEST(Smbios, CountsStringsFromOne) {
  ByteVector table;
  AppendStructure(table, 1, 1, {2, 0, 3, 255}, {"first", "second"});
  const auto structure = FirstOfType({table, {}}, 1);
  ASSERT_TRUE(structure);
  EXPECT_EQ(structure->String(1), "first");
  EXPECT_EQ(structure->String(2), "second");
  EXPECT_EQ(structure->Text(4), "second");
}

TEST(Smbios, HasNoStringForNumberZeroOrPastTheLast) {
  ByteVector table;
  AppendStructure(table, 1, 1, {2, 0, 3, 255}, {"first", "second"});
  AppendStructure(table, 2, 2, {1});
  const auto with = FirstOfType({table, {}}, 1);
  const auto without = FirstOfType({table, {}}, 2);
  ASSERT_TRUE(with && without);
  EXPECT_EQ(with->Text(5), "");
  EXPECT_EQ(with->Text(6), "");
  EXPECT_EQ(with->Text(7), "");
  EXPECT_EQ(without->Text(4), "");
}

TEST(Smbios, LeavesTextsAsTheFirmwareHasThem) {
  ByteVector table;
  AppendStructure(table, 1, 1, {1, 2}, {"  blanks  ", "\xE5\x8D\x8E\x01\xFF"});
  const auto structure = FirstOfType({table, {}}, 1);
  ASSERT_TRUE(structure);
  EXPECT_EQ(structure->Text(4), "  blanks  ");
  EXPECT_EQ(structure->Text(5), "\xE5\x8D\x8E\x01\xFF");
}

TEST(Smbios, StopsAtALengthBelowFour) {
  for (std::uint8_t length = 0; length < 4; ++length) {
    ByteVector table;
    test::AppendBios(table);
    const std::size_t second = table.size();
    test::AppendBoard(table, 2, 0x0A, "TM2019");
    AppendEnd(table);
    table[second + 1] = length;
    EXPECT_EQ(Types({table, {}}), std::vector{0}) << "length " << int{length};
  }
}

TEST(Smbios, StopsAtALengthPastTheTablesEnd) {
  const ByteVector whole{3, 6, 0, 0, 0xAA, 0xBB};
  EXPECT_EQ(Types({whole, {}}), std::vector{3});
  const ByteVector cut{3, 7, 0, 0, 0xAA, 0xBB};
  EXPECT_EQ(Types({cut, {}}), std::vector<int>{});
}

TEST(Smbios, GivesAStructureWithoutDoubleZeroAsTheLastWithItsWholeTexts) {
  ByteVector table{1, 6, 0, 0, 1, 2};
  for (const char letter : std::string("whole\0cut", 9)) table.push_back(static_cast<std::uint8_t>(letter));
  const auto structures = Walk({table, {}});
  ASSERT_EQ(structures.size(), 1u);
  EXPECT_EQ(structures[0].Text(4), "whole");
  EXPECT_EQ(structures[0].Text(5), "");
}

TEST(Smbios, HasNoStringsAfterAnEmptyOneAndFindsTheNextStructureAfterTheDoubleZero) {
  ByteVector table{1, 6, 0, 0, 1, 2, 0, 't', 'e', 'x', 't', 0, 0};
  AppendEnd(table);
  const auto structures = Walk({table, {}});
  ASSERT_EQ(structures.size(), 2u);
  EXPECT_EQ(structures[0].Text(4), "");
  EXPECT_EQ(structures[0].Text(5), "");
  EXPECT_EQ(structures[1].Type(), kEndOfTable);
}

TEST(Smbios, GivesNothingForAnEmptyTable) { EXPECT_EQ(Types({}), std::vector<int>{}); }

/// What a structure says, in values of its own.
struct Said {
  explicit Said(const Structure& structure)
      : formatted(structure.Formatted().begin(), structure.Formatted().end()) {
    for (unsigned int number = 1; number <= 255; ++number) {
      texts.emplace_back(structure.String(static_cast<std::uint8_t>(number)));
    }
  }
  ByteVector formatted;
  std::vector<std::string> texts;
};

TEST(Smbios, SaysOfATableCutAnywhereOnlyWhatTheWholeTableSays) {
  const ByteVector whole = LaptopTable();
  std::vector<Said> expected;
  for (const Structure& structure : Walk({whole, {}})) expected.emplace_back(structure);

  for (std::size_t size = 0; size < whole.size(); ++size) {
    SCOPED_TRACE(size);
    const ByteVector cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const auto structures = Walk({cut, {}});
    ASSERT_LE(structures.size(), expected.size());
    for (std::size_t i = 0; i < structures.size(); ++i) {
      const Said said(structures[i]);
      EXPECT_EQ(said.formatted, expected[i].formatted);
      for (std::size_t t = 0; t < said.texts.size(); ++t) {
        EXPECT_TRUE(said.texts[t].empty() || said.texts[t] == expected[i].texts[t]) << said.texts[t];
      }
      // Only the last structure can have been harmed.
      if (i + 1 < structures.size()) {
        EXPECT_EQ(said.texts, expected[i].texts);
      }
    }
  }
}

}  // namespace
}  // namespace ostrine::smbios
