#include "platform/linux/network_state.h"

#include <arpa/inet.h>
#include <linux/if_addr.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/socket.h>

#include <algorithm>
#include <charconv>

namespace velmora::os {
namespace {

/// The four bytes of an attribute as an address.
std::optional<Ipv4> FindIpv4(Bytes attributes, std::uint16_t type) noexcept {
  const auto value = FindNumber<std::uint32_t>(attributes, type);
  return value ? std::optional<Ipv4>(ntohl(*value)) : std::nullopt;
}

std::optional<NetworkLink> ParseLink(Bytes payload) {
  const auto head = TakeRecord<ifinfomsg>(payload);
  if (!head || head->ifi_index <= 0) return std::nullopt;
  NetworkLink link;
  link.index = static_cast<std::uint32_t>(head->ifi_index);
  link.flags = head->ifi_flags;
  link.hardware = head->ifi_type;
  link.name = FindText(payload, IFLA_IFNAME);
  const auto address = FindAttribute(payload, IFLA_ADDRESS).value_or(Bytes());
  link.address.assign(address.begin(), address.end());
  link.kind = FindText(FindAttribute(payload, IFLA_LINKINFO).value_or(Bytes()), IFLA_INFO_KIND);
  if (link.name.empty()) return std::nullopt;
  return link;
}

std::optional<NetworkAddress> ParseAddress(Bytes payload) {
  const auto head = TakeRecord<ifaddrmsg>(payload);
  const bool is_known = head && (head->ifa_family == AF_INET || head->ifa_family == AF_INET6);
  if (!is_known) return std::nullopt;
  NetworkAddress address;
  address.index = head->ifa_index;
  address.is_ipv6 = head->ifa_family == AF_INET6;
  address.is_global = head->ifa_scope < RT_SCOPE_LINK;
  const std::uint32_t flags = FindNumber<std::uint32_t>(payload, IFA_FLAGS).value_or(head->ifa_flags);
  if ((flags & (IFA_F_DADFAILED | IFA_F_TENTATIVE)) != 0) return std::nullopt;
  if (const auto cache = FindNumber<ifa_cacheinfo>(payload, IFA_CACHEINFO)) {
    constexpr std::uint32_t kForEver = 0xFFFFFFFF;
    if ((flags & IFA_F_PERMANENT) == 0 && cache->ifa_valid != kForEver) address.valid = cache->ifa_valid;
    address.updated = cache->tstamp;
  }
  if (address.is_ipv6) return address;
  // Of a link with two ends the local address is this machine's; elsewhere both are the same.
  auto own = FindIpv4(payload, IFA_LOCAL);
  if (!own) own = FindIpv4(payload, IFA_ADDRESS);
  constexpr unsigned int kLongestPrefix = 32;
  if (!own || head->ifa_prefixlen > kLongestPrefix) return std::nullopt;
  address.address = *own;
  address.prefix_length = head->ifa_prefixlen;
  return address;
}

/// One next hop: the attributes that tell it, and its interface.
void AppendHop(const DefaultRoute& common, std::uint32_t index, Bytes attributes,
               std::vector<DefaultRoute>& routes) {
  DefaultRoute route = common;
  route.index = index;
  if (!route.is_ipv6) route.gateway = FindIpv4(attributes, RTA_GATEWAY);
  routes.push_back(route);
}

void AppendHops(const DefaultRoute& common, Bytes hops, std::vector<DefaultRoute>& routes) {
  while (hops.size() >= sizeof(rtnexthop)) {
    Bytes hop = hops;
    const auto head = TakeRecord<rtnexthop>(hop);
    if (!head || head->rtnh_len < sizeof(rtnexthop) || head->rtnh_len > hops.size()) return;
    const bool is_usable =
        (head->rtnh_flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) == 0 && head->rtnh_ifindex > 0;
    const Bytes attributes = hops.subspan(sizeof(rtnexthop), head->rtnh_len - sizeof(rtnexthop));
    if (is_usable) AppendHop(common, static_cast<std::uint32_t>(head->rtnh_ifindex), attributes, routes);
    hops = hops.subspan(std::min<std::size_t>((head->rtnh_len + 3U) & ~3U, hops.size()));
  }
}

void AppendRoutes(Bytes payload, std::vector<DefaultRoute>& routes) {
  const auto head = TakeRecord<rtmsg>(payload);
  const bool is_default = head && (head->rtm_family == AF_INET || head->rtm_family == AF_INET6) &&
                          head->rtm_dst_len == 0 && head->rtm_type == RTN_UNICAST &&
                          (head->rtm_flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN | RTM_F_CLONED)) == 0;
  if (!is_default) return;
  const std::uint32_t table = FindNumber<std::uint32_t>(payload, RTA_TABLE).value_or(head->rtm_table);
  if (table != RT_TABLE_MAIN) return;
  DefaultRoute route;
  route.is_ipv6 = head->rtm_family == AF_INET6;
  route.metric = FindNumber<std::uint32_t>(payload, RTA_PRIORITY).value_or(0);
  if (const auto hops = FindAttribute(payload, RTA_MULTIPATH)) {
    AppendHops(route, *hops, routes);
  } else if (const auto index = FindNumber<std::uint32_t>(payload, RTA_OIF)) {
    AppendHop(route, *index, payload, routes);
  }
}

/// Those of the lowest metric first; of the same metric in the kernel's order.
void AddInOrder(const std::vector<DefaultRoute>& routes, std::vector<DefaultRoute>& ordered) {
  for (const DefaultRoute& route : routes) {
    const auto place =
        std::upper_bound(ordered.begin(), ordered.end(), route,
                         [](const DefaultRoute& a, const DefaultRoute& b) { return a.metric < b.metric; });
    ordered.insert(place, route);
  }
}

/// Calls `read` with the payload of each message of that type.
template <class Read>
void ForEachOf(std::uint16_t type, Bytes messages, Read read) {
  while (const auto message = TakeMessage(messages)) {
    if (message->type == type) read(message->payload);
  }
}

}  // namespace

