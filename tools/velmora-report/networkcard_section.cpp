#include "velmora-report/networkcard_section.h"

#include <velmora/networkcard.h>

#include <algorithm>
#include <optional>

namespace report {
namespace {

/// A card as the section tells of it.
struct Card {
  std::wstring hardware_id;
  std::optional<unsigned long> medium;
  unsigned long problem_code = 0;
};

/// The internal cards, in the library's order; two cards of one ID cannot be told apart and are one here.
std::vector<Card> ListCards(CNetworkCard& cards) {
  std::vector<Card> listed;
  for (const auto& id : cards.GetInternalNetCardHardId()) {
    if (std::ranges::find(listed, id, &Card::hardware_id) != listed.end()) continue;
    Card card{.hardware_id = id, .problem_code = cards.GetProblemCodeByHardId(id)};
    if (unsigned long medium = 0; cards.GetMediaTypeByHardId(id, medium) != 0) card.medium = medium;
    listed.push_back(std::move(card));
  }
  return listed;
}

/// The kind in people's words; null for a card of none.
const char* KindOf(const Card& card) {
  constexpr unsigned long kMobile = 8;
  constexpr unsigned long kWireless = 9;
  constexpr unsigned long kWired = 14;
  if (card.medium == kWireless) return "Wi-Fi";
  if (card.medium == kWired) return "Ethernet";
  if (card.medium == kMobile) return "mobile broadband";
  return nullptr;
}

Rows CardRows(CNetworkCard& cards, const Card& card) {
  const auto& id = card.hardware_id;
  const char* kind = KindOf(card);
  return {
      {"kind", "Kind", kind == nullptr ? Value(Absent{}) : Value(std::string(kind))},
      {"display_name", "Name", TextValue(cards.GetDisplayNameByHardId(id))},
      {"caption", "Description", TextValue(cards.GetCaptionByHardId(id))},
      {"manufacturer", "Maker", TextValue(cards.GetManufactrueByHardId(id))},
      {"hardware_id", "Hardware ID", TextValue(id)},
      {"instance_id", "Instance ID", TextValue(cards.GetInstanceIDByHardId(id))},
      {"driver_version", "Driver version", TextValue(cards.GetDriverVersionByHardId(id))},
      {"inf", "Driver file", TextValue(cards.GetINFByHardId(id))},
      {"problem_code", "Problem code", std::uint64_t{card.problem_code}},
      {"medium", "Physical medium", card.medium ? Value(std::uint64_t{*card.medium}) : Value(Absent{})},
      {"mac_address", "MAC address", TextValue(cards.GetMacAddressByHardId(id))},
      {"guid", "Interface GUID", TextValue(cards.GetGUIDByHardId(id))},
      {"adapter_type", "Adapter type", TextValue(cards.GetAdapterTypeByHardId(id))},
  };
}

std::string CardsVerdict(const std::vector<Card>& cards) {
  if (cards.empty()) return "No internal network card was found.";
  std::string kinds;
  for (const Card& card : cards) {
    const char* kind = KindOf(card);
    kinds += (kinds.empty() ? "" : ", ") + std::string(kind == nullptr ? "of unknown kind" : kind);
  }
  const auto failing = std::ranges::count_if(cards, [](const Card& card) { return card.problem_code != 0; });
  if (cards.size() == 1) {
    return "One internal network card (" + kinds + "), which " + (failing == 0 ? "works." : "has a problem.");
  }
  return std::to_string(cards.size()) + " internal network cards (" + kinds + "), " +
         (failing == 0 ? "all of which work." : std::to_string(failing) + " with a problem.");
}

}  // namespace

Section NetworkCardSection() {
  CNetworkCard cards;
  const auto listed = ListCards(cards);
  List list{.key = "cards", .item_title = "Card"};
  for (const Card& card : listed) list.items.push_back(CardRows(cards, card));
  const auto count = static_cast<std::uint64_t>(std::max(cards.GetNetworkCardNumbers(), 0));
  return {
      .key = "network_cards",
      .title = "Network cards",
      .verdict = CardsVerdict(listed),
      .rows =
          {
              {"count", "Internal cards", count},
              {"wireless", "Wi-Fi card", TextValue(cards.GetWireLessCardHardID())},
              {"wired", "Ethernet card", TextValue(cards.GetWiredCardHardID())},
              {"mobile", "Mobile broadband card", TextValue(cards.GetMobileCardHardID())},
          },
      .lists = {std::move(list)},
  };
}

}  // namespace report
