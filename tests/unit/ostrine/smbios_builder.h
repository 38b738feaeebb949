/// Builds SMBIOS tables byte by byte, for tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace ostrine::test {

using ByteVector = std::vector<std::uint8_t>;

/// Appends a structure: `body` is what follows the four header bytes; each text must be non-empty.
inline void AppendStructure(ByteVector& table, std::uint8_t type, std::uint16_t handle,
                            const ByteVector& body, const std::vector<std::string>& strings = {}) {
  table.push_back(type);
  table.push_back(static_cast<std::uint8_t>(4 + body.size()));
  table.push_back(static_cast<std::uint8_t>(handle & 0xFF));
  table.push_back(static_cast<std::uint8_t>(handle >> 8));
  table.insert(table.end(), body.begin(), body.end());
  for (const std::string& text : strings) {
    table.insert(table.end(), text.begin(), text.end());
    table.push_back(0);
  }
  if (strings.empty()) table.push_back(0);
  table.push_back(0);
}

inline void AppendBios(ByteVector& table) {
  AppendStructure(table, 0, 0x0000,
                  {1, 2, 0x00, 0xE0, 3, 0xFF, 0x80, 0x98, 0x8B, 0x3F, 0x01, 0x00, 0x00, 0x00},
                  {"INSYDE Corp.", "1.07.05 ", "03/14/2023"});
}

/// A type 2 structure of maker, product, version and serial number; `board_type` as the standard numbers it.
inline void AppendBoard(ByteVector& table, std::uint16_t handle, std::uint8_t board_type,
                        std::string_view product) {
  AppendStructure(table, 2, handle, {1, 2, 3, 4, 0, 0x09, 0, 0x03, 0x00, board_type, 0},
                  {"TIMI", std::string(product), "V20", "  21K/00123-4"});
}

inline void AppendEnd(ByteVector& table) { AppendStructure(table, 127, 0xFEFF, {}); }

/// A laptop's table in small: BIOS, system, board, a structure without texts, processor, end.
inline ByteVector LaptopTable() {
  ByteVector table;
  AppendBios(table);
  AppendStructure(table, 1, 0x0001, {1, 2, 3, 4, 0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0,
                                     1, 2, 3, 4, 5,    6,    7,    8,    6,    5,    5},
                  {"TIMI", "Redmi Book", "V20", "SN-1", "SKU-7"});
  AppendBoard(table, 0x0002, 0x0A, "TM2019");
  AppendStructure(table, 32, 0x0003, {0, 0, 0, 0, 0, 0, 0});
  AppendStructure(table, 4, 0x0004,
                  {1, 3, 0xC6, 2, 0xA4, 0x06, 0x09, 0x00, 0xFF, 0xFB, 0xEB, 0xBF, 3, 0x8A, 0x64, 0},
                  {"U3E1", "Intel(R) Corporation", "12th Gen Core"});
  AppendEnd(table);
  return table;
}

/// Sets the byte at `checksum_offset` so that the `size` bytes from `start` sum to zero.
inline void FixChecksum(ByteVector& bytes, std::size_t start, std::size_t size, std::size_t checksum_offset) {
  bytes[checksum_offset] = 0;
  unsigned int sum = 0;
  for (std::size_t i = start; i < start + size; ++i) sum += bytes[i];
  bytes[checksum_offset] = static_cast<std::uint8_t>(0x100 - (sum & 0xFF));
}

inline void PutNumber(ByteVector& bytes, std::size_t offset, std::size_t width, std::uint64_t value) {
  for (std::size_t i = 0; i < width; ++i)
    bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i) & 0xFF);
}

inline void PutText(ByteVector& bytes, std::size_t offset, std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) bytes[offset + i] = static_cast<std::uint8_t>(text[i]);
}

inline ByteVector EntryPoint64(std::uint32_t table_length) {
  ByteVector bytes(0x18);
  PutText(bytes, 0, "_SM3_");
  PutNumber(bytes, 0x06, 5, 0x0100040318);  // length 0x18, version 3.4, revision 0, entry point revision 1
  PutNumber(bytes, 0x0C, 4, table_length);
  PutNumber(bytes, 0x10, 8, 0x7F0000000);
  FixChecksum(bytes, 0, bytes.size(), 5);
  return bytes;
}

inline ByteVector EntryPoint32(std::uint16_t table_length, std::uint16_t structure_count) {
  ByteVector bytes(0x1F);
  PutText(bytes, 0, "_SM_");
  PutNumber(bytes, 0x05, 3, 0x08021F);  // length 0x1F, version 2.8
  PutText(bytes, 0x10, "_DMI_");
  PutNumber(bytes, 0x16, 2, table_length);
  PutNumber(bytes, 0x18, 4, 0x000E0000);
  PutNumber(bytes, 0x1C, 2, structure_count);
  bytes[0x1E] = 0x28;
  FixChecksum(bytes, 0x10, 0x0F, 0x15);
  FixChecksum(bytes, 0, bytes.size(), 4);
  return bytes;
}

/// The header of Windows's RawSMBIOSData with `table` behind it.
inline ByteVector RawSmbiosData(const ByteVector& table) {
  ByteVector bytes{0, 3, 4, 0, 0, 0, 0, 0};
  PutNumber(bytes, 4, 4, table.size());
  bytes.insert(bytes.end(), table.begin(), table.end());
  return bytes;
}

}  // namespace ostrine::test
