/// Builds SMBIOS memory device structures, for tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "smbios_builder.h"

namespace ostrine::test {

/// What a type 17 structure says. `length` is that of the formatted part, header included.
struct MemoryStructure {
  std::uint16_t array = 0x1000;
  std::uint16_t size = 8192;  ///< in MiB
  std::uint32_t extended_size = 0;
  std::string locator = "ChannelA-DIMM0";
  std::string manufacturer = "Samsung";
  std::string serial_number = "416433E9";
  std::string part_number = "M471A1K43DB1-CWE    ";
  std::uint16_t speed = 3200;
  std::uint16_t configured_speed = 2933;
  std::uint32_t extended_speed = 0;
  std::uint32_t extended_configured_speed = 0;
  std::size_t length = 0x5C;
};

inline void AppendMemory(ByteVector& table, const MemoryStructure& memory, std::uint16_t handle) {
  ByteVector body(0x5C - 4);
  const auto put = [&](std::size_t offset, std::size_t width, std::uint64_t value) {
    PutNumber(body, offset - 4, width, value);
  };
  std::vector<std::string> strings;
  const auto put_text = [&](std::size_t offset, const std::string& text) {
    if (text.empty()) return;
    strings.push_back(text);
    put(offset, 1, strings.size());
  };
  put(0x04, 2, memory.array);
  put(0x06, 2, 0xFFFE);
  put(0x08, 2, 64);
  put(0x0A, 2, 64);
  put(0x0C, 2, memory.size);
  put(0x0E, 1, 0x0D);
  put_text(0x10, memory.locator);
  put(0x12, 1, 0x1A);
  put(0x13, 2, 0x0080);
  put(0x15, 2, memory.speed);
  put_text(0x17, memory.manufacturer);
  put_text(0x18, memory.serial_number);
  put_text(0x1A, memory.part_number);
  put(0x1C, 4, memory.extended_size);
  put(0x20, 2, memory.configured_speed);
  put(0x54, 4, memory.extended_speed);
  put(0x58, 4, memory.extended_configured_speed);
  body.resize(memory.length - 4);
  AppendStructure(table, 17, handle, body, strings);
}

/// A type 16 structure of an array with this use, as the standard numbers it: 3 is system memory.
inline void AppendMemoryArray(ByteVector& table, std::uint16_t handle, std::uint8_t use) {
  AppendStructure(table, 16, handle, {0x03, use, 0x03, 0x00, 0x00, 0x00, 0x04, 0xFE, 0xFF, 0x02, 0x00});
}

inline ByteVector MemoryTable(const std::vector<MemoryStructure>& devices) {
  ByteVector table;
  AppendBios(table);
  AppendMemoryArray(table, 0x1000, 3);
  std::uint16_t handle = 0x1100;
  for (const MemoryStructure& memory : devices) AppendMemory(table, memory, handle++);
  AppendEnd(table);
  return table;
}

}  // namespace ostrine::test
