#include "platform/linux/adapters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/netlink.h>

#include <cstdlib>
#include <fstream>

#include "platform/linux/adapter_name.h"
#include "platform/linux/network_interface.h"
#include "platform/os/clock.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/interface_guid.h"
#include "platform/ostrine/setup_class.h"
#include "platform/unicode.h"
#include "tests/integration/linux/network_bytes.h"
#include "tests/integration/linux/network_namespace.h"
#include "tests/integration/linux/without_bus.h"
#include "tests/support/linux/fake_machine.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeMachine;
using test::AddressMessage;
using test::operator+;
using test::ByteVector;
using test::LinkMessage;
using test::RouteMessage;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// The list as a caller keeps it.
struct Listed {
  std::uint32_t result = 0;
  std::vector<std::uint64_t> memory;  // aligned as the records are

  std::vector<const AdapterInfo*> All() const {
    std::vector<const AdapterInfo*> all;
    if (result != 0 || memory.empty()) return all;
    for (auto* at = reinterpret_cast<const AdapterInfo*>(memory.data()); at != nullptr; at = at->next)
      all.push_back(at);
    return all;
  }
  const AdapterInfo* Find(const std::string& name) const {
    for (const AdapterInfo* adapter : All()) {
      if (adapter->name == GuidText(InterfaceGuid(name))) return adapter;
    }
    return nullptr;
  }
};

Listed List(const std::filesystem::path& root, Netlink& netlink) {
  Listed listed;
  std::uint32_t size = 0;
  listed.result = FillAdaptersInfo(root, netlink, nullptr, size);
  if (listed.result != 111) return listed;
  listed.memory.resize((size + 7) / 8);
  listed.result = FillAdaptersInfo(root, netlink, reinterpret_cast<AdapterInfo*>(listed.memory.data()), size);
  return listed;
}

/// The laptop of today: enp0s31f6 has number 2, wlp0s20f3 number 3.
class Laptop : public testing::Test {
 protected:
  Laptop() {
    BuildLaptop(machine_);
    machine_.WriteFile("usr/share/misc/pci.ids", "8086  Intel Corporation\n\t51f0  Wi-Fi 6E AX211 160MHz\n");
  }
  Listed List() { return velmora::os::List(machine_.Path(), kernel_); }

  const ByteVector kCards = LinkMessage(2, "enp0s31f6") + LinkMessage(3, "wlp0s20f3");
  test::NoBus no_bus_;
  FakeMachine machine_;
  ostrine::test::ActsOn acts_on_{machine_};
  test::FakeKernel kernel_;
};

using Adapters = Laptop;

TEST_F(Adapters, AreTheCardsWithTheirAddressesAndGateways) {
  Tell(kernel_, kCards, AddressMessage(3, "192.168.1.20", 24) + AddressMessage(3, "192.168.1.21", 24),
       RouteMessage(3, "192.168.1.1", 600));
  const Listed listed = List();
  ASSERT_THAT(listed.All(), SizeIs(2));
  const AdapterInfo* wireless = listed.Find("wlp0s20f3");
  ASSERT_NE(wireless, nullptr);
  EXPECT_EQ(wireless->type, 71u);
  EXPECT_EQ(wireless->index, 3u);
  EXPECT_STREQ(wireless->ip_addresses.address, "192.168.1.20");
  EXPECT_STREQ(wireless->ip_addresses.mask, "255.255.255.0");
  ASSERT_NE(wireless->ip_addresses.next, nullptr);
  EXPECT_STREQ(wireless->ip_addresses.next->address, "192.168.1.21");
  EXPECT_EQ(wireless->ip_addresses.next->next, nullptr);
  EXPECT_STREQ(wireless->gateways.address, "192.168.1.1");
  EXPECT_EQ(wireless->address_length, 6u);
  EXPECT_EQ(wireless->address[1], 0xFC);
  const AdapterInfo* wired = listed.Find("enp0s31f6");
  ASSERT_NE(wired, nullptr);
  EXPECT_EQ(wired->type, 6u);
  EXPECT_STREQ(wired->ip_addresses.address, "0.0.0.0");
  EXPECT_STREQ(wired->gateways.address, "0.0.0.0");
}

