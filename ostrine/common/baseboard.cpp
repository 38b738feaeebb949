#include "ostrine/common/baseboard.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace ostrine {
namespace {

struct Place {
  std::uint8_t structure_type;
  std::uint8_t offset;
};

/// Where each text stands, in the order of BaseboardFact.
constexpr std::array kPlaces{
    Place{smbios::kBaseboard, 0x05},  // product
    Place{smbios::kBaseboard, 0x04},  // manufacturer
    Place{smbios::kBaseboard, 0x06},  // version
    Place{smbios::kBaseboard, 0x07},  // serial number
    Place{smbios::kBios, 0x05},       // version
    Place{smbios::kBios, 0x04},       // manufacturer
    Place{smbios::kBios, 0x08},       // release date
};

std::optional<smbios::Structure> MainBoard(const smbios::TableView& table) {
  constexpr std::size_t kBoardTypeOffset = 0x0D;
  constexpr std::uint8_t kMotherboard = 0x0A;
  std::optional<smbios::Structure> first;
  smbios::StructureWalker walker(table);
  while (const auto structure = walker.Next()) {
    if (structure->Type() != smbios::kBaseboard) continue;
    if (structure->U8(kBoardTypeOffset) == kMotherboard) return structure;
    if (!first) first = structure;
  }
  return first;
}

}  // namespace

bool QueryBaseboard(void* /*device*/, unsigned int information_id, Answer& answer) {
  if (information_id >= kPlaces.size()) return false;
  const auto text = ReadBaseboardText(static_cast<BaseboardFact>(information_id));
  return text && answer.NarrowText(*text);
}

std::optional<std::string_view> BaseboardText(const smbios::TableView& table, BaseboardFact fact) {
  const Place place = kPlaces.at(static_cast<std::size_t>(fact));
  const auto structure = place.structure_type == smbios::kBaseboard
                             ? MainBoard(table)
                             : smbios::FirstOfType(table, place.structure_type);
  if (!structure) return std::nullopt;
  return structure->Text(place.offset);
}

}  // namespace ostrine
