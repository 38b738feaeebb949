/// The os contract about time: the machine's clock, which sleeping advances.
#include "platform/os/clock.h"

#include "simulator/session.h"

using simulator::Entered;
using simulator::Fault;

namespace velmora::os {

std::int64_t SystemTime() {
  Entered call("SystemTime");
  if (call.fault != Fault::kNone) return 0;
  const auto& clock = call.session.machine.clock;
  if (!clock) call.session.ReportUnscripted("SystemTime", "the clock");
  return clock ? clock->now : 0;
}

void Sleep(std::uint32_t milliseconds) {
  Entered call("Sleep", milliseconds);
  if (call.fault != Fault::kNone) return;
  if (auto& clock = call.session.machine.clock) clock->Advance(milliseconds);
}

}  // namespace velmora::os
