/// Records and numbers that cross the hardware-abstraction contract beside the five functions.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmora::hal {

/// Device classes, as every hardware-abstraction function takes them first.
enum class DeviceClass : std::uint32_t {
  kProcessor = 0,
  kBaseboard = 4,
  kAudio = 5,
  kVideo = 6,
  kDisk = 7,
  kBattery = 8,
  kMemory = 13,
  kFailingDriver = 20,
};

/// The record by which one disk is opened, asked and closed.
struct DeviceRecord {
  std::uint64_t handle = 0;  ///< 0 before HalOpenDevice; afterwards for the abstraction library's use only
  std::uint32_t number = 0;  ///< the device's number, such as 1 for the second disk
  std::uint32_t zero = 0;
};
static_assert(sizeof(DeviceRecord) == 16 && offsetof(DeviceRecord, number) == 8);

inline constexpr std::size_t kTableHeadSize = 8;         ///< bytes before a table's first entry
inline constexpr std::size_t kMemoryEntrySize = 16;      ///< bytes of one entry of the memory modules' table
inline constexpr std::size_t kFailingDriverSize = 520;   ///< bytes of one entry of the failing drivers' table
inline constexpr std::size_t kFailingDriverCountAt = 4;  ///< where that table holds its 32-bit entry count

inline constexpr std::size_t kNarrowTextSize = 260;    ///< bytes of a narrow text buffer
inline constexpr std::size_t kProcessorNameSize = 50;  ///< bytes of the processor name's buffer
inline constexpr std::size_t kWideTextSize = 520;      ///< bytes of a wide text buffer

}  // namespace velmora::hal
