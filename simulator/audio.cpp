/// The audio devices have no section of their own: they are the machine's devices of the class Media.
#include <algorithm>

#include "simulator/device_class.h"

namespace simulator {
namespace {

std::size_t CountAudioDevices(const Machine& machine) {
  if (!machine.devices) return 0;
  return static_cast<std::size_t>(std::ranges::count_if(*machine.devices, [](const Device& device) {
    return IsPresent(device) && device.setup_class == "Media";
  }));
}

std::optional<Information> QueryAudio(const Question& question) {
  if (!question.machine.devices) return std::nullopt;
  if (question.device_number || question.information_id != 0) return Refused{};
  return static_cast<std::uint32_t>(CountAudioDevices(question.machine));
}

}  // namespace

const DeviceClassScript kAudioScript{.device_class = velmora::hal::DeviceClass::kAudio,
                                     .query = QueryAudio,
                                     .count_entries = CountAudioDevices};

}  // namespace simulator
