#include "velmora-report/access_points_section.h"

#include <velmora/networkadapter.h>

#include <cstddef>
#include <utility>

#include "velmora-report/utf8.h"

namespace report {
namespace {

/// What an access point tells of itself comes from outside: its bytes may be in any code page.
Value OutsideText(const std::string& bytes) { return bytes.empty() ? Value(Absent{}) : Value(ToUtf8(bytes)); }

std::string FoundVerdict(std::size_t found, std::size_t asked) {
  return "The access points of " + std::to_string(found) + " of " + std::to_string(asked) +
         " networks are known.";
}

}  // namespace

Section AccessPointsSection(const std::vector<std::string>& names) {
  CNetworkAdapter network;
  List list{.key = "access_points", .item_title = "Network"};
  std::size_t found = 0;
  for (const std::string& name : names) {
    std::string head;
    std::string last;
    std::string manufacturer;
    std::string model;
    network.GetMacBySsid(head, last, name, manufacturer, model);
    if (!head.empty()) ++found;
    list.items.push_back({{"name", "Name", name},
                          {"mac_head", "First half of the address", OutsideText(head)},
                          {"mac_last", "Second half of the address", OutsideText(last)},
                          {"manufacturer", "Maker", OutsideText(manufacturer)},
                          {"model", "Model", OutsideText(model)}});
  }
  return {.key = "access_points",
          .title = "Access points",
          .verdict = FoundVerdict(found, names.size()),
          .rows = {},
          .lists = {std::move(list)}};
}

}  // namespace report
