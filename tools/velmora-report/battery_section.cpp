#include "velmora-report/battery_section.h"

#include <velmora/battery.h>

#include <cmath>

namespace report {
namespace {

/// A value that is 0 also for a battery that does nothing: absent only without a battery.
Value LiveNumber(bool is_there, unsigned long number) {
  if (!is_there) return Absent{};
  return std::uint64_t{number};
}

Value Percentage(bool is_there, unsigned long percent) {
  constexpr unsigned long kUnknown = 255;
  return percent == kUnknown ? Absent{} : LiveNumber(is_there, percent);
}

/// The wear, which is known only when both capacities are.
Value Wear(CBattery& battery) {
  if (battery.GetBatteryFullCapacity() == 0 || battery.GetBatteryDesignCapacity() == 0) return Absent{};
  return Hundredths{std::lround(battery.GetBattertLoss() * 100)};
}

Value OnMains(CBattery& battery, bool is_there) {
  const bool is_on_mains = battery.AcLine() != 0;
  // Without a battery 0 is not knowing: the machine runs on something.
  if (!is_on_mains && !is_there) return Absent{};
  return is_on_mains;
}

}  // namespace

Section BatterySection() {
  CBattery battery;
  const bool is_there = battery.CheckBattery() != 0;
  _BATTERY_CHARGE_THRESHOLD_LIMIT_STRUCT threshold{};
  const bool has_threshold = battery.GetChargeThreshold(threshold);
  const auto limit = [&](std::uint8_t percent) {
    return has_threshold ? Value(std::uint64_t{percent}) : Absent{};
  };
  return {
      .key = "battery",
      .title = "Battery",
      .verdict = is_there ? "" : "There is no battery that can be read.",
      .rows =
          {
              {"present", "Battery", is_there},
              {"name", "Model", TextValue(battery.GetBatteryName())},
              {"manufacturer", "Maker", TextValue(battery.GetBatteryManufacturer())},
              {"charge_percent", "Charge now", Percentage(is_there, battery.GetBatteryPercent()), "%"},
              {"on_mains", "On mains now", OnMains(battery, is_there)},
              {"remaining_mwh", "Energy now", NumberValue(battery.GetBatteryRemainCapacity()), "mWh"},
              {"full_mwh", "Energy when full", NumberValue(battery.GetBatteryFullCapacity()), "mWh"},
              {"design_mwh", "Energy when new", NumberValue(battery.GetBatteryDesignCapacity()), "mWh"},
              {"wear_percent", "Wear", Wear(battery), "%"},
              {"voltage_mv", "Voltage now", NumberValue(battery.GetBatteryVoltage()), "mV"},
              {"discharge_rate_mw", "Discharging now", LiveNumber(is_there, battery.GetDisChargeRate()),
               "mW"},
              {"charge_rate_mw", "Charging now", LiveNumber(is_there, battery.GetChargeRate()), "mW"},
              {"threshold_start_percent", "Charging starts below", limit(threshold.start_percent), "%"},
              {"threshold_stop_percent", "Charging stops at", limit(threshold.stop_percent), "%"},
          },
  };
}

}  // namespace report
