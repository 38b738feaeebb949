/// Which keys of a machine file hold which members of a machine. One list serves reading, writing and
/// filling: an archive has a member `Field(key, member)` that does the one thing it is for.
#pragma once

#include "simulator/machine.h"

namespace simulator {

template <class Archive>
void Fields(Archive& archive, Baseboard& baseboard) {
  archive.Field("product", baseboard.product);
  archive.Field("manufacturer", baseboard.manufacturer);
  archive.Field("version", baseboard.version);
  archive.Field("serial_number", baseboard.serial_number);
  archive.Field("bios_version", baseboard.bios_version);
  archive.Field("bios_manufacturer", baseboard.bios_manufacturer);
  archive.Field("bios_release_date", baseboard.bios_release_date);
}

template <class Archive>
void Fields(Archive& archive, Machine& machine) {
  archive.Field("name", machine.name);
  archive.Field("baseboard", machine.baseboard);
}

}  // namespace simulator
