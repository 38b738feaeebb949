#include "velmora-report/sections.h"

#include "velmora-report/baseboard_section.h"

namespace report {

Report ReadMachine() {
  return {
      BaseboardSection(),
  };
}

}  // namespace report
