#include "ostrine/common/processor_firmware.h"

#include <cstddef>
#include <string_view>

namespace ostrine {
namespace {

// Places in a processor structure.
constexpr std::size_t kTypeAt = 0x05;
constexpr std::size_t kManufacturerAt = 0x07;
constexpr std::size_t kVersionAt = 0x10;
constexpr std::size_t kExternalClockAt = 0x12;
constexpr std::size_t kMaximumSpeedAt = 0x14;
constexpr std::size_t kCurrentSpeedAt = 0x16;
constexpr std::size_t kStatusAt = 0x18;

bool HoldsCentralProcessor(const smbios::Structure& structure) {
  constexpr std::uint8_t kCentralProcessor = 3;
  constexpr std::uint8_t kPopulated = 0x40;
  if (structure.Type() != smbios::kProcessor || structure.U8(kTypeAt) != kCentralProcessor) return false;
  const auto status = structure.U8(kStatusAt);
  return !status || (*status & kPopulated) != 0;
}

std::optional<std::string> Text(const smbios::Structure& structure, std::size_t offset) {
  const std::string_view text = structure.Text(offset);
  return text.empty() ? std::nullopt : std::optional<std::string>(text);
}

std::optional<std::uint32_t> Clock(const smbios::Structure& structure, std::size_t offset) {
  const std::uint32_t clock = structure.U16(offset).value_or(0);
  return clock == 0 ? std::nullopt : std::optional(clock);
}

}  // namespace

std::optional<FirmwareProcessor> ReadFirmwareProcessor(const smbios::TableView& table) {
  smbios::StructureWalker walker(table);
  while (const auto structure = walker.Next()) {
    if (!HoldsCentralProcessor(*structure)) continue;
    return FirmwareProcessor{.manufacturer = Text(*structure, kManufacturerAt),
                             .name = Text(*structure, kVersionAt),
                             .external_clock = Clock(*structure, kExternalClockAt),
                             .maximum_clock = Clock(*structure, kMaximumSpeedAt),
                             .current_clock = Clock(*structure, kCurrentSpeedAt)};
  }
  return std::nullopt;
}

}  // namespace ostrine
