#include "velmora-report/sections.h"

#include "velmora-report/baseboard_section.h"
#include "velmora-report/cpu_section.h"
#include "velmora-report/disk_section.h"
#include "velmora-report/failing_drivers_section.h"
#include "velmora-report/memory_section.h"
#include "velmora-report/vediocard_section.h"

namespace report {

Report ReadMachine() {
  return {
      BaseboardSection(), CpuSection(),       MemorySection(),
      DiskSection(),      VediocardSection(), FailingDriversSection(),
  };
}

}  // namespace report
