// Fans and temperatures. The kernel numbers its monitoring chips in the order in which their drivers happened
// to load, so the numbers here are counted through the chips in an order of their own, which stays the same
// from one start to the next: the processor's chip first, then the firmware's thermal zone, then all others
// by name, chips of one name by where they sit; within a chip by the number of the input.
#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "ostrine/common/natural_order.h"
#include "ostrine/linux/bus_devices.h"
#include "ostrine/linux/firmware_method.h"
#include "ostrine/linux/last_error.h"

namespace ostrine {
namespace {

struct Chip {
  Path folder;  ///< free of links
  std::string name;
};

std::size_t Rank(const std::string& name) {
  constexpr std::array<std::string_view, 5> kFirst{"coretemp", "k10temp", "zenpower", "cpu_thermal",
                                                   "acpitz"};
  return static_cast<std::size_t>(std::find(kFirst.begin(), kFirst.end(), name) - kFirst.begin());
}

bool StandsBefore(const Chip& left, const Chip& right) {
  const auto left_rank = Rank(left.name);
  const auto right_rank = Rank(right.name);
  if (left_rank != right_rank) return left_rank < right_rank;
  if (left.name != right.name) return left.name < right.name;
  // Without the last component, which is the kernel's passing number, if anything else tells them apart.
  const std::string left_place = left.folder.parent_path().string();
  const std::string right_place = right.folder.parent_path().string();
  return left_place != right_place ? ComesBefore(left_place, right_place)
                                   : ComesBefore(left.folder.string(), right.folder.string());
}

std::vector<Chip> ListChips(const Path& root) {
  const Path devices = DevicesFolder(root);
  std::vector<Chip> chips;
  if (devices.empty()) return chips;
  for (const std::string& entry : EntryNames(root / "sys/class/hwmon")) {
    Path folder = ResolveBelow(root / "sys/class/hwmon" / entry, devices);
    if (folder.empty()) continue;
    std::string name = CleanAttribute(folder / "name");
    // To ask a disk for its temperature can keep it from going to rest, or wake it.
    if (name != "drivetemp") chips.push_back({std::move(folder), std::move(name)});
  }
  std::sort(chips.begin(), chips.end(), StandsBefore);
  return chips;
}

struct Input {
  Path folder;
  std::string stem;  ///< "temp1"
};

/// The input with this number among those whose names begin with `kind`.
std::optional<Input> FindInput(const Path& root, std::string_view kind, std::uint64_t number) {
  constexpr std::string_view kSuffix = "_input";
  std::uint64_t seen = 0;
  for (const Chip& chip : ListChips(root)) {
    for (const std::string& name : EntryNames(chip.folder, kind)) {
      if (!name.ends_with(kSuffix)) continue;
      if (seen++ == number) return Input{chip.folder, name.substr(0, name.size() - kSuffix.size())};
    }
  }
  return std::nullopt;
}

/// Whether the chip, or a device that it is part of, sleeps: to read it would wake it.
bool Sleeps(const Path& folder) {
  for (Path node = folder; node.has_relative_path(); node = node.parent_path()) {
    const std::string status = CleanAttribute(node / "power/runtime_status");
    if (status == "suspended" || status == "suspending") return true;
    if (node.filename() == "devices") break;
  }
  return false;
}

struct Reading {
  std::uint32_t error = 0;
  std::int64_t value = 0;
};

Reading ReadInput(const Path& root, std::string_view kind, std::uint64_t number) {
  const auto input = FindInput(root, kind, number);
  if (!input) return {.error = kErrorNotFound};
  if (Sleeps(input->folder)) return {.error = kErrorNotReady};
  // Both states leave the last value standing.
  const bool is_broken = NumberAttribute(input->folder / (input->stem + "_fault")).value_or(0) != 0;
  const bool is_off = NumberAttribute(input->folder / (input->stem + "_enable")).value_or(1) == 0;
  if (is_broken || is_off) return {.error = kErrorInvalidData};
  const auto value = NumberAttribute(input->folder / (input->stem + "_input"));
  return value ? Reading{.value = *value} : Reading{.error = kErrorInvalidData};
}

}  // namespace

FirmwareAnswer ReadFan(const Path& root, std::uint64_t number) {
  const Reading reading = ReadInput(root, "fan", number);
  return reading.error != 0 ? FirmwareAnswer{.error = reading.error} : AnswerOf(FanReply(reading.value));
}

FirmwareAnswer ReadTemperature(const Path& root, std::uint64_t number) {
  const Reading reading = ReadInput(root, "temp", number);
  return reading.error != 0 ? FirmwareAnswer{.error = reading.error}
                            : AnswerOf(TemperatureReply(reading.value));
}

}  // namespace ostrine
