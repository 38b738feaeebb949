#include "velmora-report/baseboard_section.h"

#include <velmora/baseboard.h>

namespace report {

Section BaseboardSection() {
  CBaseboard board;
  return {
      .key = "baseboard",
      .title = "Board and BIOS",
      .rows =
          {
              {"product", "Board product", TextValue(board.GetBaseboardProduct())},
              {"manufacturer", "Board maker", TextValue(board.GetBaseboardManufacturer())},
              {"version", "Board version", TextValue(board.GetBaseboardVersion())},
              {"serial_number", "Board serial number", TextValue(board.GetBaseboardSerialNumber())},
              {"bios_version", "BIOS version", TextValue(board.GetBIOSVersion())},
              {"bios_manufacturer", "BIOS maker", TextValue(board.GetBIOSManufacturer())},
              {"bios_release_date", "BIOS date", TextValue(board.GetBIOSReaseDate())},
          },
  };
}

}  // namespace report
