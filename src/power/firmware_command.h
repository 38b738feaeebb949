/// Commands to the machine's firmware, as its WMI method takes them: a function number in the lower 16 bits
/// and a selector above.
#pragma once

#include <array>
#include <cstdint>

namespace velmora::firmware {

/// Where the firmware's method is.
inline constexpr const wchar_t* kNameSpace = L"ROOT\\WMI";

/// What the method answers with; the first byte is 0 for a valid answer.
using Reply = std::array<unsigned char, 256>;

/// Reads the switch of a built-in device.
constexpr std::uint64_t SwitchCommand(unsigned char item_code) {
  return (std::uint64_t{item_code} << 16) | 0x0105;
}

/// Reads the speed of a fan.
constexpr std::uint64_t FanCommand(std::uint32_t fan) { return (std::uint64_t{fan} << 16) | 0x0802; }

/// Reads a temperature. The sensor's number goes in as it is, whatever its size.
constexpr std::uint64_t TemperatureCommand(std::uint64_t sensor) { return (sensor << 16) | 0x0202; }

/// What is measured electrically, and where: the high half of a channel's number; the low half is the number
/// of the port or battery.
enum class Channel : std::uint8_t {
  kUsbVoltage0 = 0x00,
  kUsbVoltage1 = 0x01,
  kUsbCurrent0 = 0x10,
  kUsbCurrent1 = 0x11,
  kBatteryVoltage0 = 0x20,
  kBatteryVoltage1 = 0x21,
  kBatteryCurrent0 = 0x30,
  kBatteryCurrent1 = 0x31,
};

/// Reads a voltage or a current.
constexpr std::uint64_t ChannelCommand(Channel channel) {
  return (std::uint64_t{static_cast<std::uint8_t>(channel)} << 16) | 0x0902;
}

/// Whether the firmware says that its reply holds what was asked for.
constexpr bool IsValid(const Reply& reply) { return reply[0] == 0; }

/// State in a switch's reply: any value but 0 is on.
constexpr bool DecodeSwitch(const Reply& reply) { return reply[1] != 0; }

/// Speed in a fan's reply: low byte first. 0 for an invalid reply.
unsigned int DecodeFanSpeed(const Reply& reply);

/// Temperature in a reply: one byte, made negative by the sign byte. 0 for an invalid reply.
int DecodeTemperature(const Reply& reply);

/// Voltage or current in a reply: high byte first, made negative by the sign byte. 0 for an invalid reply.
int DecodeVoltageOrCurrent(const Reply& reply);

}  // namespace velmora::firmware
