/// Interfaces, addresses and routes in the kernel's words.
#pragma once

#include <arpa/inet.h>
#include <linux/if_addr.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/socket.h>

#include <string>

#include "platform/linux/network_state.h"
#include "tests/integration/linux/netlink_bytes.h"

namespace velmora::os::test {

inline constexpr unsigned int kRunning = IFF_UP | IFF_RUNNING;

inline ByteVector Ipv4Bytes(const std::string& text) {
  in_addr address{};
  EXPECT_EQ(inet_pton(AF_INET, text.c_str(), &address), 1) << text;
  return BytesOf(address.s_addr);
}

inline ByteVector LinkMessage(int index, const std::string& name, const std::string& kind = {},
                              unsigned int flags = kRunning, unsigned short hardware = ARPHRD_ETHER) {
  ifinfomsg head{};
  head.ifi_index = index;
  head.ifi_type = hardware;
  head.ifi_flags = flags;
  Attributes attributes;
  attributes.Text(IFLA_IFNAME, name).Put(IFLA_ADDRESS, ByteVector{2, 0xFC, 0, 0, 0, 1});
  if (!kind.empty()) attributes.Put(IFLA_LINKINFO, Attributes().Text(IFLA_INFO_KIND, kind));
  return Message(RTM_NEWLINK, head, attributes);
}

/// `valid`: for how long; absent for an address that stays.
inline ByteVector AddressMessage(unsigned int index, const std::string& address, unsigned char prefix,
                                 std::optional<std::uint32_t> valid = {}, std::uint32_t updated = 0) {
  ifaddrmsg head{};
  head.ifa_family = AF_INET;
  head.ifa_prefixlen = prefix;
  head.ifa_flags = valid ? 0 : IFA_F_PERMANENT;
  head.ifa_index = index;
  const ifa_cacheinfo cache{valid.value_or(~0U), valid.value_or(~0U), 0, updated};
  Attributes attributes;
  attributes.Put(IFA_ADDRESS, Ipv4Bytes(address)).Put(IFA_LOCAL, Ipv4Bytes(address));
  attributes.Number<std::uint32_t>(IFA_FLAGS, head.ifa_flags).Put(IFA_CACHEINFO, BytesOf(cache));
  return Message(RTM_NEWADDR, head, attributes);
}

/// A default route; an empty gateway is none.
inline ByteVector RouteMessage(std::uint32_t index, const std::string& gateway, std::uint32_t metric = 0,
                               unsigned char table = RT_TABLE_MAIN) {
  rtmsg head{};
  head.rtm_family = AF_INET;
  head.rtm_table = table;
  head.rtm_type = RTN_UNICAST;
  Attributes attributes;
  attributes.Number<std::uint32_t>(RTA_TABLE, table).Number(RTA_OIF, index).Number(RTA_PRIORITY, metric);
  if (!gateway.empty()) attributes.Put(RTA_GATEWAY, Ipv4Bytes(gateway));
  return Message(RTM_NEWROUTE, head, attributes);
}

/// A kernel with these interfaces, addresses and routes.
inline void Tell(FakeKernel& kernel, const ByteVector& links, const ByteVector& addresses,
                 const ByteVector& routes) {
  kernel.Answer(RTM_GETLINK, AF_UNSPEC, links);
  kernel.Answer(RTM_GETADDR, AF_UNSPEC, addresses);
  kernel.Answer(RTM_GETROUTE, AF_INET, routes);
}

}  // namespace velmora::os::test
