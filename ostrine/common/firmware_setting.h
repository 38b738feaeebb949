/// Which of the firmware's settings switches a built-in device, and what its value says.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrine {

/// Devices by the firmware method's setting numbers.
enum class SwitchedDevice : std::uint8_t {
  kAudio = 0x24,
  kWireless = 0x25,
  kBluetooth = 0x26,
  kFingerprint = 0x27,
};

/// The device that the setting called `name` switches. Makers name settings differently ("WirelessLANAccess",
/// "Wireless Network Device (WLAN)"): letters count in either case, everything else not at all. None for any
/// other setting.
std::optional<SwitchedDevice> DeviceOfSetting(std::string_view name);

/// Whether a setting's value, "Enable" or "Disabled", says on or off; nothing for any other text.
std::optional<bool> ParseSwitch(std::string_view value);

}  // namespace ostrine
