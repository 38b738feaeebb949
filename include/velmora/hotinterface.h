#pragma once

#include <cstdint>

#include "velmora/export.h"

/// The machine's live sensors: two fans, temperatures, and voltages and currents of two USB ports and two
/// batteries.
///
/// Source: the firmware's WMI method in "ROOT\WMI", in the firmware's own units, unscaled; where the machine
/// has no such method, what the system itself reads, in the units that are told below. docs/sensors.md tells
/// which number is which sensor on each system; the order is the same from boot to boot.
/// Every call asks again, nothing is kept. Failure: 0, also when the machine has no such sensor or the sensor
/// says something impossible; nothing throws, nothing is logged. Threads: an object is used by one thread at
/// a time; separate objects are independent. Copies: an object holds nothing, so a copy is simply another
/// object.
class VELMORA_API CHotInterface {
 public:
  CHotInterface();
  ~CHotInterface();

  /// Speed of a fan in revolutions per minute, 0 to 65535; 0 also for a fan that stands still.
  unsigned int GetFan0Speed();
  unsigned int GetFan1Speed();

  /// Temperature of a sensor in degrees Celsius, -255 to 255; 0 also at the freezing point. Sensors count
  /// from 0; which numbers exist depends on the machine.
  int GetSensorTemperature(std::uint64_t sensor);

  /// Voltage in mV, -65535 to 65535.
  int GetVoltage_USB0();
  int GetVoltage_USB1();
  int GetVoltage_Battery0();
  int GetVoltage_Battery1();

  /// Current in mA, -65535 to 65535; below zero where it leaves a battery.
  int GetCurrent_USB0();
  int GetCurrent_USB1();
  int GetCurrent_Battery0();
  int GetCurrent_Battery1();

 private:
  unsigned int GetFanSpeed(int fan);
  int GetVoltageOrCurrent(std::uint64_t code);
};
