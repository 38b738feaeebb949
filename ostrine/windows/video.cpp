#include "ostrine/common/video.h"

#include <windows.h>

#include <vector>

#include "ostrine/common/video_rules.h"
#include "ostrine/windows/device_set.h"
#include "ostrine/windows/property_keys.h"
#include "ostrine/windows/video_rules.h"
#include "platform/ostrine/setup_class.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

constexpr std::uint16_t kAmd = 0x1002;
constexpr std::uint16_t kAmdProcessors = 0x1022;

/// Whether a function of AMD's processor side stands on the same bus, as the security processor does beside
/// the graphics of an APU.
bool IsInPackage(std::uint32_t bus) {
  const DeviceSet devices;
  const auto found = devices.Find([&](const Device& device) {
    return TraitsOfHardwareId(device.FirstHardwareId()).vendor == kAmdProcessors &&
           device.Number(property_key::kBusNumber) == bus;
  });
  return found.has_value();
}

VideoCardTraits TraitsOf(const Device& device) {
  VideoCardTraits traits = TraitsOfHardwareId(device.FirstHardwareId());
  if (traits.vendor == 0) return traits;
  const auto bus = device.Number(property_key::kBusNumber);
  traits.is_on_root_bus = bus == 0u;
  traits.is_in_package = traits.vendor == kAmd && bus && *bus != 0 && IsInPackage(*bus);
  return traits;
}

/// What `read` tells of the display adapter `card`; nothing when it has gone.
template <class Read>
auto OfCard(std::uint64_t card, Read read) -> decltype(read(std::declval<const Device&>())) {
  const DeviceSet adapters(velmora::setup_class::kDisplay);
  const auto device = adapters.Find([&](const Device& adapter) { return adapter.Node() == card; });
  if (!device) return std::nullopt;
  return read(*device);
}

std::string CardText(const Device& device, CardFact fact) {
  if (fact == CardFact::kName) return velmora::unicode::Utf8FromWide(device.Text(SPDRP_DEVICEDESC));
  if (fact == CardFact::kDriverVersion) {
    return velmora::unicode::Utf8FromWide(device.Text(property_key::kDriverVersion));
  }
  const auto date = device.Time(property_key::kDriverDate);
  if (fact != CardFact::kDriverDate || !date) return {};
  return DateText(std::uint64_t{date->dwHighDateTime} << 32 | date->dwLowDateTime);
}

}  // namespace

VideoCards FindVideoCards() {
  std::vector<VideoCardTraits> traits;
  std::vector<std::uint64_t> nodes;
  const DeviceSet adapters(velmora::setup_class::kDisplay);
  adapters.ForEach([&](const Device& device) {
    traits.push_back(TraitsOf(device));
    nodes.push_back(device.Node());
  });
  const VideoCardChoice choice = ChooseVideoCards(traits);
  VideoCards cards{.count = choice.count};
  if (choice.internal) cards.internal = nodes[*choice.internal];
  if (choice.independent) cards.independent = nodes[*choice.independent];
  return cards;
}

std::optional<std::string> ReadCardText(std::uint64_t card, CardFact fact) {
  return OfCard(card, [&](const Device& device) -> std::optional<std::string> {
    std::string text = CardText(device, fact);
    if (text.empty()) return std::nullopt;
    return text;
  });
}

std::optional<std::uint64_t> ReadCardMemory(std::uint64_t card) {
  return OfCard(card, [](const Device& device) {
    return MemoryOfDriverValues(device.DriverValue(L"HardwareInformation.qwMemorySize"),
                                device.DriverValue(L"HardwareInformation.MemorySize"));
  });
}

std::optional<std::uint32_t> ReadCardProblem(std::uint64_t card) {
  return OfCard(card, [](const Device& device) { return std::optional(device.ProblemCode()); });
}

}  // namespace ostrine
