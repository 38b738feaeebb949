/// What a display says about itself: its EDID. A pure reader over bytes that it neither owns nor trusts.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace ostrine {

/// Picture of a detailed timing.
struct EdidMode {
  std::uint32_t width = 0;
  std::uint32_t height = 0;  ///< of the whole picture, also where it is sent in two halves
  std::uint32_t rate = 0;    ///< pictures, or halves of pictures, in a second, rounded; at least 1

  bool operator==(const EdidMode&) const = default;
};

struct Edid {
  std::string maker;                  ///< three capital letters; empty where the bytes make none
  std::uint16_t product = 0;          ///< the maker's own number
  std::string name;                   ///< the name by which people know the display; empty where it has none
  std::optional<EdidMode> preferred;  ///< the first detailed timing, for which the display is made
};

/// Reads the first block of 128 bytes; further ones only add to it. Nothing when it is not there in full,
/// does not begin as it should, or does not add up.
std::optional<Edid> ParseEdid(std::span<const std::uint8_t> bytes);

/// The display's name, or, as the panels of laptops rarely have one, maker and product ("AUO3DED"), by which
/// it is known to the system. Empty when it states neither.
std::string MonitorCaption(const Edid& edid);

}  // namespace ostrine
