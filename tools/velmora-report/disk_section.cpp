#include "velmora-report/disk_section.h"

#include <velmora/disk.h>

namespace report {
namespace {

/// Whether a disk is solid state; absent when it does not say.
Value SolidState(CDisk& disks, int index) {
  int is_ssd = 0;
  if (disks.JudgeSSd(index, is_ssd) == 0) return Absent{};
  return is_ssd != 0;
}

Rows DiskRows(CDisk& disks, int index) {
  return {
      {"caption", "Model", TextValue(disks.GetCaption(index))},
      {"serial_number", "Serial number", TextValue(disks.GetSerialNumber(index))},
      {"firmware", "Firmware", TextValue(disks.GetFirmwareRevision(index))},
      {"media_type", "Media type", TextValue(disks.GetMediaType(index))},
      {"solid_state", "Solid state", SolidState(disks, index)},
      {"total_bytes", "Capacity", NumberValue(disks.GetTotalCapacity(index)), "bytes"},
      {"free_bytes", "Free", NumberValue(disks.GetRemainCapacity(index)), "bytes"},
      {"nominal_bytes", "Nominal capacity", NumberValue(disks.GetTotalVendorCapacity(index)), "bytes"},
      {"nominal_megabytes", "Nominal capacity", NumberValue(disks.GetTotalVendorCapacityM(index)), "MB"},
  };
}

}  // namespace

Section DiskSection() {
  CDisk disks;
  const int count = disks.GetPhysicDiskNumbers();
  List list{.key = "disks", .item_title = "Disk"};
  for (int i = 0; i < count; ++i) list.items.push_back(DiskRows(disks, i));
  return {
      .key = "disk",
      .title = "Fixed disks",
      .rows =
          {
              {"count", "Fixed disks", NumberValue(static_cast<std::uint64_t>(count))},
              {"total_bytes", "Capacity of all", NumberValue(disks.GetAllTotalCapacity()), "bytes"},
              {"free_bytes", "Free on all", NumberValue(disks.GetAllRemainCapacity()), "bytes"},
          },
      .lists = {std::move(list)},
  };
}

}  // namespace report
