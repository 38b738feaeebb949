#include "velmora-report/failing_drivers_section.h"

#include <velmora/devicedriver.h>

#include "velmora-report/problem_text.h"
#include "velmora-report/system.h"

namespace report {
namespace {

Value NarrowValue(const std::string& narrow) {
  if (narrow.empty()) return Absent{};
  return FromNarrow(narrow);
}

Rows DriverRows(const stErrDriverInfo& info) {
  return {
      {"caption", "Name", NarrowValue(info.strCaption)},
      {"problem_code", "Problem code", std::uint64_t{info.uErrorCode}},
      {"problem", "What is wrong", ProblemText(info.uErrorCode)},
      {"device_id", "Instance ID", NarrowValue(info.strDeviceID)},
      {"manufacturer", "Maker", NarrowValue(info.strManufacture)},
      {"service", "Driver", NarrowValue(info.strService)},
      {"class_guid", "Setup class", NarrowValue(info.strClassGUID)},
      {"status", "Status", NarrowValue(info.strStatus)},
  };
}

std::string FailureVerdict(std::size_t count) {
  if (count == 0) return "No device is known to have a failing driver.";
  return count == 1 ? "One device has a failing driver."
                    : std::to_string(count) + " devices have a failing driver.";
}

}  // namespace

List FailingDriversList(const std::string& key, const std::string& item_title) {
  CDeviceDriver drivers;
  List list{.key = key, .item_title = item_title};
  const int count = drivers.GetErrDeviceDriverCount();
  for (int i = 0; i < count; ++i) list.items.push_back(DriverRows(drivers.GetErrDriverInfoByIndex(i)));
  return list;
}

Section FailingDriversSection() {
  List devices = FailingDriversList("devices", "Failing device");
  const std::size_t count = devices.items.size();
  return {.key = "failing_drivers",
          .title = "Failing drivers",
          .verdict = FailureVerdict(count),
          .rows = {{"count", "Failing devices", std::uint64_t{count}}},
          .lists = {std::move(devices)}};
}

}  // namespace report
