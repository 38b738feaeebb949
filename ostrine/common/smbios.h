/// The structures of the firmware's system-management (SMBIOS) table.
///
/// A pure reader over bytes that it neither owns nor trusts: nothing is allocated, every length is checked
/// against the bytes that are left, and a whole walk costs time in proportion to the table, whatever the
/// table holds. What is read points into the table and lives as long as the table's bytes do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace ostrine::smbios {

using Bytes = std::span<const std::uint8_t>;

/// Structure types that this library asks for, and the one that ends a table.
enum StructureType : std::uint8_t {
  kBios = 0,
  kSystem = 1,
  kBaseboard = 2,
  kProcessor = 4,
  kCache = 7,
  kMemoryArray = 16,
  kMemoryDevice = 17,
  kPortableBattery = 22,
  kEndOfTable = 127,
};

/// A table's bytes, with the number of structures where the firmware states it.
struct TableView {
  Bytes bytes;
  std::optional<std::size_t> structure_count = std::nullopt;
};

/// One structure: its formatted bytes (the four of the header included) and the texts that follow them.
///
/// Offsets count from the structure's first byte, as the SMBIOS standard prints them. A field that does not
/// lie wholly within the formatted bytes is absent: older firmware writes shorter structures.
class Structure {
 public:
  static constexpr std::size_t kHeaderSize = 4;

  /// `formatted` has at least kHeaderSize bytes. `strings` holds the zero-terminated texts one after another.
  Structure(Bytes formatted, std::string_view strings) : formatted_(formatted), strings_(strings) {}

  std::uint8_t Type() const { return formatted_[0]; }
  std::uint16_t Handle() const { return static_cast<std::uint16_t>(formatted_[2] | formatted_[3] << 8); }
  Bytes Formatted() const { return formatted_; }

  std::optional<std::uint8_t> U8(std::size_t offset) const { return Field<std::uint8_t>(offset); }
  std::optional<std::uint16_t> U16(std::size_t offset) const { return Field<std::uint16_t>(offset); }
  std::optional<std::uint32_t> U32(std::size_t offset) const { return Field<std::uint32_t>(offset); }
  std::optional<std::uint64_t> U64(std::size_t offset) const { return Field<std::uint64_t>(offset); }

  /// Text whose number stands at `offset`, byte for byte as the firmware has it; empty when there is none.
  std::string_view Text(std::size_t offset) const;

  /// Text `number`, counted from 1; empty for 0, for a number past the last text, and for a text that the
  /// table's end cut off.
  std::string_view String(std::uint8_t number) const;

 private:
  template <typename Number>
  std::optional<Number> Field(std::size_t offset) const {
    if (offset > formatted_.size() || sizeof(Number) > formatted_.size() - offset) return std::nullopt;
    std::uint64_t value = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;) value = value << 8 | formatted_[offset + i];
    return static_cast<Number>(value);
  }

  Bytes formatted_;
  std::string_view strings_;
};

/// Gives the structures of a table in their order.
class StructureWalker {
 public:
  explicit StructureWalker(const TableView& table) : rest_(table.bytes), left_(table.structure_count) {}

  /// The next structure, or nothing at the table's end: after as many structures as the table is said to
  /// have, or where the bytes make no structure any more. The end-of-table structure is given, and ends a
  /// table whose count is not known; some older firmware, which states the count, has it in the table's
  /// middle.
  std::optional<Structure> Next();

 private:
  Bytes rest_;
  std::optional<std::size_t> left_;
};

/// The table's first structure of `type`.
std::optional<Structure> FirstOfType(const TableView& table, std::uint8_t type);

}  // namespace ostrine::smbios
