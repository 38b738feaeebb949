#include "ostrine/common/battery.h"

#include <string>

namespace ostrine {
namespace {

bool GiveText(Answer& answer, const std::string& text) { return !text.empty() && answer.NarrowText(text); }

bool GiveThresholds(const BatterySystem& system, Answer& answer) {
  const auto thresholds = system.Thresholds();
  return thresholds && answer.Record(ToRecord(*thresholds));
}

bool GiveAcLine(const BatterySystem& system, Answer& answer) {
  const auto is_on_mains = system.IsOnMains();
  return is_on_mains && answer.Number(*is_on_mains ? 1 : 0);
}

}  // namespace

bool AnswerBattery(const BatterySystem& system, unsigned int information_id, Answer& answer) {
  switch (static_cast<BatteryFact>(information_id)) {
    case BatteryFact::kManufacturer:
      return GiveText(answer, CombinedManufacturer(system.Batteries()));
    case BatteryFact::kName:
      return GiveText(answer, CombinedName(system.Batteries()));
    case BatteryFact::kAcLine:
      return GiveAcLine(system, answer);
    case BatteryFact::kThresholdsToRead:
      if (answer.Size() == kThresholdRecordSize) return GiveThresholds(system, answer);
      break;  // the rate, to which the id belongs too
    case BatteryFact::kThresholdsToSet:
      return false;
  }
  const auto number = CombinedNumber(system.Batteries(), static_cast<BatteryNumber>(information_id));
  return number && answer.Number(*number);
}

bool TakeBatterySetting(const BatterySystem& system, unsigned int information_id,
                        std::span<const std::uint8_t> value) {
  if (static_cast<BatteryFact>(information_id) != BatteryFact::kThresholdsToSet) return false;
  const auto thresholds = ParseThresholdRecord(value);
  return thresholds && system.SetThresholds(*thresholds);
}

}  // namespace ostrine
