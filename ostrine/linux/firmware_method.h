/// The firmware's method, answered from what the kernel reads: fans, temperatures, voltages and currents, and
/// the firmware's own settings.
#pragma once

#include <cstdint>
#include <optional>

#include "ostrine/common/firmware_reply.h"
#include "ostrine/linux/sysfs.h"

namespace ostrine {

struct FirmwareAnswer {
  std::uint32_t error = 0;  ///< 0, or why there is no reply
  FirmwareReply bytes{};
};

/// Answers one command word (see `firmware_reply.h`). Errors: 50 for a function or a channel that there is
/// not; 1168 for a fan, sensor, port, battery or setting that this machine has not; 13 for a reading that
/// cannot be true, and for a sensor that says itself that it is broken or switched off and so would repeat
/// its last value; 21 for a sensor in a device that sleeps, which is not woken; 5 when the caller may not
/// read.
FirmwareAnswer AnswerFirmwareMethod(const Path& root, std::uint64_t command);

/// The parts of AnswerFirmwareMethod.
FirmwareAnswer ReadFan(const Path& root, std::uint64_t number);
FirmwareAnswer ReadTemperature(const Path& root, std::uint64_t number);
FirmwareAnswer ReadElectric(const Path& root, const ElectricChannel& channel);
FirmwareAnswer ReadSetting(const Path& root, std::uint64_t item);

/// An answer from a reply that may have been refused as impossible.
FirmwareAnswer AnswerOf(const std::optional<FirmwareReply>& reply);

}  // namespace ostrine
