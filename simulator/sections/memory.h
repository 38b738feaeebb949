#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// One memory module.
struct MemoryModule {
  Text locator;
  Text manufacturer;
  Text serial_number;
  Text part_number;
  std::optional<std::uint64_t> capacity;  ///< bytes
  std::optional<std::uint32_t> speed;     ///< MT/s

  bool operator==(const MemoryModule&) const = default;
};

template <class Archive>
void Fields(Archive& archive, MemoryModule& module) {
  archive.Field("locator", module.locator);
  archive.Field("manufacturer", module.manufacturer);
  archive.Field("serial_number", module.serial_number);
  archive.Field("part_number", module.part_number);
  archive.Field("capacity", module.capacity);
  archive.Field("speed", module.speed);
}

}  // namespace simulator
