#include "platform/linux/wifi_scan.h"

#include <linux/genetlink.h>
#include <linux/nl80211.h>

#include <algorithm>
#include <cerrno>
#include <tuple>

namespace velmora::os {
namespace {

constexpr std::int32_t kWeakest = -100;
constexpr std::int32_t kStrongest = -50;

genlmsghdr Command(std::uint8_t command, std::uint8_t version) {
  genlmsghdr head{};
  head.cmd = command;
  head.version = version;
  return head;
}

/// Calls `read` with the attributes of each message of the family with that command.
template <class Read>
void ForEachOf(std::uint16_t family, std::uint8_t command, Bytes messages, Read read) {
  while (const auto message = TakeMessage(messages)) {
    Bytes payload = message->payload;
    const auto head = TakeRecord<genlmsghdr>(payload);
    if (message->type == family && head && head->cmd == command) read(payload);
  }
}

/// The percentage of a hardware that knows no units, as the strength that it stands for.
std::int32_t StrengthOf(std::uint8_t percentage) noexcept {
  return kWeakest + (kStrongest - kWeakest) * std::min<std::int32_t>(percentage, 100) / 100;
}

std::int32_t SignalOf(Bytes bss) noexcept {
  constexpr std::int32_t kHundredths = 100;
  if (const auto hundredths = FindNumber<std::int32_t>(bss, NL80211_BSS_SIGNAL_MBM))
    return *hundredths / kHundredths;
  const auto percentage = FindNumber<std::uint8_t>(bss, NL80211_BSS_SIGNAL_UNSPEC);
  return percentage ? StrengthOf(*percentage) : kWeakest;
}

std::optional<AccessPoint> ParseBss(Bytes bss) {
  const auto address = FindAttribute(bss, NL80211_BSS_BSSID);
  AccessPoint point;
  if (!address || address->size() != point.address.size()) return std::nullopt;
  std::copy(address->begin(), address->end(), point.address.begin());
  point.megahertz = FindNumber<std::uint32_t>(bss, NL80211_BSS_FREQUENCY).value_or(0);
  point.timestamp = FindNumber<std::uint64_t>(bss, NL80211_BSS_TSF).value_or(0);
  point.beacon_interval = FindNumber<std::uint16_t>(bss, NL80211_BSS_BEACON_INTERVAL).value_or(0);
  point.capability = FindNumber<std::uint16_t>(bss, NL80211_BSS_CAPABILITY).value_or(0);
  point.signal = SignalOf(bss);
  point.age = FindNumber<std::uint32_t>(bss, NL80211_BSS_SEEN_MS_AGO).value_or(0);
  const auto status = FindNumber<std::uint32_t>(bss, NL80211_BSS_STATUS);
  point.is_connected = status == NL80211_BSS_STATUS_ASSOCIATED || status == NL80211_BSS_STATUS_IBSS_JOINED;
  // Those of the answer to a question where there was one: it has more in it than a beacon.
  auto elements = FindAttribute(bss, NL80211_BSS_INFORMATION_ELEMENTS);
  if (!elements) elements = FindAttribute(bss, NL80211_BSS_BEACON_IES);
  if (elements) point.elements.assign(elements->begin(), elements->end());
  return point;
}

}  // namespace

bool AccessPoint::IsPrivate() const noexcept { return (capability & 0x10U) != 0; }
bool AccessPoint::IsAdHoc() const noexcept { return (capability & 0x02U) != 0; }

std::uint32_t AccessPoint::Quality() const noexcept {
  return static_cast<std::uint32_t>(2 * (std::clamp(signal, kWeakest, kStrongest) - kWeakest));
}

std::optional<std::uint16_t> ParseFamily(Bytes messages) {
  std::optional<std::uint16_t> family;
  ForEachOf(GENL_ID_CTRL, CTRL_CMD_NEWFAMILY, messages, [&](Bytes attributes) {
    const auto id = FindNumber<std::uint16_t>(attributes, CTRL_ATTR_FAMILY_ID);
    if (id && FindText(attributes, CTRL_ATTR_FAMILY_NAME) == NL80211_GENL_NAME) family = id;
  });
  return family;
}

std::vector<WifiInterface> ParseWifiInterfaces(Bytes messages, std::uint16_t family) {
  std::vector<WifiInterface> interfaces;
  ForEachOf(family, NL80211_CMD_NEW_INTERFACE, messages, [&](Bytes attributes) {
    WifiInterface interface;
    interface.index = FindNumber<std::uint32_t>(attributes, NL80211_ATTR_IFINDEX).value_or(0);
    interface.name = FindText(attributes, NL80211_ATTR_IFNAME);
    interface.mode = FindNumber<std::uint32_t>(attributes, NL80211_ATTR_IFTYPE).value_or(0);
    if (interface.index != 0 && !interface.name.empty()) interfaces.push_back(std::move(interface));
  });
  return interfaces;
}

std::vector<AccessPoint> ParseScan(Bytes messages, std::uint16_t family) {
  std::vector<AccessPoint> points;
  ForEachOf(family, NL80211_CMD_NEW_SCAN_RESULTS, messages, [&](Bytes attributes) {
    const auto bss = FindAttribute(attributes, NL80211_ATTR_BSS);
    auto point = bss ? ParseBss(*bss) : std::nullopt;
    if (point) points.push_back(std::move(*point));
  });
  return points;
}

std::optional<std::uint16_t> FindWifiFamily(Netlink& netlink) {
  NetlinkRequest request(GENL_ID_CTRL, Extent::kOne, Command(CTRL_CMD_GETFAMILY, 1));
  request.PutText(CTRL_ATTR_FAMILY_NAME, NL80211_GENL_NAME);
  const auto answer = netlink.Ask(request);
  const auto family = answer ? ParseFamily(*answer) : std::nullopt;
  if (answer && !family) errno = ENOENT;
  return family;
}

std::optional<std::vector<WifiInterface>> ReadWifiInterfaces(Netlink& netlink, std::uint16_t family) {
  const auto answer = netlink.Ask({family, Extent::kAll, Command(NL80211_CMD_GET_INTERFACE, 0)});
  if (!answer) return std::nullopt;
  auto interfaces = ParseWifiInterfaces(*answer, family);
  // An access point of this machine's own, a monitor and the like are no clients.
  std::erase_if(interfaces, [](const WifiInterface& interface) {
    return interface.mode != NL80211_IFTYPE_STATION && interface.mode != NL80211_IFTYPE_ADHOC;
  });
  std::sort(interfaces.begin(), interfaces.end(),
            [](const WifiInterface& a, const WifiInterface& b) { return a.index < b.index; });
  return interfaces;
}

std::optional<std::vector<AccessPoint>> ReadScan(Netlink& netlink, std::uint16_t family,
                                                 std::uint32_t interface) {
  NetlinkRequest request(family, Extent::kAll, Command(NL80211_CMD_GET_SCAN, 0));
  request.PutNumber(NL80211_ATTR_IFINDEX, interface);
  const auto answer = netlink.Ask(request);
  if (!answer) return std::nullopt;
  auto points = ParseScan(*answer, family);
  std::sort(points.begin(), points.end(), [](const AccessPoint& a, const AccessPoint& b) {
    return std::tuple(!a.is_connected, b.signal, a.address) <
           std::tuple(!b.is_connected, a.signal, b.address);
  });
  return points;
}

}  // namespace velmora::os
