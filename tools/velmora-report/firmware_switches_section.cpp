#include "velmora-report/firmware_switches_section.h"

#include <velmora/biosfun.h>

#include <array>

namespace report {
namespace {

struct Device {
  stDEVICE_DRIVER_TYPE kind;
  const char* key;
  const char* name;
};

constexpr std::array kSwitchedDevices{Device{emDEVICE_WIRELESS, "wireless", "Wi-Fi card"},
                                      Device{emDEVICE_BLUETOOTH, "bluetooth", "Bluetooth radio"},
                                      Device{emDEVICE_FINGERPRINT, "fingerprint", "Fingerprint reader"},
                                      Device{emDEVICE_AUDIO, "audio", "Audio device"}};

}  // namespace

Section FirmwareSwitchesSection() {
  CBiosFun firmware;
  Section section{.key = "firmware_switches", .title = "Firmware switches"};
  bool is_any_read = false;
  for (const Device& device : kSwitchedDevices) {
    bool is_on = false;
    const bool is_read = firmware.GetBiosSwitch(is_on, device.kind);
    section.rows.push_back(
        {device.key, std::string(device.name) + " switched on", is_read ? Value(is_on) : Absent{}});
    is_any_read |= is_read;
    if (!is_read || is_on) continue;
    section.verdict +=
        (section.verdict.empty() ? "Switched off in the firmware: " : ", ") + std::string(device.name);
  }
  if (!is_any_read) section.verdict = "The firmware does not show its switches.";
  return section;
}

}  // namespace report