TEST_F(Adapters, AreDescribedAsTheirDevicesAre) {
  Tell(kernel_, kCards, {}, {});
  const Listed listed = List();
  CDeviceInformention devices;
  const auto captions = devices.GetDeviceDesc(setup_class::kNet);
  for (const AdapterInfo* adapter : listed.All()) {
    EXPECT_THAT(captions, testing::Contains(unicode::WideFromUtf8(adapter->description)));
  }
  EXPECT_THAT(listed.Find("wlp0s20f3")->description, HasSubstr("AX211"));
}

TEST_F(Adapters, HaveNoAddressWhileTheirLinkIsDown) {
  Tell(kernel_, LinkMessage(3, "wlp0s20f3", "", IFF_UP), AddressMessage(3, "192.168.1.20", 24),
       RouteMessage(3, "192.168.1.1"));
  const Listed listed = List();
  ASSERT_THAT(listed.All(), SizeIs(1));
  EXPECT_STREQ(listed.All()[0]->ip_addresses.address, "0.0.0.0");
  EXPECT_STREQ(listed.All()[0]->gateways.address, "0.0.0.0");
}

TEST_F(Adapters, OfTheKernelsMakingAreThereWithAnAddressOnly) {
  Tell(kernel_,
       LinkMessage(1, "lo", "", test::kRunning | IFF_LOOPBACK) + LinkMessage(5, "veth1", "veth") +
           LinkMessage(6, "docker0", "bridge"),
       AddressMessage(1, "127.0.0.1", 8) + AddressMessage(6, "172.17.0.1", 16), {});
  const Listed listed = List();
  ASSERT_THAT(listed.All(), SizeIs(1));
  EXPECT_EQ(listed.All()[0]->type, 53u) << "a bridge of containers is no Ethernet";
  EXPECT_STREQ(listed.All()[0]->description, "Virtual Adapter (bridge)");
}

TEST_F(Adapters, OfTunnelsAreMiniports) {
  Tell(kernel_,
       LinkMessage(5, "wg0", "wireguard", test::kRunning, ARPHRD_NONE) +
           LinkMessage(6, "tun0", "tun", test::kRunning, ARPHRD_NONE) +
           LinkMessage(7, "vnet0", "tun", test::kRunning, ARPHRD_ETHER) +
           LinkMessage(8, "ppp0", "ppp", test::kRunning, ARPHRD_PPP),
       AddressMessage(5, "10.0.5.1", 24) + AddressMessage(6, "10.0.6.1", 24) +
           AddressMessage(7, "10.0.7.1", 24) + AddressMessage(8, "10.0.8.1", 32),
       {});
  const Listed listed = List();
  EXPECT_STREQ(listed.Find("wg0")->description, "WAN Miniport (wireguard)");
  EXPECT_EQ(listed.Find("wg0")->type, 131u);
  EXPECT_STREQ(listed.Find("tun0")->description, "WAN Miniport (tun)");
  EXPECT_STREQ(listed.Find("vnet0")->description, "Virtual Adapter (tun)") << "a virtual machine's";
  EXPECT_STREQ(listed.Find("ppp0")->description, "WAN Miniport (ppp)");
  EXPECT_EQ(listed.Find("ppp0")->type, 23u);
}

TEST_F(Adapters, OnTopOfOthersAreOfTheTypeOfTheHardwareBelow) {
  machine_.AddOfClass("net", "virtual/net/br0", {{"type", "1"}});
  machine_.WriteFile("sys/devices/virtual/net/br0/lower_bond0/placeholder", "");
  machine_.AddOfClass("net", "virtual/net/bond0", {{"type", "1"}});
  machine_.WriteFile("sys/devices/virtual/net/bond0/lower_enp0s31f6/placeholder", "");
  machine_.AddOfClass("net", "virtual/net/loop0", {{"type", "1"}});
  machine_.WriteFile("sys/devices/virtual/net/loop0/lower_loop0/placeholder", "");
  EXPECT_EQ(MediumOf(machine_.Path(), "br0"), Medium::kWired);
  EXPECT_EQ(MediumOf(machine_.Path(), "loop0"), Medium::kNone);
  Tell(kernel_, LinkMessage(9, "br0", "bridge"), AddressMessage(9, "192.0.2.9", 24), {});
  EXPECT_EQ(List().Find("br0")->type, 6u);
}

