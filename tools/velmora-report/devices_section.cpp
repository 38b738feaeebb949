#include "velmora-report/devices_section.h"

#include <string>

#include "velmora-report/device_list.h"
#include "velmora-report/problem_text.h"

namespace report {
namespace {

Value TextOrAbsent(const std::string& text) {
  if (text.empty()) return Absent{};
  return text;
}

Rows DeviceRows(const ListedDevice& device) {
  return {
      {"description", "Name", TextOrAbsent(device.description)},
      {"hardware_id", "Hardware ID", TextOrAbsent(device.hardware_id)},
      {"instance_id", "Instance ID", TextOrAbsent(device.instance_id)},
      {"count", "Devices with this ID", std::uint64_t{device.count}},
      {"driver_version", "Driver version", TextOrAbsent(device.driver_version)},
      {"problem_code", "Problem code", std::uint64_t{device.problem_code}},
      {"problem", "State", ProblemText(device.problem_code)},
  };
}

std::string Counted(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

}  // namespace

Section DevicesSection() {
  Section section{.key = "devices", .title = "Devices"};
  std::size_t count = 0;
  std::size_t failing = 0;
  for (const DeviceClass& device_class : DeviceClasses()) {
    List list{.key = std::string(device_class.key), .item_title = std::string(device_class.title)};
    for (const ListedDevice& device : ListDevices(device_class)) {
      list.items.push_back(DeviceRows(device));
      count += device.count;
      if (device.problem_code != 0) ++failing;
    }
    section.lists.push_back(std::move(list));
  }
  section.verdict = Counted(count, "device", "devices") + ", " +
                    (failing == 0 ? "all of which work"
                                  : Counted(failing, "of which has", "of which have") + " a problem") +
                    ".";
  section.rows = {{"device_count", "Devices", std::uint64_t{count}}};
  return section;
}

}  // namespace report
