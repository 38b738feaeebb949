/// What the firmware's SMBIOS table says of the processor.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ostrine/common/smbios.h"

namespace ostrine {

/// Facts of one processor socket. Each is absent where the table does not say; clocks are in MHz.
struct FirmwareProcessor {
  std::optional<std::string> manufacturer;
  std::optional<std::string> name;
  std::optional<std::uint32_t> external_clock;
  std::optional<std::uint32_t> maximum_clock;
  std::optional<std::uint32_t> current_clock;
};

/// The facts of the first socket that holds a central processor; nothing when there is no such socket.
std::optional<FirmwareProcessor> ReadFirmwareProcessor(const smbios::TableView& table);

}  // namespace ostrine