TEST_F(Adapters, OfMobileBroadbandAreKnownByTheirKind) {
  machine_.Add("usb", "pci0000:00/0000:00:14.0/usb1/1-9/1-9:1.8",
               {{"modalias", "usb:v1199p9079d0006dc00dsc00dp00icFFiscFFipFFin08"}});
  const std::string place = "pci0000:00/0000:00:14.0/usb1/1-9/1-9:1.8/net/wwan0";
  machine_.AddOfClass("net", place,
                      {{"type", "65534"}, {"ifindex", "4"}, {"uevent", "DEVTYPE=wwan\nINTERFACE=wwan0"}});
  machine_.Root().Link("sys/devices/" + place + "/device", "../../../1-9:1.8");
  Tell(kernel_, LinkMessage(4, "wwan0", "", test::kRunning, ARPHRD_NONE), AddressMessage(4, "10.7.7.7", 30),
       RouteMessage(4, ""));
  const Listed listed = List();
  ASSERT_THAT(listed.All(), SizeIs(1));
  EXPECT_EQ(listed.All()[0]->type, 243u);
  EXPECT_STREQ(listed.All()[0]->gateways.address, "0.0.0.0");
}

TEST_F(Adapters, ThatAreFurtherInterfacesOfACardAreVirtual) {
  const std::string place = "pci0000:00/0000:00:14.3/net/uap0";
  machine_.AddOfClass("net", place, {{"type", "1"}, {"ifindex", "9"}, {"phy80211/index", "0"}});
  machine_.Root().Link("sys/devices/" + place + "/device", "../../../0000:00:14.3");
  Tell(kernel_, kCards + LinkMessage(9, "uap0"), AddressMessage(9, "10.42.0.1", 24), {});
  const Listed listed = List();
  ASSERT_THAT(listed.All(), SizeIs(3));
  EXPECT_EQ(listed.Find("uap0")->type, 71u);
  EXPECT_THAT(listed.Find("uap0")->description, HasSubstr("Virtual"));
}

TEST_F(Adapters, TellTheLeaseThatTheKernelKnows) {
  Tell(kernel_, kCards, AddressMessage(2, "192.0.2.2", 24) + AddressMessage(3, "192.168.1.20", 24, 3600), {});
  const Listed listed = List();
  EXPECT_EQ(listed.Find("enp0s31f6")->dhcp_enabled, 0u);
  EXPECT_EQ(listed.Find("enp0s31f6")->lease_expires, 0);
  EXPECT_EQ(listed.Find("wlp0s20f3")->dhcp_enabled, 1u);
  const auto now = SystemTime() / 10'000'000;
  EXPECT_NEAR(static_cast<double>(listed.Find("wlp0s20f3")->lease_expires), static_cast<double>(now + 3600),
              5);
  EXPECT_LE(listed.Find("wlp0s20f3")->lease_obtained, now);
}

TEST_F(Adapters, AreNoneWithoutACard) {
  Tell(kernel_, LinkMessage(1, "lo", "", test::kRunning | IFF_LOOPBACK), AddressMessage(1, "127.0.0.1", 8),
       {});
  std::uint32_t size = 0;
  EXPECT_EQ(FillAdaptersInfo(machine_.Path(), kernel_, nullptr, size), 232u);
  kernel_.Fail(RTM_GETLINK, AF_UNSPEC, EACCES);
  EXPECT_EQ(FillAdaptersInfo(machine_.Path(), kernel_, nullptr, size), 5u);
}

