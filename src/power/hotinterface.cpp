#include "velmora/hotinterface.h"

#include "platform/guard.h"
#include "platform/ostrine/wmi.h"
#include "power/firmware_command.h"

using namespace velmora::firmware;

namespace {

/// Sends one command and decodes the reply; 0 when the firmware does not answer.
template <class Value>
Value Ask(std::uint64_t command, Value (*decode)(const Reply&)) {
  return velmora::Answer(Value{0}, [=] {
    CWMI firmware(kNameSpace);
    Reply reply{};
    const bool is_answered =
        firmware.GetOutPutUInt(command, reply.data(), static_cast<unsigned int>(reply.size()));
    return is_answered ? decode(reply) : Value{0};
  });
}

}  // namespace

CHotInterface::CHotInterface() = default;
CHotInterface::~CHotInterface() = default;

unsigned int CHotInterface::GetFan0Speed() { return GetFanSpeed(0); }
unsigned int CHotInterface::GetFan1Speed() { return GetFanSpeed(1); }

unsigned int CHotInterface::GetFanSpeed(int fan) {
  if (fan != 0 && fan != 1) return 0;
  return Ask(FanCommand(static_cast<std::uint32_t>(fan)), DecodeFanSpeed);
}

int CHotInterface::GetSensorTemperature(std::uint64_t sensor) {
  return Ask(TemperatureCommand(sensor), DecodeTemperature);
}

int CHotInterface::GetVoltageOrCurrent(std::uint64_t code) { return Ask(code, DecodeVoltageOrCurrent); }

int CHotInterface::GetVoltage_USB0() { return GetVoltageOrCurrent(ChannelCommand(Channel::kUsbVoltage0)); }
int CHotInterface::GetVoltage_USB1() { return GetVoltageOrCurrent(ChannelCommand(Channel::kUsbVoltage1)); }
int CHotInterface::GetVoltage_Battery0() {
  return GetVoltageOrCurrent(ChannelCommand(Channel::kBatteryVoltage0));
}
int CHotInterface::GetVoltage_Battery1() {
  return GetVoltageOrCurrent(ChannelCommand(Channel::kBatteryVoltage1));
}
int CHotInterface::GetCurrent_USB0() { return GetVoltageOrCurrent(ChannelCommand(Channel::kUsbCurrent0)); }
int CHotInterface::GetCurrent_USB1() { return GetVoltageOrCurrent(ChannelCommand(Channel::kUsbCurrent1)); }
int CHotInterface::GetCurrent_Battery0() {
  return GetVoltageOrCurrent(ChannelCommand(Channel::kBatteryCurrent0));
}
int CHotInterface::GetCurrent_Battery1() {
  return GetVoltageOrCurrent(ChannelCommand(Channel::kBatteryCurrent1));
}
