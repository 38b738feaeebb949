/// Battery, sensors and firmware switches.
#include "tests/torture/operation.h"
#include "velmora/battery.h"
#include "velmora/biosfun.h"
#include "velmora/hotinterface.h"

namespace torture {
namespace {

using Threshold = _BATTERY_CHARGE_THRESHOLD_LIMIT_STRUCT;

Operation BatteryText(const char* name, std::wstring (CBattery::*getter)()) {
  return Operation(name, [getter] { return (CBattery().*getter)(); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(std::wstring(259, L'A'));
}

Operation BatteryNumber(const char* name, unsigned long (CBattery::*getter)()) {
  return Operation(name, [getter] { return (CBattery().*getter)(); }).MayFailWith(0).MayBeSpoiledTo(kSpoiled);
}

std::vector<Operation> BatteryOperations() {
  return {
      BatteryText("CBattery::GetBatteryName", &CBattery::GetBatteryName),
      BatteryText("CBattery::GetBatteryManufacturer", &CBattery::GetBatteryManufacturer),
      Operation("CBattery::CheckBattery", [] { return CBattery().CheckBattery(); })
          .MayFailWith(0)
          .MayFailWith(1)  // a query that succeeds and gives nothing
          .MayBeSpoiledTo(1),
      BatteryNumber("CBattery::GetBatteryRemainCapacity", &CBattery::GetBatteryRemainCapacity),
      BatteryNumber("CBattery::GetBatteryFullCapacity", &CBattery::GetBatteryFullCapacity),
      BatteryNumber("CBattery::GetBatteryDesignCapacity", &CBattery::GetBatteryDesignCapacity),
      BatteryNumber("CBattery::GetBatteryVoltage", &CBattery::GetBatteryVoltage),
      BatteryNumber("CBattery::GetDisChargeRate", &CBattery::GetDisChargeRate),
      BatteryNumber("CBattery::GetChargeRate", &CBattery::GetChargeRate),
      Operation("CBattery::AcLine", [] { return unsigned{CBattery().AcLine()}; })
          .MayFailWith(0)
          .MayBeSpoiledTo(kSpoiled & 0xFF),
      Operation("CBattery::GetBattertLoss", [] { return CBattery().GetBattertLoss(); })
          .MayFailWith(0.0F)
          .MayBeSpoiledTo(static_cast<float>(kSpoiled) / 100.0F),
      Operation("CBattery::GetBatteryPercent", [] { return CBattery().GetBatteryPercent(); }).MayFailWith(0),
      Operation("CBattery::GetChargeThreshold",
                [] {
                  Threshold threshold{77, 78};
                  const bool result = CBattery().GetChargeThreshold(threshold);
                  return std::tuple(result, unsigned{threshold.start_percent},
                                    unsigned{threshold.stop_percent});
                })
          .MayFailWith(std::tuple(false, 77, 78))
          .MayFailWith(std::tuple(true, 77, 78))  // a success that wrote nothing
          .MayBeSpoiledTo(std::tuple(true, 0x41, 0x41)),
      Operation("CBattery::SetChargeThreshold", [] { return CBattery().SetChargeThreshold({40, 60}); })
          .MayFailWith(false)
          .MayFailWith(true)  // a success in name only
          .MayBeSpoiledTo(true),
  };
}

Operation Reading(const char* name, int (CHotInterface::*reading)()) {
  return Operation(name, [reading] { return (CHotInterface().*reading)(); }).MayFailWith(0);
}

Operation Switch(const char* name, stDEVICE_DRIVER_TYPE kind) {
  return Operation(name,
                   [kind] {
                     bool on = false;
                     const bool result = CBiosFun().GetBiosSwitch(on, kind);
                     return std::tuple(result, on);
                   })
      .MayFailWith(std::tuple(false, true))
      .MayFailWith(std::tuple(true, false));  // a success that gave only zeros
}

}  // namespace

std::vector<Operation> PowerOperations() {
  auto all = BatteryOperations();
  const std::vector<Operation> others{
      Operation("CHotInterface::GetFan0Speed", [] { return CHotInterface().GetFan0Speed(); }).MayFailWith(0),
      Operation("CHotInterface::GetFan1Speed", [] { return CHotInterface().GetFan1Speed(); }).MayFailWith(0),
      Operation("CHotInterface::GetSensorTemperature", [] { return CHotInterface().GetSensorTemperature(0); })
          .MayFailWith(0),
      Reading("CHotInterface::GetVoltage_USB0", &CHotInterface::GetVoltage_USB0),
      Reading("CHotInterface::GetVoltage_USB1", &CHotInterface::GetVoltage_USB1),
      Reading("CHotInterface::GetCurrent_USB0", &CHotInterface::GetCurrent_USB0),
      Reading("CHotInterface::GetCurrent_USB1", &CHotInterface::GetCurrent_USB1),
      Reading("CHotInterface::GetVoltage_Battery0", &CHotInterface::GetVoltage_Battery0),
      Reading("CHotInterface::GetVoltage_Battery1", &CHotInterface::GetVoltage_Battery1),
      Reading("CHotInterface::GetCurrent_Battery0", &CHotInterface::GetCurrent_Battery0),
      Reading("CHotInterface::GetCurrent_Battery1", &CHotInterface::GetCurrent_Battery1),
      Switch("CBiosFun::GetBiosSwitch of the wireless card", emDEVICE_WIRELESS),
      Switch("CBiosFun::GetBiosSwitch of the audio device", emDEVICE_AUDIO),
      Switch("CBiosFun::GetBiosSwitch of the keyboard", emDEVICE_KEYBOARD)};
  all.insert(all.end(), others.begin(), others.end());
  return all;
}

}  // namespace torture
