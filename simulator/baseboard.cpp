#include <array>

#include "simulator/device_class.h"

namespace simulator {
namespace {

std::optional<Information> QueryBaseboard(const Question& question) {
  static constexpr std::array kTexts{&Baseboard::product,          &Baseboard::manufacturer,
                                     &Baseboard::version,          &Baseboard::serial_number,
                                     &Baseboard::bios_version,     &Baseboard::bios_manufacturer,
                                     &Baseboard::bios_release_date};
  const auto& baseboard = question.machine.baseboard;
  if (!baseboard) return std::nullopt;
  if (question.information_id >= kTexts.size()) return Refused{};
  return NarrowOrRefused((*baseboard).*kTexts[question.information_id]);
}

}  // namespace

const DeviceClassScript kBaseboardScript{.device_class = velmora::hal::DeviceClass::kBaseboard,
                                         .query = QueryBaseboard};

}  // namespace simulator
