/// The system's battery interface: which batteries there are, and what they answer.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "ostrine/common/battery_rules.h"

namespace ostrine {

/// A battery's interface, closed with its owner.
class BatteryHandle {
 public:
  explicit BatteryHandle(const std::wstring& path) noexcept;
  BatteryHandle(const BatteryHandle&) = delete;
  BatteryHandle& operator=(const BatteryHandle&) = delete;
  ~BatteryHandle() {
    if (IsOpen()) CloseHandle(handle_);
  }

  bool IsOpen() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const noexcept { return handle_; }

 private:
  HANDLE handle_;
};

/// Paths of the battery interfaces that are present, in the system's order.
std::vector<std::wstring> BatteryPaths();

/// The battery behind the interface; none for an empty bay, for a battery that is none of the machine's own,
/// and for one that does not answer.
std::optional<Battery> AskBattery(HANDLE battery);

}  // namespace ostrine
