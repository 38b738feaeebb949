#include <string>

#include "simulator/device_class.h"
#include "simulator/guid_text.h"

namespace simulator {
namespace {

/// Positions of the failing devices among all devices, which are never taken out of the machine.
std::vector<std::uint32_t> NumberFailing(const Machine& machine) {
  std::vector<std::uint32_t> numbers;
  if (!machine.devices) return numbers;
  for (std::uint32_t i = 0; i < machine.devices->size(); ++i) {
    const Device& device = (*machine.devices)[i];
    if (IsPresent(device) && PresentProblemCode(device) != 0) numbers.push_back(i);
  }
  return numbers;
}

std::size_t CountFailing(const Machine& machine) { return NumberFailing(machine).size(); }

Information AnswerFailingDriver(const Device& device, unsigned int information_id) {
  switch (information_id) {
    case 0:
      return Narrow{device.display_name.empty() ? device.description : device.display_name};
    case 1:
      return Narrow{device.instance_id};
    case 2:
      return Narrow{SetupClassGuidText(device.setup_class)};
    case 3:
      return PresentProblemCode(device);
    case 4:
      return Narrow{device.manufacturer};
    case 5:
      return Narrow{device.service};
    case 6:
      return Narrow{device.status};
    default:
      return Refused{};
  }
}

std::optional<Information> QueryFailingDriver(const Question& question) {
  const auto& devices = question.machine.devices;
  if (!devices) return std::nullopt;
  if (!question.device_number) return Refused{};
  return AnswerFailingDriver(devices->at(*question.device_number), question.information_id);
}

}  // namespace

const DeviceClassScript kFailingDriverScript{.device_class = velmora::hal::DeviceClass::kFailingDriver,
                                             .query = QueryFailingDriver,
                                             .count_entries = CountFailing,
                                             .number_entries = NumberFailing,
                                             .entry_size = velmora::hal::kFailingDriverSize};

}  // namespace simulator
