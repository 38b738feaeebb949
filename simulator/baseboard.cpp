#include <array>

#include "simulator/information.h"

namespace simulator {

std::optional<Information> BaseboardInformation(const Machine& machine, unsigned int information_id) {
  static constexpr std::array kTexts{&Baseboard::product,          &Baseboard::manufacturer,
                                     &Baseboard::version,          &Baseboard::serial_number,
                                     &Baseboard::bios_version,     &Baseboard::bios_manufacturer,
                                     &Baseboard::bios_release_date};
  if (!machine.baseboard) return std::nullopt;
  if (information_id >= kTexts.size()) return Refused{};
  return NarrowOrRefused((*machine.baseboard).*kTexts[information_id]);
}

}  // namespace simulator
