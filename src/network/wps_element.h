#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace velmora::network {

/// What an access point tells about itself by Wi-Fi Protected Setup.
struct AccessPointTexts {
  std::string manufacturer;
  std::string model;

  bool operator==(const AccessPointTexts&) const = default;
};

/// Reads the texts out of the elements that an access point announced. An element is an id, a length and as
/// many bytes; used are vendor elements (221) of at least 19 bytes that begin with 00 50 F2 04. In them the
/// texts are read at fixed positions, which fits the elements that access points announce: the attribute
/// whose length is the byte at 22 is passed over, the next one's value is the manufacturer, the next one's
/// the model. Attribute types are not looked at, and of an attribute's length only the low byte. A text ends
/// at its first zero; one that reaches past its element is not there. Of several such elements the last
/// counts.
AccessPointTexts ReadAccessPointTexts(std::span<const std::uint8_t> elements);

}  // namespace velmora::network
