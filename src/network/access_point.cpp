#include "network/access_point.h"

#include <algorithm>
#include <cstring>

namespace velmora::network {
namespace {

constexpr std::size_t kCount = 4;  // where the list's count stands

std::uint32_t NumberAt(std::span<const std::uint8_t> bytes, std::size_t position) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data() + position, sizeof number);
  return number;
}

}  // namespace

bool AccessPoint::operator==(const AccessPoint& other) const {
  return address == other.address && std::ranges::equal(elements, other.elements);
}

std::optional<AccessPoint> FirstAccessPoint(std::span<const std::uint8_t> list) noexcept {
  if (kAccessPointListHead + kAccessPointEntry > list.size()) return std::nullopt;
  if (NumberAt(list, kCount) == 0) return std::nullopt;
  const auto entry = list.subspan(kAccessPointListHead);  // with everything behind it
  AccessPoint found;
  std::ranges::copy_n(entry.begin() + kAccessPointAddress, found.address.size(), found.address.begin());
  const std::size_t offset = NumberAt(entry, kElementsOffset);
  const std::size_t size = NumberAt(entry, kElementsSize);
  if (offset <= entry.size() && size <= entry.size() - offset) found.elements = entry.subspan(offset, size);
  return found;
}

std::string HexDigits(std::span<const std::uint8_t> bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text.push_back(kDigits[byte >> 4]);
    text.push_back(kDigits[byte & 0xF]);
  }
  return text;
}

std::string NetworkName(std::span<const std::uint8_t, 32> bytes) {
  return {bytes.begin(), std::ranges::find(bytes, std::uint8_t{0})};
}

}  // namespace velmora::network
