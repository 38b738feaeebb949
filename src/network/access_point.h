#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace velmora::network {

/// The first access point of the service's list for a network.
struct AccessPoint {
  std::array<std::uint8_t, 6> address{};   ///< its hardware address
  std::span<const std::uint8_t> elements;  ///< what it announced, within the list

  bool operator==(const AccessPoint& other) const;
};

/// The list as it lies in memory: its whole size and a count, then entries of 360 bytes, then what they
/// announced, each block at an offset from its own entry.
inline constexpr std::size_t kAccessPointListHead = 8;
inline constexpr std::size_t kAccessPointEntry = 360;
inline constexpr std::size_t kAccessPointAddress = 40;  ///< within an entry, likewise
inline constexpr std::size_t kElementsOffset = 352;
inline constexpr std::size_t kElementsSize = 356;

/// The first access point of a list that lies in `list`; nothing when the list counts none or is too short to
/// hold it. A block of elements that does not lie in the list whole is none.
std::optional<AccessPoint> FirstAccessPoint(std::span<const std::uint8_t> list) noexcept;

/// Bytes as pairs of upper-case hexadecimal digits, "001A2B".
std::string HexDigits(std::span<const std::uint8_t> bytes);

/// The name of a network: its bytes up to the first zero. The length that a record states is not believed.
std::string NetworkName(std::span<const std::uint8_t, 32> bytes);

}  // namespace velmora::network
