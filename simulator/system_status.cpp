/// Power and memory of a machine.
#include "platform/os/system_status.h"

#include "simulator/failing.h"

using simulator::Entered;
using simulator::Fault;
using simulator::Succeed;

namespace velmora::os {

bool GetSystemPowerStatus(PowerStatus& status) {
  Entered call("GetSystemPowerStatus");
  if (call.fault == Fault::kEmpty) return true;
  if (call.fault != Fault::kNone) return Succeed(simulator::kInjectedError);
  auto& power = call.session.machine.power;
  if (!power) return Succeed(simulator::Unscripted(call.session, "GetSystemPowerStatus", "power"));
  if (power->fails_next > 0) {
    --power->fails_next;
    return Succeed(kErrorGeneralFailure);
  }
  status = {.ac_line_status = power->ac_line_status,
            .battery_flag = power->battery_flag,
            .battery_life_percent = power->battery_life_percent,
            .system_status_flag = power->system_status_flag,
            .battery_life_time = power->battery_life_time,
            .battery_full_life_time = power->battery_full_life_time};
  return true;
}

bool GlobalMemoryStatusEx(MemoryStatus& status) {
  Entered call("GlobalMemoryStatusEx", status.length);
  if (call.fault == Fault::kEmpty) return true;
  if (call.fault != Fault::kNone) return Succeed(simulator::kInjectedError);
  const auto& memory = call.session.machine.memory_status;
  if (!memory) return Succeed(simulator::Unscripted(call.session, "GlobalMemoryStatusEx", "memory status"));
  if (status.length != sizeof status) return Succeed(kErrorInvalidParameter);
  if (memory->error != 0) return Succeed(memory->error);
  status.memory_load = memory->load_percent;
  status.total_physical = memory->total_physical;
  status.available_physical = memory->available_physical;
  status.total_page_file = memory->total_page_file;
  status.available_page_file = memory->available_page_file;
  return true;
}

}  // namespace velmora::os
