#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "ostrine/common/baseboard.h"
#include "smbios_builder.h"

namespace ostrine {
namespace {

using test::ByteVector;

std::optional<std::string> FactOf(const ByteVector& table, BaseboardFact fact) {
  const auto text = BaseboardText({table, {}}, fact);
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

TEST(BaseboardText, GivesEachFactAsTheFirmwareHasIt) {
  const ByteVector table = test::LaptopTable();
  EXPECT_EQ(FactOf(table, BaseboardFact::kProduct), "TM2019");
  EXPECT_EQ(FactOf(table, BaseboardFact::kManufacturer), "TIMI");
  EXPECT_EQ(FactOf(table, BaseboardFact::kVersion), "V20");
  EXPECT_EQ(FactOf(table, BaseboardFact::kSerialNumber), "  21K/00123-4");
  EXPECT_EQ(FactOf(table, BaseboardFact::kBiosVersion), "1.07.05 ");
  EXPECT_EQ(FactOf(table, BaseboardFact::kBiosManufacturer), "INSYDE Corp.");
  EXPECT_EQ(FactOf(table, BaseboardFact::kBiosReleaseDate), "03/14/2023");
}

TEST(BaseboardText, PrefersTheMotherboardToAnEarlierBoard) {
  ByteVector table;
  test::AppendBoard(table, 1, 0x0B, "riser");
  test::AppendBoard(table, 2, 0x0A, "main");
  test::AppendBoard(table, 3, 0x0A, "second main");
  EXPECT_EQ(FactOf(table, BaseboardFact::kProduct), "main");
}

TEST(BaseboardText, TakesTheFirstBoardWhenNoneSaysThatItIsTheMotherboard) {
  ByteVector table;
  test::AppendStructure(table, 2, 1, {1, 2}, {"maker", "short"});  // too short to name its kind
  test::AppendBoard(table, 2, 0x0B, "riser");
  EXPECT_EQ(FactOf(table, BaseboardFact::kProduct), "short");
}

TEST(BaseboardText, IsEmptyWhereTheStructureIsThereWithoutTheText) {
  ByteVector table;
  test::AppendStructure(table, 2, 1, {0, 9});  // no maker, a product that does not exist, nothing more
  EXPECT_EQ(FactOf(table, BaseboardFact::kManufacturer), "");
  EXPECT_EQ(FactOf(table, BaseboardFact::kProduct), "");
  EXPECT_EQ(FactOf(table, BaseboardFact::kSerialNumber), "");
}

TEST(BaseboardText, IsNothingWhereTheStructureIsMissing) {
  ByteVector board_only;
  test::AppendBoard(board_only, 1, 0x0A, "main");
  EXPECT_EQ(FactOf(board_only, BaseboardFact::kBiosVersion), std::nullopt);
  ByteVector bios_only;
  test::AppendBios(bios_only);
  EXPECT_EQ(FactOf(bios_only, BaseboardFact::kProduct), std::nullopt);
  EXPECT_EQ(FactOf({}, BaseboardFact::kProduct), std::nullopt);
}

}  // namespace
}  // namespace ostrine
