#include "platform/linux/dhcp.h"

#include <gtest/gtest.h>

#include "tests/integration/linux/mock_bus.h"
#include "tests/unit/ostrine/linux/fake_root.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeRoot;

constexpr Moment kNow{.seconds = 1'700'000'000, .hundredths = 500'000};

const NetworkLink kLink{.index = 3, .flags = 0, .hardware = 1, .name = "eth0", .address = {}, .kind = ""};

NetworkAddress Address(const char* text, std::optional<std::uint32_t> valid = {}) {
  NetworkAddress address;
  address.index = kLink.index;
  address.address = ParseIpv4(text).value_or(0);
  address.valid = valid;
  address.updated = 400'000;
  return address;
}

class DhcpFiles : public testing::Test {
 protected:
  ManagedDhcp Ask(const NetworkAddress* address) {
    return DhcpOf(root_.Path(), NetworkManager(nullptr), kLink, address, kNow);
  }
  FakeRoot root_;
};

TEST_F(DhcpFiles, AnAddressThatNobodyKnowsOfIsStatic) {
  const NetworkAddress address = Address("192.0.2.50");
  EXPECT_FALSE(Ask(&address).enabled);
  EXPECT_EQ(Ask(&address).expires, 0);
  EXPECT_FALSE(Ask(nullptr).enabled);
}

TEST_F(DhcpFiles, AnAddressForATimeIsLeasedForThatTime) {
  const NetworkAddress address = Address("192.0.2.50", 1800);
  const ManagedDhcp dhcp = Ask(&address);
  EXPECT_TRUE(dhcp.enabled);
  EXPECT_EQ(dhcp.expires, kNow.seconds + 1800);
  EXPECT_EQ(dhcp.obtained, kNow.seconds - 1000);
}

TEST_F(DhcpFiles, NetworkdsLeaseCountsForItsAddress) {
  root_.Write("run/systemd/netif/leases/3",
              "# private\nADDRESS=192.0.2.50\nSERVER_ADDRESS=192.0.2.1\nLIFETIME=3600\n");
  const NetworkAddress leased = Address("192.0.2.50", 1800);
  EXPECT_TRUE(Ask(&leased).enabled);
  EXPECT_EQ(Ask(&leased).server, "192.0.2.1");
  EXPECT_EQ(Ask(&leased).expires, kNow.seconds + 1800);
  const NetworkAddress other = Address("192.0.2.51");
  EXPECT_FALSE(Ask(&other).enabled) << "the lease was left behind";
}

TEST_F(DhcpFiles, NetworkdsSettingsCountWhileThereIsNoAddress) {
  root_.Write("run/systemd/netif/links/3",
              "ADMIN_STATE=configuring\nNETWORK_FILE=/etc/systemd/network/a.network\n");
  root_.Write("etc/systemd/network/a.network", "[Match]\nName=eth0\n[Network]\nDHCP=ipv4\n");
  EXPECT_TRUE(Ask(nullptr).enabled);
  root_.Write("etc/systemd/network/a.network", "[Match]\nDHCP=yes\n[Network]\nAddress=192.0.2.50/24\n");
  EXPECT_FALSE(Ask(nullptr).enabled);
}

TEST_F(DhcpFiles, ClientsLeaseFilesCountForTheirAddress) {
  root_.Write("var/lib/dhcp/dhclient.eth0.leases",
              "lease { interface \"eth0\"; fixed-address 192.0.2.50; expire epoch 1700009999; }");
  const NetworkAddress leased = Address("192.0.2.50");
  EXPECT_TRUE(Ask(&leased).enabled);
  EXPECT_EQ(Ask(&leased).expires, 1'700'009'999);
  const NetworkAddress other = Address("192.0.2.51");
  EXPECT_FALSE(Ask(&other).enabled);
}

TEST_F(DhcpFiles, RepliesThatAClientKeepsCountForTheirAddress) {
  std::string reply(240, '\0');
  reply[0] = 2;
  reply.replace(16, 4, "\xC0\x00\x02\x32", 4);
  reply.replace(236, 4, "\x63\x82\x53\x63", 4);
  root_.Write("var/lib/dhcpcd/eth0.lease", reply);
  const NetworkAddress leased = Address("192.0.2.50");
  EXPECT_TRUE(Ask(&leased).enabled);
}

class Managed : public testing::Test {
 protected:
  ManagedDhcp Ask(const NetworkAddress* address) {
    return DhcpOf(root_.Path(), NetworkManager(manager_.Connection()), kLink, address, kNow);
  }
  void AddInterface(const char* method, const char* expiry) {
    manager_.Call(test::kMockControl, "AddInterface", {"eth0", method, expiry});
  }

  FakeRoot root_;
  test::PrivateBus bus_;
  test::MockService manager_{VELMORA_TEST_FILES "/network_manager_mock.py", "org.freedesktop.NetworkManager",
                             "/org/freedesktop/NetworkManager"};
};

TEST_F(Managed, TheLeaseIsTheManagers) {
  AddInterface("auto", "1700005000");
  const NetworkAddress address = Address("192.0.2.50", 1800);
  const ManagedDhcp dhcp = Ask(&address);
  EXPECT_TRUE(dhcp.enabled);
  EXPECT_EQ(dhcp.expires, 1'700'005'000);
  EXPECT_EQ(dhcp.obtained, 1'700'001'400);
  EXPECT_EQ(dhcp.server, "192.0.2.1");
}

TEST_F(Managed, SettingsDecideWithoutALease) {
  AddInterface("manual", "");
  const NetworkAddress address = Address("192.0.2.50");
  EXPECT_FALSE(Ask(&address).enabled);
}

TEST_F(Managed, AConnectionThatWaitsForItsLeaseIsOneByDhcp) {
  AddInterface("auto", "");
  EXPECT_TRUE(Ask(nullptr).enabled);
}

TEST_F(Managed, AnInterfaceThatIsLeftAloneIsLookedAtWithoutTheManager) {
  AddInterface("unmanaged", "");
  const NetworkAddress address = Address("192.0.2.50", 1800);
  EXPECT_EQ(Ask(&address).expires, kNow.seconds + 1800);
  const NetworkAddress other = Address("192.0.2.50");
  EXPECT_FALSE(Ask(&other).enabled);
}

TEST_F(Managed, AnInterfaceThatTheManagerDoesNotKnowIsLookedAtWithoutIt) {
  const NetworkAddress address = Address("192.0.2.50", 1800);
  EXPECT_TRUE(Ask(&address).enabled);
}

TEST_F(Managed, ConnectivityIsThatOfTheCheckIfThereIsOne) {
  const auto ask = [&] { return NetworkManager(manager_.Connection()).Connectivity(); };
  manager_.Call(test::kMockControl, "SetState", {"70", "4"});
  EXPECT_TRUE(ask()->connected);
  EXPECT_EQ(ask()->internet, true);
  manager_.Call(test::kMockControl, "SetState", {"60", "2"});
  EXPECT_TRUE(ask()->connected);
  EXPECT_EQ(ask()->internet, false) << "behind a captive portal";
  manager_.Call(test::kMockControl, "SetState", {"70", "0"});
  EXPECT_EQ(ask()->internet, true) << "no check is made, and a default route is there";
  manager_.Call(test::kMockControl, "SetState", {"20", "1"});
  EXPECT_FALSE(ask()->connected);
  EXPECT_FALSE(NetworkManager(nullptr).Connectivity());
}

}  // namespace
}  // namespace velmora::os
