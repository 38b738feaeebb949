// What GetSystemFirmwareTable gives on the machine that runs the tests.
#include <gtest/gtest.h>

#include <cstddef>
#include <optional>

#include "ostrine/common/baseboard.h"
#include "ostrine/common/firmware.h"

namespace ostrine {
namespace {

TEST(FirmwareWindows, WalksTheSystemsTableToItsEnd) {
  const auto table = ReadFirmwareTable();
  if (!table) GTEST_SKIP() << "this machine has no SMBIOS table";
  std::optional<int> last_type;
  std::size_t count = 0;
  smbios::StructureWalker walker(table->View());
  while (const auto structure = walker.Next()) {
    last_type = structure->Type();
    ++count;
  }
  EXPECT_GT(count, 1u);
  EXPECT_EQ(last_type, 127);
}

TEST(FirmwareWindows, TellsABoardsTextsExactlyWhereTheTableHasABoard) {
  const auto table = ReadFirmwareTable();
  const bool has_board = table && smbios::FirstOfType(table->View(), smbios::kBaseboard);
  EXPECT_EQ(ReadBaseboardText(BaseboardFact::kProduct).has_value(), has_board);
  EXPECT_EQ(ReadBaseboardText(BaseboardFact::kSerialNumber).has_value(), has_board);
}

}  // namespace
}  // namespace ostrine
