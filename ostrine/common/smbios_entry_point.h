/// What stands before an SMBIOS table: the entry point of the firmware, or the header that Windows writes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "ostrine/common/smbios.h"

namespace ostrine::smbios {

/// Entry points have at most this many bytes.
inline constexpr std::size_t kEntryPointLimit = 32;

struct EntryPoint {
  /// Length of the table in bytes; of a 64-bit entry point, the most that it may be.
  std::uint32_t table_length = 0;
  /// Number of structures; 0 when the entry point does not say.
  std::uint16_t structure_count = 0;
};

/// Reads a 64-bit ("_SM3_"), 32-bit ("_SM_") or bare ("_DMI_") entry point. Nothing for any other bytes, for
/// too few of them, for a length that does not fit them, or for a wrong checksum.
std::optional<EntryPoint> ParseEntryPoint(Bytes bytes);

/// The table that `entry_point` describes within `bytes`, which may be fewer or more than it says.
TableView DescribedTable(const EntryPoint& entry_point, Bytes bytes);

/// The table behind the 8-byte header of Windows's RawSMBIOSData; nothing when the header is cut or claims
/// more bytes than follow it.
std::optional<TableView> ParseRawSmbiosData(Bytes bytes);

}  // namespace ostrine::smbios
