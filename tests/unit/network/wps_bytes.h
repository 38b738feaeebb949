/// Elements as access points announce them, to be put together in tests.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace wps {

using Bytes = std::vector<std::uint8_t>;

inline Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

inline Bytes Characters(std::string_view text) { return {text.begin(), text.end()}; }

inline Bytes Attribute(std::uint16_t type, const Bytes& value) {
  return Bytes{static_cast<std::uint8_t>(type >> 8), static_cast<std::uint8_t>(type & 0xFF),
               static_cast<std::uint8_t>(value.size() >> 8), static_cast<std::uint8_t>(value.size() & 0xFF)} +
         value;
}

/// The 19 bytes from the first OUI byte to the first attribute of variable length.
inline Bytes Beginning() {
  return Bytes{0x00, 0x50, 0xF2, 0x04} + Attribute(0x104A, {0x10}) + Attribute(0x1044, {0x02}) +
         Attribute(0x103B, {0x03});
}

/// What stands in an element: the attribute that is passed over, then manufacturer and model.
inline Bytes Payload(std::string_view manufacturer, std::string_view model, std::size_t passed_over = 16) {
  return Beginning() + Attribute(0x1047, Bytes(passed_over, 0xEE)) +
         Attribute(0x1021, Characters(manufacturer)) + Attribute(0x1023, Characters(model));
}

inline Bytes Element(std::uint8_t id, const Bytes& payload) {
  return Bytes{id, static_cast<std::uint8_t>(payload.size())} + payload;
}

inline Bytes ProtectedSetup(std::string_view manufacturer, std::string_view model,
                            std::size_t passed_over = 16) {
  return Element(221, Payload(manufacturer, model, passed_over));
}

}  // namespace wps
