#include "platform/os/com.h"

#include <gtest/gtest.h>

#include <clocale>

#include "platform/linux/com_object.h"
#include "platform/linux/firewall.h"
#include "platform/os/firewall_policy.h"
#include "platform/os/network_list.h"
#include "tests/integration/linux/network_namespace.h"
#include "tests/integration/linux/without_bus.h"
#include "tests/unit/ostrine/linux/fake_root.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeRoot;

constexpr std::uint32_t kAnywhere = 23;
constexpr GUID kNetworkList{0xDCB00C01, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr GUID kNetworkListInterface{
    0xDCB00000, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr GUID kFirewall{0xE2B3C97F, 0x6AE1, 0x41AC, {0x81, 0x7A, 0xF6, 0xF9, 0x21, 0x66, 0xD7, 0xDD}};
constexpr GUID kFirewallInterface{
    0x98325047, 0xC671, 0x4174, {0x8D, 0x81, 0xDE, 0xFC, 0xD3, 0xF0, 0x31, 0x86}};
constexpr GUID kRuleInterface{0xAF230D27, 0xBABA, 0x4E42, {0xAC, 0xED, 0xF5, 0x24, 0xF2, 0x2C, 0xFC, 0xE2}};

TEST(Objects, AreOfTwoClasses) {
  int place = 0;
  ComObject object = &place;
  EXPECT_EQ(CoCreateInstance(kRuleInterface, kAnywhere, kRuleInterface, object), kComClassNotRegistered);
  EXPECT_EQ(object, nullptr);
  object = &place;
  EXPECT_EQ(CoCreateInstance(kNetworkList, kAnywhere, kFirewallInterface, object), kComNoInterface);
  EXPECT_EQ(object, nullptr);
  for (const auto& [made, interface] :
       {std::pair(kNetworkList, kNetworkListInterface), std::pair(kFirewall, kFirewallInterface)}) {
    ASSERT_EQ(CoCreateInstance(made, kAnywhere, interface, object), kComOk);
    EXPECT_NE(object, nullptr);
    ComRelease(object);
  }
  ComRelease(nullptr);
}

TEST(Objects, LiveAsLongAsOneOfTheirInterfaces) {
  ComObject object = nullptr;
  ASSERT_EQ(CoCreateInstance(kNetworkList, kAnywhere, kNetworkListInterface, object), kComOk);
  ComObject other = nullptr;
  ASSERT_EQ(ComQueryInterface(object, kNetworkListInterface, other), kComOk);
  ComRelease(object);
  VariantBool connected = 7;
  EXPECT_EQ(NetworkListIsConnected(other, connected), kComOk);
  EXPECT_TRUE(connected == kVariantTrue || connected == 0);
  ComObject none = &connected;
  EXPECT_EQ(ComQueryInterface(other, kRuleInterface, none), kComNoInterface);
  EXPECT_EQ(none, nullptr);
  ComRelease(other);
}

TEST(Objects, AreNotTakenForEachOther) {
  ComObject firewall = nullptr;
  ASSERT_EQ(CoCreateInstance(kFirewall, kAnywhere, kFirewallInterface, firewall), kComOk);
  VariantBool connected = 7;
  EXPECT_FALSE(ComSucceeded(NetworkListIsConnected(firewall, connected)));
  EXPECT_FALSE(ComSucceeded(NetworkListIsConnectedToInternet(nullptr, connected)));
  EXPECT_EQ(connected, 7);
  ComRelease(firewall);
}

TEST(NetworkList, FollowsTheKernelsRoutes) {
  const auto ask = [] {
    const test::NoBus no_bus;
    ComObject list = nullptr;
    CoCreateInstance(kNetworkList, kAnywhere, kNetworkListInterface, list);
    VariantBool connected = 7;
    VariantBool internet = 7;
    NetworkListIsConnected(list, connected);
    NetworkListIsConnectedToInternet(list, internet);
    ComRelease(list);
    return std::to_string(connected) + " " + std::to_string(internet);
  };
  EXPECT_EQ(test::InNetworkNamespace("ip link set lo up", ask), "0 0");
  EXPECT_EQ(
      test::InNetworkNamespace("ip link add one type veth peer name two; ip addr add 192.0.2.7/25 dev one;"
                               "ip link set one up; ip link set two up;"
                               "ip route add default via 192.0.2.1",
                               ask),
      "-1 -1");
}

TEST(Firewall, IsTheOneThatIsSetUp) {
  const FakeRoot root;
  EXPECT_FALSE(IsFirewallOn(root.Path(), nullptr));
  root.Write("etc/ufw/ufw.conf", "# ENABLED=yes\nENABLED=no\nLOGLEVEL=low\n");
  EXPECT_EQ(IsFirewallOn(root.Path(), nullptr), false);
  root.Write("etc/ufw/ufw.conf", "ENABLED=yes\n");
  EXPECT_EQ(IsFirewallOn(root.Path(), nullptr), true);
  root.Write("etc/ufw/ufw.conf", "ENABLED=perhaps\n");
  EXPECT_FALSE(IsFirewallOn(root.Path(), nullptr));
}

TEST(Firewall, IsOnWhileItsServiceRuns) {
  const FakeRoot root;
  const test::PrivateBus bus;
  const Bus connection = ConnectToSystemBus();
  EXPECT_FALSE(IsFirewallOn(root.Path(), connection.get()));
  const test::MockService service{VELMORA_TEST_FILES "/firewalld_mock.py", "org.fedoraproject.FirewallD1",
                                  "/org/fedoraproject/FirewallD1"};
  EXPECT_EQ(IsFirewallOn(root.Path(), connection.get()), true);
}

TEST(Firewall, AnswersForEveryProfileAndShowsNoRules) {
  const test::NoBus no_bus;
  const FakeRoot root;
  root.Write("etc/ufw/ufw.conf", "ENABLED=yes\n");
  ComObject policy = nullptr;
  ASSERT_EQ(MakeObject(root.Path(), kFirewall, kFirewallInterface, policy), kComOk);
  for (const std::int32_t profile : {1, 2, 4}) {
    VariantBool enabled = 7;
    EXPECT_EQ(FirewallIsEnabled(policy, profile, enabled), kComOk);
    EXPECT_EQ(enabled, kVariantTrue);
  }
  VariantBool enabled = 7;
  EXPECT_FALSE(ComSucceeded(FirewallIsEnabled(policy, 8, enabled)));
  ComObject rules = &enabled;
  EXPECT_EQ(FirewallRules(policy, rules), kComNotImplemented);
  EXPECT_EQ(rules, nullptr);
  std::filesystem::remove(root.Path() / "etc/ufw/ufw.conf");
  EXPECT_EQ(FirewallIsEnabled(policy, 4, enabled), kComFail);
  EXPECT_EQ(enabled, 7);
  ComRelease(policy);
}

TEST(Locales, StayAsTheyAreWhereTheSystemHasNoneOfThatName) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  SetProcessLocale(L"no such locale");
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
  SetProcessLocale(L"C");
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
  std::setlocale(LC_ALL, before.c_str());
}

}  // namespace
}  // namespace velmora::os