TEST_F(Adapters, FillNothingOfAListThatIsTooSmall) {
  Tell(kernel_, kCards, {}, {});
  std::vector<std::uint64_t> memory(sizeof(AdapterInfo) / 8, 0xEEEEEEEEEEEEEEEE);
  std::uint32_t size = sizeof(AdapterInfo);
  auto* list = reinterpret_cast<AdapterInfo*>(memory.data());
  EXPECT_EQ(FillAdaptersInfo(machine_.Path(), kernel_, list, size), 111u);
  EXPECT_EQ(size, 2 * sizeof(AdapterInfo));
  for (const std::uint64_t word : memory) EXPECT_EQ(word, 0xEEEEEEEEEEEEEEEE);
}

TEST(AdapterLists, LieInTheirOwnMemory) {
  std::vector<Adapter> adapters(2);
  adapters[0].description = std::string(130, 'a') + "\xC3\xBC";
  adapters[0].ip_addresses.resize(3);
  adapters[1].gateways.resize(2);
  const std::size_t size = SizeOf(adapters);
  EXPECT_EQ(size, 2 * sizeof(AdapterInfo) + 3 * sizeof(IpAddressText));
  std::vector<std::uint64_t> memory(size / 8, 0xEE);
  auto* list = reinterpret_cast<AdapterInfo*>(memory.data());
  PutAdapters(adapters, list);
  const auto begin = reinterpret_cast<std::uintptr_t>(memory.data());
  int count = 0;
  for (const AdapterInfo* at = list; at != nullptr; at = at->next) {
    for (const IpAddressText* head : {&at->ip_addresses, &at->gateways}) {
      for (const IpAddressText* text = head; text != nullptr; text = text->next, ++count) {
        const auto place = reinterpret_cast<std::uintptr_t>(text);
        EXPECT_TRUE(place >= begin && place + sizeof *text <= begin + size);
      }
    }
  }
  EXPECT_EQ(count, 7);
  EXPECT_EQ(list->description, std::string(130, 'a')) << "a character is not cut in two";
}

TEST(AdaptersOfThisMachine, HaveTheirHardwareAddress) {
  NetlinkSocket netlink(NETLINK_ROUTE);
  const Listed listed = List("/", netlink);
  const auto cards = ListCards("/");
  ASSERT_THAT(cards, testing::Not(IsEmpty())) << "this machine has no network card";
  for (const std::string& card : cards) {
    const AdapterInfo* adapter = listed.Find(card);
    ASSERT_NE(adapter, nullptr) << card;
    std::ifstream file("/sys/class/net/" + card + "/address");
    std::string expected;
    file >> expected;
    std::string found;
    for (std::uint32_t i = 0; i < adapter->address_length; ++i) {
      char text[4];
      std::snprintf(text, sizeof text, i == 0 ? "%02x" : ":%02x", adapter->address[i]);
      found += text;
    }
    EXPECT_EQ(found, expected);
    EXPECT_STRNE(adapter->description, "");
  }
}

TEST(AdaptersOfARealNetwork, TellStaticFromLeased) {
  const std::string told = test::InNetworkNamespace(
      "ip link add one type veth peer name two; ip addr add 192.0.2.7/25 dev one;"
      "ip addr add 10.1.2.3/8 dev two valid_lft 3600 preferred_lft 1800; ip link set one up; ip link set two "
      "up;"
      "ip route add default via 192.0.2.1 dev one",
      [] {
        const test::NoBus no_bus;
        NetlinkSocket netlink(NETLINK_ROUTE);
        const Listed listed = List("/", netlink);
        std::string text;
        for (const AdapterInfo* adapter : listed.All()) {
          text += std::string(adapter->ip_addresses.address) + " " + adapter->ip_addresses.mask + " " +
                  adapter->gateways.address + " " + std::to_string(adapter->dhcp_enabled) +
                  (adapter->lease_expires > 0 ? " leased;" : " static;");
        }
        return text;
      });
  EXPECT_THAT(told, HasSubstr("192.0.2.7 255.255.255.128 192.0.2.1 0 static;"));
  EXPECT_THAT(told, HasSubstr("10.1.2.3 255.0.0.0 0.0.0.0 1 leased;"));
}

}  // namespace
}  // namespace velmora::os
