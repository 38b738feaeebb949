#include "platform/linux/network_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ifaddrs.h>
#include <linux/netlink.h>

#include <fstream>

#include "tests/integration/linux/network_bytes.h"
#include "tests/integration/linux/network_namespace.h"

namespace velmora::os {
namespace {

using test::AddressMessage;
using test::operator+;
using test::Attributes;
using test::ByteVector;
using test::LinkMessage;
using test::RouteMessage;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(Ipv4Texts, AreFourNumbers) {
  EXPECT_EQ(TextOf(0xC0000202), "192.0.2.2");
  EXPECT_EQ(TextOf(0), "0.0.0.0");
  EXPECT_EQ(ParseIpv4("192.0.2.2"), 0xC0000202u);
  EXPECT_EQ(ParseIpv4("255.255.255.255"), 0xFFFFFFFFu);
  for (const char* none :
       {"", "1.2.3", "1.2.3.4.5", "256.0.0.0", "1.2.3.4 ", " 1.2.3.4", "1..2.3", "a.b.c.d", "1.2.3.-4"}) {
    EXPECT_FALSE(ParseIpv4(none)) << none;
  }
}

TEST(Ipv4Masks, HaveAsManyBitsAsThePrefix) {
  EXPECT_EQ(TextOf(MaskOf(0)), "0.0.0.0");
  EXPECT_EQ(TextOf(MaskOf(24)), "255.255.255.0");
  EXPECT_EQ(TextOf(MaskOf(32)), "255.255.255.255");
}

TEST(Links, TellWhatTheyAre) {
  const auto links = ParseLinks(LinkMessage(2, "eth0") + LinkMessage(7, "br0", "bridge", IFF_UP));
  ASSERT_THAT(links, SizeIs(2));
  EXPECT_EQ(links[0].index, 2u);
  EXPECT_EQ(links[0].name, "eth0");
  EXPECT_THAT(links[0].address, ElementsAre(2, 0xFC, 0, 0, 0, 1));
  EXPECT_TRUE(links[0].IsRunning());
  EXPECT_EQ(links[1].kind, "bridge");
  EXPECT_FALSE(links[1].IsRunning()) << "up, but without a carrier";
}

TEST(Addresses, TellHowLongTheyAreValid) {
  const auto addresses =
      ParseAddresses(AddressMessage(2, "192.0.2.2", 24) + AddressMessage(3, "10.0.0.9", 8, 3600, 4200));
  ASSERT_THAT(addresses, SizeIs(2));
  EXPECT_EQ(TextOf(addresses[0].address), "192.0.2.2");
  EXPECT_EQ(addresses[0].prefix_length, 24u);
  EXPECT_FALSE(addresses[0].valid);
  EXPECT_TRUE(addresses[0].is_global);
  EXPECT_EQ(addresses[1].valid, 3600u);
  EXPECT_EQ(addresses[1].updated, 4200u);
}

TEST(Addresses, OfALinkWithTwoEndsAreThisEnds) {
  ifaddrmsg head{};
  head.ifa_family = AF_INET;
  head.ifa_prefixlen = 32;
  head.ifa_index = 4;
  const Attributes both =
      Attributes().Put(IFA_ADDRESS, test::Ipv4Bytes("10.8.0.1")).Put(IFA_LOCAL, test::Ipv4Bytes("10.8.0.2"));
  const auto addresses = ParseAddresses(test::Message(RTM_NEWADDR, head, both));
  ASSERT_THAT(addresses, SizeIs(1));
  EXPECT_EQ(TextOf(addresses[0].address), "10.8.0.2");
}

TEST(Addresses, WithAnImpossiblePrefixAreLeftOut) {
  EXPECT_THAT(ParseAddresses(AddressMessage(2, "192.0.2.2", 33)), IsEmpty());
}

TEST(Routes, AreTheDefaultOnesOfTheMainTable) {
  rtmsg network{};
  network.rtm_family = AF_INET;
  network.rtm_dst_len = 24;
  network.rtm_table = RT_TABLE_MAIN;
  network.rtm_type = RTN_UNICAST;
  rtmsg unreachable = network;
  unreachable.rtm_dst_len = 0;
  unreachable.rtm_type = RTN_UNREACHABLE;
  const auto routes = ParseDefaultRoutes(
      RouteMessage(2, "192.0.2.1", 100) + RouteMessage(3, "", 50) + RouteMessage(4, "10.0.0.1", 0, 77) +
      test::Message(RTM_NEWROUTE, network) + test::Message(RTM_NEWROUTE, unreachable));
  ASSERT_THAT(routes, SizeIs(2));
  EXPECT_EQ(routes[0].gateway, 0xC0000201u);
  EXPECT_EQ(routes[0].metric, 100u);
  EXPECT_FALSE(routes[1].gateway) << "the interface itself is the way";
}

TEST(Routes, OverSeveralWaysCountForEach) {
  rtmsg head{};
  head.rtm_family = AF_INET;
  head.rtm_table = RT_TABLE_MAIN;
  head.rtm_type = RTN_UNICAST;
  const auto hop = [](int index, unsigned char flags, const std::string& gateway) {
    const Attributes way = Attributes().Put(RTA_GATEWAY, test::Ipv4Bytes(gateway));
    rtnexthop record{};
    record.rtnh_len = static_cast<unsigned short>(sizeof record + way.Bytes().size());
    record.rtnh_flags = flags;
    record.rtnh_ifindex = index;
    return test::BytesOf(record) + way.Bytes();
  };
  const ByteVector hops = hop(2, 0, "192.0.2.1") + hop(3, RTNH_F_DEAD, "192.0.3.1") + hop(4, 0, "192.0.4.1");
  const auto routes =
      ParseDefaultRoutes(test::Message(RTM_NEWROUTE, head, Attributes().Put(RTA_MULTIPATH, hops)));
  ASSERT_THAT(routes, SizeIs(2));
  EXPECT_EQ(routes[0].index, 2u);
  EXPECT_EQ(routes[1].gateway, 0xC0000401u);
}

TEST(NetworkStates, PutTheBestRouteFirst) {
  test::FakeKernel kernel;
  test::Tell(kernel, LinkMessage(3, "wlan0") + LinkMessage(2, "eth0"), {},
             RouteMessage(2, "192.0.2.1", 600) + RouteMessage(3, "192.0.3.1", 100));
  const auto state = ReadNetworkState(kernel);
  ASSERT_TRUE(state);
  EXPECT_EQ(state->links[0].name, "eth0");
  EXPECT_EQ(state->routes[0].index, 3u);
}

TEST(NetworkStates, AreNoneWhereTheKernelRefuses) {
  for (const std::uint16_t question : {RTM_GETLINK, RTM_GETADDR}) {
    test::FakeKernel kernel;
    kernel.Fail(question, AF_UNSPEC, EACCES);
    EXPECT_FALSE(ReadNetworkState(kernel));
    EXPECT_EQ(errno, EACCES);
  }
}

TEST(NetworkStates, OfThisMachineAreThoseThatTheSystemTells) {
  NetlinkSocket netlink(NETLINK_ROUTE);
  const auto state = ReadNetworkState(netlink);
  ASSERT_TRUE(state) << errno;
  std::vector<std::pair<std::string, std::string>> expected;
  ifaddrs* list = nullptr;
  ASSERT_EQ(getifaddrs(&list), 0);
  for (const ifaddrs* at = list; at != nullptr; at = at->ifa_next) {
    if (at->ifa_addr == nullptr || at->ifa_addr->sa_family != AF_INET) continue;
    char text[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(at->ifa_addr)->sin_addr, text, sizeof text);
    expected.emplace_back(at->ifa_name, text);
  }
  freeifaddrs(list);
  std::vector<std::pair<std::string, std::string>> found;
  for (const auto& address : state->addresses) {
    char name[IF_NAMESIZE] = {};
    if (address.is_ipv6 || if_indextoname(address.index, name) == nullptr) continue;
    found.emplace_back(name, TextOf(address.address));
  }
  EXPECT_FALSE(found.empty());
  EXPECT_EQ(found, expected);
  for (const auto& link : state->links) EXPECT_EQ(if_nametoindex(link.name.c_str()), link.index);
}

TEST(NetworkStates, FollowARealNetwork) {
  const std::string told = test::InNetworkNamespace(
      "ip link add one type veth peer name two; ip addr add 192.0.2.7/25 dev one;"
      "ip addr add 10.1.2.3/8 dev two valid_lft 3600 preferred_lft 1800;"
      "ip link set one up; ip link set two up; ip route add default via 192.0.2.1 dev one metric 9;"
      "ip route add default via 10.9.9.9 dev two metric 3",
      [] {
        NetlinkSocket netlink(NETLINK_ROUTE);
        const auto state = ReadNetworkState(netlink);
        if (!state) return std::string("no state");
        std::string text;
        for (const auto& link : state->links) text += link.name + "=" + link.kind + " ";
        for (const auto& address : state->addresses) {
          if (address.is_ipv6) continue;
          text += TextOf(address.address) + "/" + std::to_string(address.prefix_length) +
                  (address.valid && *address.valid > 3500 && *address.valid <= 3600 ? "+ " : " ");
        }
        for (const auto& route : state->routes) text += "via " + TextOf(route.gateway.value_or(0)) + " ";
        return text;
      });
  EXPECT_THAT(told, testing::HasSubstr("one=veth"));
  EXPECT_THAT(told, testing::HasSubstr("192.0.2.7/25 "));
  EXPECT_THAT(told, testing::HasSubstr("10.1.2.3/8+ "));
  EXPECT_THAT(told, testing::HasSubstr("via 10.9.9.9 via 192.0.2.1"));
}

TEST(NetworkStates, AreReadInOneGoWhateverTheirSize) {
  const std::string told = test::InNetworkNamespace(
      "ip link add base type veth peer name other; ip link set base up;"
      "for i in $(seq 250); do for j in 1 2 3; do echo addr add 10.$j.$i.1/24 dev base; done; done > "
      "/dev/shm/$$.ip;"
      "ip -batch /dev/shm/$$.ip; rm /dev/shm/$$.ip",
      [] {
        NetlinkSocket netlink(NETLINK_ROUTE);
        const auto state = ReadNetworkState(netlink);
        return state ? std::to_string(state->addresses.size()) : std::string("none");
      });
  EXPECT_GE(std::atoi(told.c_str()), 750) << told;
}

}  // namespace
}  // namespace velmora::os
