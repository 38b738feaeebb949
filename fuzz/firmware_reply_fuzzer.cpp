// Any 256 bytes as a firmware's reply, and what our own replies read back as.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "ostrine/common/firmware_reply.h"
#include "power/firmware_command.h"

namespace {

namespace firmware = velmora::firmware;

void Require(bool holds) {
  if (!holds) std::abort();
}

firmware::Reply Padded(const ostrine::FirmwareReply& front) {
  firmware::Reply reply{};
  std::copy(front.begin(), front.end(), reply.begin());
  return reply;
}

/// What stands below the contract writes, the library above it reads.
void RequireReadsBack(std::int64_t number) {
  if (const auto reply = ostrine::FanReply(number))
    Require(firmware::DecodeFanSpeed(Padded(*reply)) == number);
  if (const auto reply = ostrine::ElectricReply(number)) {
    Require(firmware::DecodeVoltageOrCurrent(Padded(*reply)) == number);
  }
  if (const auto reply = ostrine::TemperatureReply(number)) {
    const std::int64_t degrees = firmware::DecodeTemperature(Padded(*reply));
    Require(std::abs(degrees * 1000 - number) <= 500);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  firmware::Reply reply{};
  std::copy_n(data, std::min(size, reply.size()), reply.begin());
  const unsigned int fan = firmware::DecodeFanSpeed(reply);
  const int temperature = firmware::DecodeTemperature(reply);
  const int electric = firmware::DecodeVoltageOrCurrent(reply);
  Require(fan <= 65535 && std::abs(temperature) <= 255 && std::abs(electric) <= 65535);
  Require(firmware::IsValid(reply) || (fan == 0 && temperature == 0 && electric == 0));
  Require((electric >= 0 && temperature >= 0) || reply[1] == 1);

  std::int64_t number = 0;
  std::memcpy(&number, data, std::min(size, sizeof number));
  RequireReadsBack(number);
  RequireReadsBack(number % 70'000);
  return 0;
}
