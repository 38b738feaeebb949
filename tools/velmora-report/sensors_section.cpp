#include "velmora-report/sensors_section.h"

#include <velmora/hotinterface.h>

#include <algorithm>

namespace report {
namespace {

/// A reading, which is 0 where there is no such sensor.
Value Reading(int number) {
  if (number == 0) return Absent{};
  return std::int64_t{number};
}

/// The temperatures of the sensors that there are. Whoever asks cannot know how many; laptops have fewer.
List Temperatures(CHotInterface& sensors) {
  constexpr std::uint64_t kSensors = 16;
  List list{.key = "temperatures", .item_title = "Temperature"};
  for (std::uint64_t sensor = 0; sensor < kSensors; ++sensor) {
    const int degrees = sensors.GetSensorTemperature(sensor);
    if (degrees == 0) continue;
    list.items.push_back(
        {{"sensor", "Sensor", sensor}, {"celsius", "Reads now", Reading(degrees), "\u00B0C"}});
  }
  return list;
}

}  // namespace

Section SensorsSection() {
  CHotInterface sensors;
  Section section{
      .key = "sensors",
      .title = "Sensors",
      .rows =
          {
              {"fan0_rpm", "Fan 0 now", NumberValue(sensors.GetFan0Speed()), "rpm"},
              {"fan1_rpm", "Fan 1 now", NumberValue(sensors.GetFan1Speed()), "rpm"},
              {"usb0_voltage_mv", "USB port 0 voltage now", Reading(sensors.GetVoltage_USB0()), "mV"},
              {"usb0_current_ma", "USB port 0 current now", Reading(sensors.GetCurrent_USB0()), "mA"},
              {"usb1_voltage_mv", "USB port 1 voltage now", Reading(sensors.GetVoltage_USB1()), "mV"},
              {"usb1_current_ma", "USB port 1 current now", Reading(sensors.GetCurrent_USB1()), "mA"},
              {"battery0_voltage_mv", "Battery 0 voltage now", Reading(sensors.GetVoltage_Battery0()), "mV"},
              {"battery0_current_ma", "Battery 0 current now", Reading(sensors.GetCurrent_Battery0()), "mA"},
              {"battery1_voltage_mv", "Battery 1 voltage now", Reading(sensors.GetVoltage_Battery1()), "mV"},
              {"battery1_current_ma", "Battery 1 current now", Reading(sensors.GetCurrent_Battery1()), "mA"},
          },
      .lists = {Temperatures(sensors)},
  };
  const auto is_absent = [](const Row& row) { return std::holds_alternative<Absent>(row.value); };
  if (std::ranges::all_of(section.rows, is_absent) && section.lists[0].items.empty()) {
    section.verdict = "There is no sensor that can be read.";
  }
  return section;
}

}  // namespace report
