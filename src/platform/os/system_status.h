/// What Velmora requires of the operating system about power and memory.
#pragma once

#include <cstdint>

namespace velmora::os {

/// SYSTEM_POWER_STATUS, 12 bytes.
struct PowerStatus {
  std::uint8_t ac_line_status;  ///< 0 on battery, 1 on mains, 255 unknown
  std::uint8_t battery_flag;    ///< bits 1 high, 2 low, 4 critical, 8 charging; 128 no battery; 255 unknown
  std::uint8_t battery_life_percent;  ///< 0 to 100; 255 unknown
  std::uint8_t system_status_flag;
  std::uint32_t battery_life_time;       ///< seconds; 0xFFFFFFFF unknown
  std::uint32_t battery_full_life_time;  ///< seconds; 0xFFFFFFFF unknown
};
static_assert(sizeof(PowerStatus) == 12);

/// Fills `status`; false with the last error on failure.
bool GetSystemPowerStatus(PowerStatus& status);

/// MEMORYSTATUSEX, 64 bytes.
struct MemoryStatus {
  std::uint32_t length;
  std::uint32_t memory_load;  ///< percent of the physical memory in use
  std::uint64_t total_physical;
  std::uint64_t available_physical;
  std::uint64_t total_page_file;
  std::uint64_t available_page_file;
  std::uint64_t total_virtual;
  std::uint64_t available_virtual;
  std::uint64_t available_extended_virtual;
};
static_assert(sizeof(MemoryStatus) == 64);

/// Fills `status`, whose length the caller has set to 64; false with the last error on failure, 87 for
/// another length. Sizes are in bytes.
bool GlobalMemoryStatusEx(MemoryStatus& status);

}  // namespace velmora::os
