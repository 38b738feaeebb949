#include "ostrine/common/smbios_entry_point.h"

#include <algorithm>
#include <string_view>

namespace ostrine::smbios {
namespace {

constexpr std::size_t kBareSize = 0x0F;
constexpr std::size_t k32BitSize = 0x1F;
constexpr std::size_t k64BitSize = 0x18;
constexpr std::size_t kBareWithin32Bit = 0x10;

bool StartsWith(Bytes bytes, std::string_view anchor) {
  return anchor.size() <= bytes.size() && std::equal(anchor.begin(), anchor.end(), bytes.begin());
}

bool SumsToZero(Bytes bytes) {
  std::uint8_t sum = 0;
  for (const std::uint8_t byte : bytes) sum = static_cast<std::uint8_t>(sum + byte);
  return sum == 0;
}

/// Little-endian number of `width` bytes; the caller has checked that they are there.
std::uint32_t LittleEndianAt(Bytes bytes, std::size_t offset, std::size_t width) {
  std::uint32_t value = 0;
  for (std::size_t i = width; i-- > 0;) value = value << 8 | bytes[offset + i];
  return value;
}

std::optional<EntryPoint> ParseBare(Bytes bytes) {
  if (bytes.size() < kBareSize || !StartsWith(bytes, "_DMI_")) return std::nullopt;
  if (!SumsToZero(bytes.first(kBareSize))) return std::nullopt;
  return EntryPoint{.table_length = LittleEndianAt(bytes, 0x06, 2),
                    .structure_count = static_cast<std::uint16_t>(LittleEndianAt(bytes, 0x0C, 2))};
}

std::optional<EntryPoint> Parse32Bit(Bytes bytes) {
  if (bytes.size() < k32BitSize) return std::nullopt;
  const std::size_t length = bytes[5];
  // Version 2.1 of the standard misprinted the length as one byte less, and firmware followed it.
  if (length < k32BitSize - 1 || length > bytes.size()) return std::nullopt;
  if (!SumsToZero(bytes.first(length))) return std::nullopt;
  return ParseBare(bytes.subspan(kBareWithin32Bit));
}

std::optional<EntryPoint> Parse64Bit(Bytes bytes) {
  if (bytes.size() < k64BitSize) return std::nullopt;
  const std::size_t length = bytes[6];
  if (length < k64BitSize || length > bytes.size()) return std::nullopt;
  if (!SumsToZero(bytes.first(length))) return std::nullopt;
  return EntryPoint{.table_length = LittleEndianAt(bytes, 0x0C, 4)};
}

}  // namespace

std::optional<EntryPoint> ParseEntryPoint(Bytes bytes) {
  if (StartsWith(bytes, "_SM3_")) return Parse64Bit(bytes);
  if (StartsWith(bytes, "_SM_")) return Parse32Bit(bytes);
  return ParseBare(bytes);
}

TableView DescribedTable(const EntryPoint& entry_point, Bytes bytes) {
  TableView table{.bytes = bytes.first(std::min<std::size_t>(entry_point.table_length, bytes.size()))};
  if (entry_point.structure_count != 0) table.structure_count = entry_point.structure_count;
  return table;
}

std::optional<TableView> ParseRawSmbiosData(Bytes bytes) {
  // One byte each of calling method, major version, minor version and revision, then the table's length.
  constexpr std::size_t kHeaderSize = 8;
  if (bytes.size() < kHeaderSize) return std::nullopt;
  const std::size_t length = LittleEndianAt(bytes, 4, 4);
  const Bytes rest = bytes.subspan(kHeaderSize);
  if (length > rest.size()) return std::nullopt;
  return TableView{.bytes = rest.first(length)};
}

}  // namespace ostrine::smbios
