/// Device class 4: who made the machine's main board and its BIOS.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ostrine/common/answer.h"
#include "ostrine/common/smbios.h"

namespace ostrine {

/// The texts of the class; the numbers are its information ids.
enum class BaseboardFact : unsigned int {
  kProduct = 0,
  kManufacturer = 1,
  kVersion = 2,
  kSerialNumber = 3,
  kBiosVersion = 4,
  kBiosManufacturer = 5,
  kBiosReleaseDate = 6,
};

/// Answers the information ids of BaseboardFact with narrow text; `device` plays no part.
bool QueryBaseboard(void* device, unsigned int information_id, Answer& answer);

/// Text of `fact` in `table`, byte for byte as the firmware has it: empty where the structure is there
/// without the text, nothing where the structure is missing. Of several boards the first motherboard counts,
/// and where none says that it is one, the first board.
std::optional<std::string_view> BaseboardText(const smbios::TableView& table, BaseboardFact fact);

/// Text of `fact` of this machine, read afresh; nothing when the system does not tell. Each system has its
/// own.
std::optional<std::string> ReadBaseboardText(BaseboardFact fact);

}  // namespace ostrine