bool NetworkLink::IsRunning() const noexcept { return (flags & IFF_UP) != 0 && (flags & IFF_RUNNING) != 0; }
bool NetworkLink::IsLoopback() const noexcept { return (flags & IFF_LOOPBACK) != 0; }

std::string TextOf(Ipv4 address) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    text += std::to_string(address >> shift & 0xFF);
    if (shift > 0) text.push_back('.');
  }
  return text;
}

Ipv4 MaskOf(unsigned int length) noexcept {
  constexpr unsigned int kBits = 32;
  return length == 0 ? 0 : ~Ipv4{0} << (kBits - std::min(length, kBits));
}

std::optional<Ipv4> ParseIpv4(std::string_view text) noexcept {
  Ipv4 address = 0;
  for (int part = 0; part < 4; ++part) {
    const bool has_point = text.starts_with('.');
    if (has_point != (part > 0)) return std::nullopt;
    if (has_point) text.remove_prefix(1);
    std::uint8_t number = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
    address = address << 8 | number;
  }
  return text.empty() ? std::optional<Ipv4>(address) : std::nullopt;
}

std::vector<NetworkLink> ParseLinks(Bytes messages) {
  std::vector<NetworkLink> links;
  ForEachOf(RTM_NEWLINK, messages, [&](Bytes payload) {
    if (auto link = ParseLink(payload)) links.push_back(std::move(*link));
  });
  return links;
}

std::vector<NetworkAddress> ParseAddresses(Bytes messages) {
  std::vector<NetworkAddress> addresses;
  ForEachOf(RTM_NEWADDR, messages, [&](Bytes payload) {
    if (const auto address = ParseAddress(payload)) addresses.push_back(*address);
  });
  return addresses;
}

std::vector<DefaultRoute> ParseDefaultRoutes(Bytes messages) {
  std::vector<DefaultRoute> routes;
  ForEachOf(RTM_NEWROUTE, messages, [&](Bytes payload) { AppendRoutes(payload, routes); });
  return routes;
}

std::optional<NetworkState> ReadNetworkState(Netlink& netlink, Routes wanted) {
  const auto ask_routes = [&netlink](std::uint8_t family) {
    rtmsg head{};
    head.rtm_family = family;
    return netlink.Ask({RTM_GETROUTE, Extent::kAll, head});
  };
  const auto links = netlink.Ask({RTM_GETLINK, Extent::kAll, ifinfomsg{}});
  if (!links) return std::nullopt;
  const auto addresses = netlink.Ask({RTM_GETADDR, Extent::kAll, ifaddrmsg{}});
  if (!addresses) return std::nullopt;
  const auto routes = ask_routes(AF_INET);
  if (!routes) return std::nullopt;
  NetworkState state{ParseLinks(*links), ParseAddresses(*addresses), {}};
  AddInOrder(ParseDefaultRoutes(*routes), state.routes);
  if (wanted == Routes::kAll) {
    if (const auto more = ask_routes(AF_INET6)) {  // a kernel may be without
      AddInOrder(ParseDefaultRoutes(*more), state.routes);
    }
  }
  std::sort(state.links.begin(), state.links.end(),
            [](const NetworkLink& a, const NetworkLink& b) { return a.index < b.index; });
  return state;
}

}  // namespace velmora::os
