/// What tests ask of the class of audio devices.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "platform/ostrine/hal.h"

namespace ostrine::test {

inline constexpr unsigned int kAudioClass = 5;

/// The number of devices that a fresh table holds; nothing when there is no table.
inline std::optional<std::uint32_t> AudioDevicesInTable() {
  void* table = nullptr;
  if (HalInit(kAudioClass, &table) == 0 || table == nullptr) return std::nullopt;
  std::uint32_t count = 0;
  std::memcpy(&count, static_cast<const char*>(table) + 4, sizeof count);
  std::free(table);
  return count;
}

/// The number of devices that the class's one query gives; nothing when it fails.
inline std::optional<std::uint32_t> AudioDevicesByQuery() {
  std::uint32_t count = 0;
  if (HalQueryInformation(kAudioClass, nullptr, 0, &count, sizeof count, nullptr) == 0) return std::nullopt;
  return count;
}

}  // namespace ostrine::test
