#include "ostrine/linux/firmware_method.h"

#include "ostrine/linux/last_error.h"

namespace ostrine {

FirmwareAnswer AnswerOf(const std::optional<FirmwareReply>& reply) {
  return reply ? FirmwareAnswer{.bytes = *reply} : FirmwareAnswer{.error = kErrorInvalidData};
}

FirmwareAnswer AnswerFirmwareMethod(const Path& root, std::uint64_t command) {
  const auto [function, selector] = SplitCommand(command);
  switch (function) {
    case FirmwareFunction::kSwitch:
      return ReadSetting(root, selector);
    case FirmwareFunction::kTemperature:
      return ReadTemperature(root, selector);
    case FirmwareFunction::kFan:
      return ReadFan(root, selector);
    case FirmwareFunction::kElectric:
      if (const auto channel = SplitChannel(selector)) return ReadElectric(root, *channel);
      break;
  }
  return {.error = kErrorNotSupported};
}

}  // namespace ostrine
