#include "platform/os/system_status.h"

#include <windows.h>

#include <cstddef>

namespace velmora::os {

static_assert(sizeof(PowerStatus) == sizeof(SYSTEM_POWER_STATUS));
static_assert(offsetof(PowerStatus, ac_line_status) == offsetof(SYSTEM_POWER_STATUS, ACLineStatus));
static_assert(offsetof(PowerStatus, battery_flag) == offsetof(SYSTEM_POWER_STATUS, BatteryFlag));
static_assert(offsetof(PowerStatus, battery_life_percent) ==
              offsetof(SYSTEM_POWER_STATUS, BatteryLifePercent));
static_assert(offsetof(PowerStatus, battery_life_time) == offsetof(SYSTEM_POWER_STATUS, BatteryLifeTime));
static_assert(offsetof(PowerStatus, battery_full_life_time) ==
              offsetof(SYSTEM_POWER_STATUS, BatteryFullLifeTime));

static_assert(sizeof(MemoryStatus) == sizeof(MEMORYSTATUSEX));
static_assert(offsetof(MemoryStatus, length) == offsetof(MEMORYSTATUSEX, dwLength));
static_assert(offsetof(MemoryStatus, memory_load) == offsetof(MEMORYSTATUSEX, dwMemoryLoad));
static_assert(offsetof(MemoryStatus, total_physical) == offsetof(MEMORYSTATUSEX, ullTotalPhys));
static_assert(offsetof(MemoryStatus, available_physical) == offsetof(MEMORYSTATUSEX, ullAvailPhys));
static_assert(offsetof(MemoryStatus, available_virtual) == offsetof(MEMORYSTATUSEX, ullAvailVirtual));

bool GetSystemPowerStatus(PowerStatus& status) {
  return ::GetSystemPowerStatus(reinterpret_cast<SYSTEM_POWER_STATUS*>(&status)) != FALSE;
}

bool GlobalMemoryStatusEx(MemoryStatus& status) {
  if (status.length != sizeof status) {  // not every system looks at it
    ::SetLastError(ERROR_INVALID_PARAMETER);
    return false;
  }
  return ::GlobalMemoryStatusEx(reinterpret_cast<MEMORYSTATUSEX*>(&status)) != FALSE;
}

}  // namespace velmora::os
