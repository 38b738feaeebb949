/// Command words and replies of the firmware's method, for machines whose sensors are read elsewhere.
///
/// A command names its function in the low 16 bits and carries a selector above them. A reply begins with a
/// status byte (0: valid); what follows depends on the function. Speeds are revolutions a minute,
/// temperatures whole degrees Celsius, voltages millivolts, currents milliamperes. Pure functions.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace ostrine {

enum class FirmwareFunction : std::uint16_t {
  kSwitch = 0x0105,       ///< selector: number of the firmware's setting
  kTemperature = 0x0202,  ///< selector: sensor
  kFan = 0x0802,          ///< selector: fan
  kElectric = 0x0902,     ///< selector: channel
};

struct FirmwareCommand {
  FirmwareFunction function;  ///< may be none of the named ones
  std::uint64_t selector;
};

constexpr FirmwareCommand SplitCommand(std::uint64_t word) noexcept {
  return {static_cast<FirmwareFunction>(word & 0xFFFF), word >> 16};
}

/// A channel of FirmwareFunction::kElectric: the selector's high nibble is quantity and place, its low nibble
/// the number of the port or battery.
struct ElectricChannel {
  bool is_battery = false;  ///< else a USB port
  bool is_current = false;  ///< else a voltage
  std::uint8_t number = 0;
};

/// None for a selector outside 0x00 to 0x3F.
std::optional<ElectricChannel> SplitChannel(std::uint64_t selector) noexcept;

using FirmwareReply = std::array<std::uint8_t, 4>;

/// Status, then the speed, low byte first. None for a speed that no fan has: below 0 or above 30000, the
/// all-ones of a fan that does not answer included.
std::optional<FirmwareReply> FanReply(std::int64_t revolutions_a_minute) noexcept;

/// Status, sign (1 below zero), magnitude; rounded to whole degrees, halves away from zero. None for what a
/// running machine cannot have (below -55 or above 125 degrees), so that the readings of sensors which are
/// not there (absolute zero, 127, 128 and 255 among them) are told from real ones.
std::optional<FirmwareReply> TemperatureReply(std::int64_t thousandths_of_degree) noexcept;

/// Status, sign (1 below zero), magnitude, high byte first. None for a magnitude of more than 16 bits.
std::optional<FirmwareReply> ElectricReply(std::int64_t thousandths) noexcept;

/// Status, then whether the setting is on.
FirmwareReply SwitchReply(bool on) noexcept;

}  // namespace ostrine
