#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// The baseboard and the BIOS. File key `baseboard`.
struct Baseboard {
  Text product;
  Text manufacturer;
  Text version;
  Text serial_number;
  Text bios_version;
  Text bios_manufacturer;
  Text bios_release_date;

  bool operator==(const Baseboard&) const = default;
};

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

}  // namespace simulator
