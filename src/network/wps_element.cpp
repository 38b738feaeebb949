#include "network/wps_element.h"

#include <algorithm>
#include <array>
#include <optional>

namespace velmora::network {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kElementHead = 2;  // id and length
constexpr std::uint8_t kVendorSpecific = 221;
constexpr std::array<std::uint8_t, 4> kProtectedSetup{0x00, 0x50, 0xF2, 0x04};
constexpr std::size_t kShortestElement = 19;
constexpr std::size_t kFirstLength = 22;   // of the attribute that is passed over
constexpr std::size_t kAttributeHead = 4;  // type and length, two bytes each
constexpr std::size_t kLengthLowByte = 3;  // within an attribute's head

/// The value of the attribute that begins at `position`; nothing when it does not lie in `payload` whole.
std::optional<Bytes> AttributeAt(Bytes payload, std::size_t position) {
  if (position > payload.size() || kAttributeHead > payload.size() - position) return std::nullopt;
  const std::size_t length = payload[position + kLengthLowByte];
  const Bytes rest = payload.subspan(position + kAttributeHead);
  if (length > rest.size()) return std::nullopt;
  return rest.first(length);
}

std::string CharactersOf(Bytes value) {
  const auto end = std::ranges::find(value, std::uint8_t{0});
  return {value.begin(), end};
}

AccessPointTexts TextsOf(Bytes payload) {
  AccessPointTexts texts;
  if (payload.size() <= kFirstLength) return texts;
  const std::size_t first = kFirstLength + 1 + payload[kFirstLength];
  const auto manufacturer = AttributeAt(payload, first);
  if (!manufacturer) return texts;
  texts.manufacturer = CharactersOf(*manufacturer);
  const auto model = AttributeAt(payload, first + kAttributeHead + manufacturer->size());
  if (model) texts.model = CharactersOf(*model);
  return texts;
}

/// `length` is the one that the element states; the payload can be shorter where the elements end before.
bool IsProtectedSetup(std::uint8_t id, std::size_t length, Bytes payload) {
  return id == kVendorSpecific && length >= kShortestElement && payload.size() >= kProtectedSetup.size() &&
         std::ranges::equal(payload.first(kProtectedSetup.size()), kProtectedSetup);
}

}  // namespace

AccessPointTexts ReadAccessPointTexts(Bytes elements) {
  Bytes last;  // only the last one counts, so only that one is read
  while (elements.size() >= kElementHead) {
    const std::uint8_t id = elements[0];
    const std::size_t length = elements[1];
    elements = elements.subspan(kElementHead);
    const Bytes payload = elements.first(std::min(length, elements.size()));
    elements = elements.subspan(payload.size());
    if (IsProtectedSetup(id, length, payload)) last = payload;
  }
  return TextsOf(last);
}

}  // namespace velmora::network
