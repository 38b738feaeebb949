#include "velmora-report/sections.h"

#include "velmora-report/audio_section.h"
#include "velmora-report/baseboard_section.h"
#include "velmora-report/biometric_section.h"
#include "velmora-report/cpu_section.h"
#include "velmora-report/disk_section.h"
#include "velmora-report/failing_drivers_section.h"
#include "velmora-report/keyboard_section.h"
#include "velmora-report/memory_section.h"
#include "velmora-report/network_section.h"
#include "velmora-report/networkcard_section.h"
#include "velmora-report/vediocard_section.h"

namespace report {

Report ReadMachine() {
  return {
      BaseboardSection(),   CpuSection(),     MemorySection(),         DiskSection(),
      VediocardSection(),   AudioSection(),   BiometricSection(),      KeyboardSection(),
      NetworkCardSection(), NetworkSection(), FailingDriversSection(),
  };
}

}  // namespace report
