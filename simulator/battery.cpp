#include <algorithm>

#include "ostrine/common/battery.h"
#include "simulator/device_class.h"

namespace simulator {
namespace {

using ostrine::BatteryFact;

/// The batteries in the form in which the abstraction library's own rules add them up.
std::vector<ostrine::Battery> Reported(const std::vector<Battery>& batteries) {
  std::vector<ostrine::Battery> reported;
  reported.reserve(batteries.size());
  for (const Battery& battery : batteries) {
    reported.push_back({.manufacturer = battery.manufacturer.value_or(""),
                        .name = battery.name.value_or(""),
                        .remaining = battery.remaining_mwh,
                        .full = battery.full_mwh,
                        .design = battery.design_mwh,
                        .voltage = battery.voltage_mv,
                        .rate = battery.rate_mw});
  }
  return reported;
}

Information TextOrRefused(std::string text) {
  if (text.empty()) return Refused{};
  return Narrow{std::move(text)};
}

/// The first battery's that has one.
Information ThresholdOf(const std::vector<Battery>& batteries) {
  const auto found =
      std::ranges::find_if(batteries, [](const Battery& battery) { return battery.threshold.has_value(); });
  if (found == batteries.end()) return Refused{};
  return Record{{static_cast<char>(found->threshold->start_percent),
                 static_cast<char>(found->threshold->stop_percent)}};
}

Information AnswerBattery(const Batteries& section, const Question& question) {
  const auto& batteries = section.batteries;
  switch (static_cast<BatteryFact>(question.information_id)) {
    case BatteryFact::kManufacturer:
      return TextOrRefused(ostrine::CombinedManufacturer(Reported(batteries)));
    case BatteryFact::kName:
      return TextOrRefused(ostrine::CombinedName(Reported(batteries)));
    case BatteryFact::kAcLine:
      return NumberOrRefused(section.ac_line);
    case BatteryFact::kThresholdsToRead:
      if (question.buffer_size == ostrine::kThresholdRecordSize) return ThresholdOf(batteries);
      break;
    case BatteryFact::kThresholdsToSet:
      return Refused{};
  }
  return NumberOrRefused(ostrine::CombinedNumber(
      Reported(batteries), static_cast<ostrine::BatteryNumber>(question.information_id)));
}

std::optional<Information> QueryBattery(const Question& question) {
  const auto& section = question.machine.battery;
  if (!section) return std::nullopt;
  return AnswerBattery(*section, question);
}

/// All batteries that have a threshold take the new one, or none does.
bool Set(Machine& machine, unsigned int information_id, std::span<const unsigned char> bytes) {
  if (!machine.battery || static_cast<BatteryFact>(information_id) != BatteryFact::kThresholdsToSet)
    return false;
  const auto wanted = ostrine::ParseThresholdRecord(bytes);
  auto& batteries = machine.battery->batteries;
  const auto has_one = [](const Battery& battery) { return battery.threshold.has_value(); };
  const auto refuses = [](const Battery& battery) { return battery.threshold && battery.refuses_threshold; };
  if (!wanted || std::ranges::none_of(batteries, has_one) || std::ranges::any_of(batteries, refuses))
    return false;
  for (Battery& battery : batteries) {
    if (battery.threshold) battery.threshold = {wanted->start, wanted->stop};
  }
  return true;
}

}  // namespace

const DeviceClassScript kBatteryScript{
    .device_class = velmora::hal::DeviceClass::kBattery, .query = QueryBattery, .set = Set};

}  // namespace simulator
