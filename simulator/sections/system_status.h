#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// The system's power status. File key `power`.
struct Power {
  std::uint32_t fails_next = 0;  ///< how many of the next questions fail
  std::uint8_t ac_line_status = 255;
  std::uint8_t battery_flag = 255;
  std::uint8_t battery_life_percent = 255;
  std::uint8_t system_status_flag = 0;
  std::uint32_t battery_life_time = 0xFFFFFFFF;
  std::uint32_t battery_full_life_time = 0xFFFFFFFF;

  bool operator==(const Power&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Power& power) {
  archive.Field("fails_next", power.fails_next);
  archive.Field("ac_line_status", power.ac_line_status);
  archive.Field("battery_flag", power.battery_flag);
  archive.Field("battery_life_percent", power.battery_life_percent);
  archive.Field("system_status_flag", power.system_status_flag);
  archive.Field("battery_life_time", power.battery_life_time);
  archive.Field("battery_full_life_time", power.battery_full_life_time);
}

/// How much memory the system has and uses, in bytes. File key `memory_status`.
struct MemoryLoad {
  Error error = 0;
  std::uint32_t load_percent = 0;
  std::uint64_t total_physical = 0;
  std::uint64_t available_physical = 0;
  std::uint64_t total_page_file = 0;
  std::uint64_t available_page_file = 0;

  bool operator==(const MemoryLoad&) const = default;
};

template <class Archive>
void Fields(Archive& archive, MemoryLoad& memory) {
  archive.Field("error", memory.error);
  archive.Field("load_percent", memory.load_percent);
  archive.Field("total_physical", memory.total_physical);
  archive.Field("available_physical", memory.available_physical);
  archive.Field("total_page_file", memory.total_page_file);
  archive.Field("available_page_file", memory.available_page_file);
}

/// The system clock. File key `clock`. Sleeping advances it.
struct Clock {
  std::int64_t now = 0;  ///< units of 100 nanoseconds since 1970-01-01 UTC

  void Advance(std::uint32_t milliseconds) { now += std::int64_t{milliseconds} * 10'000; }

  bool operator==(const Clock&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Clock& clock) {
  archive.Field("now", clock.now);
}

}  // namespace simulator
