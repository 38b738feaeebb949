#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "../smbios_builder.h"
#include "fake_root.h"
#include "ostrine/linux/dmi.h"

namespace ostrine {
namespace {

using test::ByteVector;
using test::FakeRoot;

constexpr const char* kEntryPoint = "sys/firmware/dmi/tables/smbios_entry_point";
constexpr const char* kTable = "sys/firmware/dmi/tables/DMI";

void WriteTables(const FakeRoot& root, const ByteVector& table = test::LaptopTable()) {
  root.Write(kEntryPoint, test::EntryPoint64(static_cast<std::uint32_t>(table.size())));
  root.Write(kTable, table);
}

void WriteCopies(const FakeRoot& root) {
  root.Write("sys/class/dmi/id/board_name", "copied name\n");
  root.Write("sys/class/dmi/id/board_vendor", "copied vendor\n");
  root.Write("sys/class/dmi/id/board_version", "copied version \n");
  root.Write("sys/class/dmi/id/board_serial", "copied serial\n");
  root.Write("sys/class/dmi/id/bios_version", "copied BIOS version\n");
  root.Write("sys/class/dmi/id/bios_vendor", "copied BIOS vendor\n");
  root.Write("sys/class/dmi/id/bios_date", "01/02/2023\n");
}

std::optional<std::string> Product(const FakeRoot& root) {
  return ReadBaseboardTextBelow(root.Path(), BaseboardFact::kProduct);
}

TEST(FirmwareDmi, TakesTheTextsFromTheTablesWhereTheyCanBeRead) {
  const FakeRoot root;
  WriteTables(root);
  WriteCopies(root);
  EXPECT_EQ(Product(root), "TM2019");
  EXPECT_EQ(ReadBaseboardTextBelow(root.Path(), BaseboardFact::kBiosReleaseDate), "03/14/2023");
}

TEST(FirmwareDmi, ReadsTheTablesOfA32BitEntryPoint) {
  const FakeRoot root;
  const ByteVector table = test::LaptopTable();
  root.Write(kEntryPoint, test::EntryPoint32(static_cast<std::uint16_t>(table.size()), 6));
  root.Write(kTable, table);
  EXPECT_EQ(Product(root), "TM2019");
  // The board is the third structure: a table that is said to have two has no board.
  root.Write(kEntryPoint, test::EntryPoint32(static_cast<std::uint16_t>(table.size()), 2));
  EXPECT_EQ(Product(root), std::nullopt);
}

TEST(FirmwareDmi, ShowsAFirmwareUpdateAtTheNextCall) {
  const FakeRoot root;
  WriteTables(root);
  EXPECT_EQ(Product(root), "TM2019");
  ByteVector updated;
  test::AppendBoard(updated, 2, 0x0A, "TM2024");
  WriteTables(root, updated);
  EXPECT_EQ(Product(root), "TM2024");
}

TEST(FirmwareDmi, FallsBackOnTheKernelsCopiesWithoutTables) {
  const FakeRoot root;
  WriteCopies(root);
  const auto text = [&](BaseboardFact fact) { return ReadBaseboardTextBelow(root.Path(), fact); };
  EXPECT_EQ(text(BaseboardFact::kProduct), "copied name");
  EXPECT_EQ(text(BaseboardFact::kManufacturer), "copied vendor");
  EXPECT_EQ(text(BaseboardFact::kVersion), "copied version ");
  EXPECT_EQ(text(BaseboardFact::kSerialNumber), "copied serial");
  EXPECT_EQ(text(BaseboardFact::kBiosVersion), "copied BIOS version");
  EXPECT_EQ(text(BaseboardFact::kBiosManufacturer), "copied BIOS vendor");
  EXPECT_EQ(text(BaseboardFact::kBiosReleaseDate), "01/02/2023");
}

TEST(FirmwareDmi, GivesAUserWithoutRightsTheCopiesExceptTheSerialNumber) {
  const FakeRoot root;
  WriteTables(root);
  WriteCopies(root);
  root.Forbid(kEntryPoint);
  root.Forbid(kTable);
  root.Forbid("sys/class/dmi/id/board_serial");
  const test::WithoutRights without_rights;
  EXPECT_FALSE(ReadFirmwareTableBelow(root.Path()));
  EXPECT_EQ(Product(root), "copied name");
  EXPECT_EQ(ReadBaseboardTextBelow(root.Path(), BaseboardFact::kBiosVersion), "copied BIOS version");
  EXPECT_EQ(ReadBaseboardTextBelow(root.Path(), BaseboardFact::kSerialNumber), std::nullopt);
}

TEST(FirmwareDmi, FallsBackWhenOneOfTheTwoFilesIsMissingOrAFolder) {
  for (const char* broken : {kEntryPoint, kTable}) {
    SCOPED_TRACE(broken);
    const FakeRoot root;
    WriteTables(root);
    WriteCopies(root);
    std::filesystem::remove(root.Path() / broken);
    EXPECT_EQ(Product(root), "copied name");
    std::filesystem::create_directory(root.Path() / broken);
    EXPECT_EQ(Product(root), "copied name");
  }
}

TEST(FirmwareDmi, FallsBackWhenTheEntryPointsChecksumIsWrong) {
  const FakeRoot root;
  WriteTables(root);
  WriteCopies(root);
  ByteVector entry_point = test::EntryPoint64(4096);
  entry_point[5] = static_cast<std::uint8_t>(entry_point[5] + 1);
  root.Write(kEntryPoint, entry_point);
  EXPECT_EQ(Product(root), "copied name");
}

TEST(FirmwareDmi, FallsBackWhenTheTableIsEmpty) {
  const FakeRoot root;
  WriteTables(root, {});
  WriteCopies(root);
  EXPECT_EQ(Product(root), "copied name");
}

TEST(FirmwareDmi, TakesATableOfAMegabyteAndRefusesAByteMore) {
  const FakeRoot root;
  WriteTables(root);
  WriteCopies(root);
  std::filesystem::resize_file(root.Path() / kTable, kFirmwareTableLimit);
  EXPECT_EQ(Product(root), "TM2019");
  std::filesystem::resize_file(root.Path() / kTable, kFirmwareTableLimit + 1);
  EXPECT_EQ(Product(root), "copied name");
}

TEST(FirmwareDmi, RefusesAnEntryPointThatIsTooLongToBeOne) {
  const FakeRoot root;
  WriteTables(root);
  WriteCopies(root);
  std::filesystem::resize_file(root.Path() / kEntryPoint, 33);
  EXPECT_EQ(Product(root), "copied name");
}

TEST(FirmwareDmi, ReadsNoFurtherThanTheEntryPointSays) {
  const FakeRoot root;
  ByteVector table;
  test::AppendBios(table);
  const auto stated = static_cast<std::uint32_t>(table.size());
  test::AppendBoard(table, 2, 0x0A, "beyond");
  root.Write(kEntryPoint, test::EntryPoint64(stated));
  root.Write(kTable, table);
  EXPECT_EQ(Product(root), std::nullopt);
  EXPECT_EQ(ReadBaseboardTextBelow(root.Path(), BaseboardFact::kBiosManufacturer), "INSYDE Corp.");
}

TEST(FirmwareDmi, SucceedsWithAnEmptyTextWhereTheBoardHasNone) {
  const FakeRoot root;
  ByteVector table;
  test::AppendStructure(table, 2, 1, {0, 0, 0, 0});
  WriteTables(root, table);
  WriteCopies(root);
  EXPECT_EQ(Product(root), "");
}

TEST(FirmwareDmi, TellsNothingOfAMachineWithoutAnyOfIt) {
  const FakeRoot root;
  EXPECT_FALSE(ReadFirmwareTableBelow(root.Path()));
  for (unsigned int id = 0; id <= 6; ++id) {
    EXPECT_EQ(ReadBaseboardTextBelow(root.Path(), static_cast<BaseboardFact>(id)), std::nullopt);
  }
}

}  // namespace
}  // namespace ostrine
