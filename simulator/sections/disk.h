#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// One disk, in the order of the disk numbers.
struct Disk {
  Text media_type;  ///< "Fixed hard disk media" for a fixed disk
  Text caption;
  Text serial_number;
  Text firmware;
  std::optional<std::uint64_t> total;             ///< bytes
  std::optional<std::uint64_t> remaining;         ///< bytes
  std::optional<std::uint64_t> vendor_total;      ///< bytes
  std::optional<std::uint64_t> vendor_megabytes;  ///< decimal megabytes
  std::optional<std::uint32_t> is_ssd;            ///< 1 solid state, 0 rotating
  bool refuses_opening = false;

  bool operator==(const Disk&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Disk& disk) {
  archive.Field("media_type", disk.media_type);
  archive.Field("caption", disk.caption);
  archive.Field("serial_number", disk.serial_number);
  archive.Field("firmware", disk.firmware);
  archive.Field("total", disk.total);
  archive.Field("remaining", disk.remaining);
  archive.Field("vendor_total", disk.vendor_total);
  archive.Field("vendor_megabytes", disk.vendor_megabytes);
  archive.Field("is_ssd", disk.is_ssd);
  archive.Field("refuses_opening", disk.refuses_opening);
}

}  // namespace simulator
