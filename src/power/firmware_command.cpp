#include "power/firmware_command.h"

namespace velmora::firmware {
namespace {

bool IsNegative(const Reply& reply) { return reply[1] == 1; }

/// The magnitude of a valid reply with the reply's sign; the sign is looked at either way.
int Signed(const Reply& reply, int magnitude) {
  const int value = IsValid(reply) ? magnitude : 0;
  return IsNegative(reply) ? -value : value;
}

}  // namespace

unsigned int DecodeFanSpeed(const Reply& reply) {
  return IsValid(reply) ? reply[1] + (static_cast<unsigned int>(reply[2]) << 8) : 0;
}

int DecodeTemperature(const Reply& reply) { return Signed(reply, reply[2]); }

int DecodeVoltageOrCurrent(const Reply& reply) { return Signed(reply, reply[2] * 256 + reply[3]); }

}  // namespace velmora::firmware
