#pragma once

#include <cstdint>
#include <string>

#include "velmora/export.h"

/// How far the battery is charged: two bytes that are exchanged with the hardware-abstraction library as they
/// stand; what they mean is that library's to say. The caller owns the record.
struct _BATTERY_CHARGE_THRESHOLD_LIMIT_STRUCT {
  std::uint8_t start_percent;  ///< charging starts when the charge is below, 0 to 99
  std::uint8_t stop_percent;   ///< charging stops here, 1 to 100 and above the start
};

/// The machine's battery: identity, capacities, rates, wear, and how far it may be charged. Several batteries
/// count as one, their energies and rates added up; empty bays and the batteries of mice and the like are
/// none.
///
/// Source: the hardware-abstraction library, device class 8, whose units are passed on unscaled; the
/// percentage comes from the operating system's power status. Every call asks again, nothing is kept.
/// Failure: a text is empty, a number 0, a flag false; nothing throws. What the battery (or one of several)
/// does not know is a failure, never a number. GetBatteryPercent logs; nothing else does.
/// Threads: an object is used by one thread at a time; separate objects are independent.
/// Copies: an object holds nothing, so a copy is simply another object.
class VELMORA_API CBattery {
 public:
  /// Prepares the device class. An object whose class cannot be prepared gives the failure values.
  CBattery();
  ~CBattery();

  CBattery(const CBattery&) = default;
  CBattery& operator=(const CBattery&) = default;

  /// Name of the battery's model as the battery gives it, such as "LNV-5B10W13930"; of several the first.
  std::wstring GetBatteryName();

  /// The battery's maker; of several that of the first.
  std::wstring GetBatteryManufacturer();

  /// Nonzero when there is a battery that can be read, else 0: the query's own result, and not the value that
  /// it gave.
  int CheckBattery();

  /// Charge that the battery holds now, in mWh. Right after a calibration it can be more than the full one.
  unsigned long GetBatteryRemainCapacity();

  /// Charge that the battery holds when it is full, in mWh.
  unsigned long GetBatteryFullCapacity();

  /// Charge that the battery held when it was new, in mWh.
  unsigned long GetBatteryDesignCapacity();

  /// 1 on mains power, 0 on battery; 0 also when it cannot be read. The lowest byte of the value read.
  unsigned char AcLine();

  /// Voltage now, in mV; of several batteries that of the first, as they are not connected in a row.
  unsigned long GetBatteryVoltage();

  /// Wear: how much of the design capacity is lost, in percent, 0.00 to 100.00. 0 also when the battery does
  /// not say. (The spelling is part of the interface.)
  float GetBattertLoss();

  /// Rate of discharging now, in mW; 0 while charging, and while one battery only charges another. (The
  /// spelling is part of the interface.)
  unsigned long GetDisChargeRate();

  /// Rate of charging now, in mW; 0 while discharging.
  unsigned long GetChargeRate();

  /// Charge in percent, 0 to 100; 255 when the system does not know; 0 when it could not be asked in three
  /// tries. Logs the answer at debug level.
  unsigned long GetBatteryPercent();

  /// Reads the charge thresholds into `threshold`; of several batteries those of the first that has any.
  /// False when the machine has none or they cannot be read; `threshold` then holds whatever the
  /// hardware-abstraction library left in it.
  bool GetChargeThreshold(_BATTERY_CHARGE_THRESHOLD_LIMIT_STRUCT& threshold);

  /// Sets the charge thresholds at once, on every battery that has any; what is set stays when the object is
  /// gone. False when the machine has none, does not allow it, or refuses these; the old ones stand then. On
  /// Linux it takes root.
  bool SetChargeThreshold(const _BATTERY_CHARGE_THRESHOLD_LIMIT_STRUCT& threshold);
};
