/// The GUID of a network interface on a system that gives its interfaces names, not GUIDs. Both sides of the
/// contracts derive it from the name alone, so that a card found by one is found again by the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ostrine/guid.h"

namespace velmora {

/// Stable for a name, different for different names for all practical purposes: two 64-bit FNV-1a hashes of
/// the name, marked as a GUID of the custom kind (version 8).
constexpr GUID InterfaceGuid(std::string_view interface_name) noexcept {
  const auto hash = [&](std::uint64_t value) {
    for (const char c : interface_name) {
      value = (value ^ static_cast<unsigned char>(c)) * 0x100000001B3ULL;
    }
    return value;
  };
  constexpr std::uint64_t kBasis = 0xCBF29CE484222325ULL;
  const std::uint64_t high = hash(kBasis);
  const std::uint64_t low = hash(~kBasis);
  GUID guid{};
  guid.Data1 = static_cast<std::uint32_t>(high >> 32);
  guid.Data2 = static_cast<std::uint16_t>(high >> 16 & 0xFFFF);
  guid.Data3 = static_cast<std::uint16_t>((high & 0x0FFF) | 0x8000);
  for (std::size_t i = 0; i < sizeof guid.Data4; ++i) {
    guid.Data4[i] = static_cast<std::uint8_t>(low >> (8 * (sizeof guid.Data4 - 1 - i)) & 0xFF);
  }
  guid.Data4[0] = static_cast<std::uint8_t>((guid.Data4[0] & 0x3F) | 0x80);
  return guid;
}

/// "{4D36E972-E325-11CE-BFC1-08002BE10318}".
inline std::string GuidText(const GUID& guid) {
  std::string text = "{";
  const auto put = [&text](std::uint64_t value, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
      text.push_back("0123456789ABCDEF"[value >> shift & 0xF]);
    }
  };
  put(guid.Data1, 8);
  text.push_back('-');
  put(guid.Data2, 4);
  text.push_back('-');
  put(guid.Data3, 4);
  text.push_back('-');
  for (std::size_t i = 0; i < sizeof guid.Data4; ++i) {
    if (i == 2) text.push_back('-');
    put(guid.Data4[i], 2);
  }
  text.push_back('}');
  return text;
}

}  // namespace velmora
