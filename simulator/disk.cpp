#include "simulator/device_class.h"

namespace simulator {
namespace {

Information AnswerDisk(const Disk& disk, unsigned int information_id) {
  switch (information_id) {
    case 0:
      return WideOrRefused(disk.media_type);
    case 1:
      return WideOrRefused(disk.caption);
    case 2:
      return WideOrRefused(disk.serial_number);
    case 3:
      return NumberOrRefused(disk.total);
    case 4:
      return NumberOrRefused(disk.remaining);
    case 5:
      return NumberOrRefused(disk.vendor_total);
    case 6:
      return NumberOrRefused(disk.vendor_megabytes);
    case 9:
      return WideOrRefused(disk.firmware);
    case 10:
      return NumberOrRefused(disk.is_ssd);
    default:
      return Refused{};
  }
}

std::optional<Information> QueryDisk(const Question& question) {
  const auto& disks = question.machine.disks;
  if (!disks) return std::nullopt;
  if (question.device_number) return AnswerDisk(disks->at(*question.device_number), question.information_id);
  if (question.information_id == 7) return static_cast<std::uint32_t>(disks->size());
  return Refused{};
}

std::size_t CountDisks(const Machine& machine) { return machine.disks ? machine.disks->size() : 0; }

/// Without a script any disk opens: the question that follows is what the machine has no answer for.
bool Opens(const Machine& machine, std::uint32_t number) {
  if (!machine.disks) return true;
  return number < CountDisks(machine) && !(*machine.disks)[number].refuses_opening;
}

}  // namespace

const DeviceClassScript kDiskScript{.device_class = velmora::hal::DeviceClass::kDisk,
                                    .query = QueryDisk,
                                    .count_entries = CountDisks,
                                    .opens = Opens};

}  // namespace simulator
