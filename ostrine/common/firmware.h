/// The firmware's SMBIOS table as the running system hands it out; each system has its own reader.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "ostrine/common/smbios.h"

namespace ostrine {

/// Larger tables are refused unread. The 32-bit entry point cannot describe more than 64 KiB and the tables
/// of big servers stay below 256 KiB, so a megabyte is only ever passed by something that is not a table.
inline constexpr std::size_t kFirmwareTableLimit = std::size_t{1} << 20;

/// Owns the bytes that the system gave, with the table's place within them.
class FirmwareTable {
 public:
  /// `table` lies within `bytes`.
  FirmwareTable(std::vector<std::uint8_t> bytes, const smbios::TableView& table)
      : bytes_(std::move(bytes)), table_(table) {}

  // Moving a vector keeps its bytes where they are; copying would leave the view on the other's bytes.
  FirmwareTable(FirmwareTable&&) = default;
  FirmwareTable& operator=(FirmwareTable&&) = default;
  FirmwareTable(const FirmwareTable&) = delete;
  FirmwareTable& operator=(const FirmwareTable&) = delete;
  ~FirmwareTable() = default;

  const smbios::TableView& View() const { return table_; }

 private:
  std::vector<std::uint8_t> bytes_;
  smbios::TableView table_;
};

/// Reads the table of this machine afresh; nothing when the machine has none or its bytes are not to be had.
std::optional<FirmwareTable> ReadFirmwareTable();

}  // namespace ostrine
