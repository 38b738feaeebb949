#include "platform/linux/wifi_elements.h"

#include <algorithm>
#include <array>

namespace velmora::os {
namespace {

constexpr std::uint8_t kSsid = 0;
constexpr std::uint8_t kRates = 1;
constexpr std::uint8_t kErp = 42;
constexpr std::uint8_t kHt = 45;
constexpr std::uint8_t kRsn = 48;
constexpr std::uint8_t kVht = 191;
constexpr std::uint8_t kVendor = 221;
constexpr std::uint8_t kExtension = 255;
constexpr std::uint8_t kHe = 35;    ///< of an extension
constexpr std::uint8_t kEht = 108;  ///< of an extension

constexpr std::array<std::uint8_t, 3> kStandards{0x00, 0x0F, 0xAC};
constexpr std::array<std::uint8_t, 3> kVendors{0x00, 0x50, 0xF2};
constexpr std::uint8_t kWpa = 1;

struct Element {
  std::uint8_t id = 0;
  Bytes value;
};

std::optional<Element> TakeElement(Bytes& elements) noexcept {
  constexpr std::size_t kHead = 2;
  if (kHead > elements.size() || elements[1] > elements.size() - kHead) return std::nullopt;
  const Element element{elements[0], elements.subspan(kHead, elements[1])};
  elements = elements.subspan(kHead + element.value.size());
  return element;
}

template <class Wanted>
std::optional<Bytes> FindIf(Bytes elements, Wanted is_wanted) noexcept {
  while (const auto element = TakeElement(elements)) {
    if (is_wanted(*element)) return element->value;
  }
  return std::nullopt;
}

bool HasExtension(Bytes elements, std::uint8_t id) noexcept {
  return FindIf(elements,
                [id](const Element& element) {
                  return element.id == kExtension && !element.value.empty() && element.value[0] == id;
                })
      .has_value();
}

/// What stands behind the maker's number and the kind of the WPA element.
std::optional<Bytes> FindWpa(Bytes elements) noexcept {
  constexpr std::size_t kHead = kVendors.size() + 1;
  const auto found = FindIf(elements, [](const Element& element) {
    return element.id == kVendor && element.value.size() > kVendors.size() &&
           std::equal(kVendors.begin(), kVendors.end(), element.value.begin()) &&
           element.value[kVendors.size()] == kWpa;
  });
  if (!found) return std::nullopt;
  return found->subspan(kHead);
}

/// One suite: whose it is, and its number among theirs.
struct Suite {
  bool is_known = false;
  std::uint8_t number = 0;
};

Suite SuiteOf(Bytes bytes, const std::array<std::uint8_t, 3>& maker) noexcept {
  return {std::equal(maker.begin(), maker.end(), bytes.begin()), bytes[maker.size()]};
}

/// Takes a list of suites off the front and gives its first; none that is known when the list is empty or
/// broken.
Suite TakeFirstSuite(Bytes& bytes, const std::array<std::uint8_t, 3>& maker) noexcept {
  constexpr std::size_t kSuite = 4;
  const auto low = bytes.size() >= 2 ? std::size_t{bytes[0]} | std::size_t{bytes[1]} << 8 : 0;
  if (low == 0 || low > (bytes.size() - 2) / kSuite) {
    bytes = {};
    return {};
  }
  const Suite first = SuiteOf(bytes.subspan(2, kSuite), maker);
  bytes = bytes.subspan(2 + low * kSuite);
  return first;
}

std::uint32_t CipherOf(Suite suite) noexcept {
  return suite.is_known ? suite.number : 0;  // the standard's numbers are those of the records
}

std::uint32_t RsnAuthenticationOf(Suite suite) noexcept {
  constexpr std::uint32_t kRsna = 6;
  constexpr std::uint32_t kRsnaWithKey = 7;
  constexpr std::uint32_t kSae = 9;
  constexpr std::uint32_t kOwe = 10;
  if (!suite.is_known) return kRsna;
  switch (suite.number) {
    case 2:  // pre-shared key
    case 4:  // the same with fast transition
    case 6:  // the same with SHA-256
      return kRsnaWithKey;
    case 8:  // simultaneous authentication of equals
    case 9:
      return kSae;
    case 18:  // opportunistic wireless encryption
      return kOwe;
    default:
      return kRsna;
  }
}

}  // namespace

std::optional<Bytes> FindElement(Bytes elements, std::uint8_t id) noexcept {
  return FindIf(elements, [id](const Element& element) { return element.id == id; });
}

Bytes SsidOf(Bytes elements) noexcept {
  constexpr std::size_t kLongest = 32;
  const Bytes name = FindElement(elements, kSsid).value_or(Bytes());
  return name.first(std::min(name.size(), kLongest));
}

WifiSecurity SecurityOf(Bytes elements, bool is_private) noexcept {
  constexpr std::size_t kRsnHead = 6;  // version and group cipher
  constexpr std::uint32_t kWpaAuthentication = 3;
  constexpr std::uint32_t kWpaWithKey = 4;
  constexpr std::uint32_t kWep = 0x101;
  constexpr std::uint8_t kWithKey = 2;
  if (auto rsn = FindElement(elements, kRsn); rsn && rsn->size() >= kRsnHead) {
    Bytes rest = rsn->subspan(kRsnHead);
    const Suite cipher = TakeFirstSuite(rest, kStandards);
    return {RsnAuthenticationOf(TakeFirstSuite(rest, kStandards)), CipherOf(cipher)};
  }
  if (auto wpa = FindWpa(elements); wpa && wpa->size() >= kRsnHead) {
    Bytes rest = wpa->subspan(kRsnHead);
    const Suite cipher = TakeFirstSuite(rest, kVendors);
    const Suite key = TakeFirstSuite(rest, kVendors);
    const bool has_key = key.is_known && key.number == kWithKey;
    return {has_key ? kWpaWithKey : kWpaAuthentication, CipherOf(cipher)};
  }
  return {.authentication = 1, .cipher = is_private ? kWep : 0};
}

std::uint32_t PhyTypeOf(Bytes elements, std::uint32_t megahertz) noexcept {
  constexpr std::uint32_t kHigherBands = 4000;
  constexpr std::size_t kOldRates = 4;
  if (HasExtension(elements, kEht)) return 11;
  if (HasExtension(elements, kHe)) return 10;
  if (FindElement(elements, kVht)) return 8;
  if (FindElement(elements, kHt)) return 7;
  if (megahertz > kHigherBands) return 4;
  const auto rates = FindElement(elements, kRates);
  return FindElement(elements, kErp) || (rates && rates->size() > kOldRates) ? 6 : 5;
}

}  // namespace velmora::os
