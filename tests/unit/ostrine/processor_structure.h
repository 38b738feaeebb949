/// Builds SMBIOS processor structures, for tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "smbios_builder.h"

namespace ostrine::test {

/// What a type 4 structure says. `length` is that of the formatted part, header included.
struct ProcessorStructure {
  std::uint8_t type = 3;
  std::string manufacturer = "Intel(R) Corporation";
  std::string version = "12th Gen Core";
  std::uint16_t external_clock = 100;
  std::uint16_t maximum_clock = 4700;
  std::uint16_t current_clock = 2100;
  std::uint8_t status = 0x41;
  std::size_t length = 0x30;
};

inline void AppendProcessor(ByteVector& table, const ProcessorStructure& processor,
                            std::uint16_t handle = 4) {
  ByteVector body(0x30 - 4);
  const auto put = [&](std::size_t offset, std::size_t width, std::uint64_t value) {
    PutNumber(body, offset - 4, width, value);
  };
  put(0x04, 1, 1);
  put(0x05, 1, processor.type);
  put(0x06, 1, 0xC6);
  put(0x07, 1, 2);
  put(0x08, 8, 0xBFEBFBFF000906A3);
  put(0x10, 1, 3);
  put(0x12, 2, processor.external_clock);
  put(0x14, 2, processor.maximum_clock);
  put(0x16, 2, processor.current_clock);
  put(0x18, 1, processor.status);
  put(0x19, 1, 1);
  put(0x1A, 6, 0xFFFFFFFFFFFF);
  put(0x23, 3, 0x10080C);
  body.resize(processor.length - 4);
  AppendStructure(table, 4, handle, body, {"U3E1", processor.manufacturer, processor.version});
}

}  // namespace ostrine::test
