#include "platform/linux/internet_settings.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/linux/connectivity.h"
#include "platform/os/last_error.h"
#include "platform/unicode.h"
#include "tests/integration/linux/mock_bus.h"
#include "tests/integration/linux/network_bytes.h"
#include "tests/support/linux/fake_machine.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeMachine;
using ostrine::test::FakeRoot;
using test::AddressMessage;
using test::operator+;
using test::LinkMessage;
using test::RouteMessage;

Environment Of(std::map<std::string, std::string> variables) {
  return [variables = std::move(variables)](const char* name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    if (found == variables.end()) return std::nullopt;
    return found->second;
  };
}

TEST(ProxySettingsOfLinux, AreThoseOfTheEnvironment) {
  const FakeRoot root;
  const auto settings = ReadProxySettings(
      root.Path(),
      Of({{"http_proxy", "http://proxy:3128"}, {"HTTPS_PROXY", "proxy:443"}, {"no_proxy", "localhost"}}));
  EXPECT_EQ(settings.proxy, "http=http://proxy:3128 https=proxy:443");
  EXPECT_EQ(settings.bypass, "localhost");
  EXPECT_EQ(ReadProxySettings(root.Path(), Of({{"all_proxy", "socks5://a:1"}})).proxy, "all=socks5://a:1");
  EXPECT_EQ(ReadProxySettings(root.Path(), Of({})).proxy, "");
}

TEST(ProxySettingsOfLinux, AreThoseOfTheDesktopWithoutAnyInTheEnvironment) {
  const FakeRoot root;
  root.Write("home/me/.config/kioslaverc",
             "[Proxy Settings]\nProxyType=1\nhttpProxy=http://proxy "
             "3128\nNoProxyFor=.example\n[Other]\nProxyType=0\n");
  const std::map<std::string, std::string> desktop{{"HOME", "/home/me"}, {"XDG_CURRENT_DESKTOP", "KDE"}};
  EXPECT_EQ(ReadProxySettings(root.Path(), Of(desktop)).proxy, "http=http://proxy:3128");
  EXPECT_EQ(ReadProxySettings(root.Path(), Of(desktop)).bypass, ".example");
  auto with_variable = desktop;
  with_variable["http_proxy"] = "";
  EXPECT_EQ(ReadProxySettings(root.Path(), Of(with_variable)).proxy, "") << "somebody has switched it off";
  auto elsewhere = desktop;
  elsewhere["XDG_CURRENT_DESKTOP"] = "GNOME";
  EXPECT_EQ(ReadProxySettings(root.Path(), Of(elsewhere)).proxy, "");
}

TEST(ProxySettingsOfLinux, ThatAreFoundOutByTheDesktopItselfAreNone) {
  const FakeRoot root;
  const auto environment =
      Of({{"XDG_CONFIG_HOME", "/conf"}, {"XDG_CURRENT_DESKTOP", "X-Own:KDE"}, {"MY_PROXY", "proxy:1"}});
  for (const char* type : {"0", "2", "3", ""}) {
    root.Write("conf/kioslaverc",
               std::string("[Proxy Settings]\nProxyType=") + type + "\nhttpProxy=http://proxy 3128\n");
    EXPECT_EQ(ReadProxySettings(root.Path(), environment).proxy, "") << type;
  }
  root.Write("conf/kioslaverc", "[Proxy Settings]\nProxyType=4\nhttpProxy=MY_PROXY\nhttpsProxy=NO_SUCH\n");
  EXPECT_EQ(ReadProxySettings(root.Path(), environment).proxy, "http=proxy:1");
}

TEST(ProxyQueries, SayHowMuchRoomTheyNeed) {
  std::uint32_t size = 0;
  EXPECT_FALSE(AnswerProxyQuery({}, 38, nullptr, size));
  EXPECT_EQ(LastError(), 122u);
  EXPECT_EQ(size, 24u);
  std::vector<std::uint64_t> memory(3, 0xEEEEEEEEEEEEEEEE);
  size = 23;
  EXPECT_FALSE(AnswerProxyQuery({}, 38, memory.data(), size));
  EXPECT_EQ(memory[0], 0xEEEEEEEEEEEEEEEE);
  EXPECT_EQ(size, 24u);
  EXPECT_TRUE(AnswerProxyQuery({}, 38, memory.data(), size));
  EXPECT_EQ(static_cast<std::uint32_t>(memory[0]), 1u);
  EXPECT_EQ(memory[1], 0u);
  EXPECT_FALSE(AnswerProxyQuery({}, 39, memory.data(), size));
  EXPECT_EQ(LastError(), 50u);
}

TEST(ProxyQueries, PutTheTextsBehindTheRecord) {
  const ProxySettings settings{.proxy = "http=a:1", .bypass = "b\xC3\xBC"};
  std::uint32_t size = 0;
  AnswerProxyQuery(settings, 38, nullptr, size);
  ASSERT_EQ(size, 24u + 18 + 6);
  std::vector<std::uint64_t> memory(size / 8);
  ASSERT_TRUE(AnswerProxyQuery(settings, 38, memory.data(), size));
  EXPECT_EQ(static_cast<std::uint32_t>(memory[0]), 3u);
  EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(memory[1])), u"http=a:1");
  EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(memory[2])), u"b\u00FC");
  EXPECT_EQ(memory[1], reinterpret_cast<std::uint64_t>(memory.data()) + 24);
}

class Connections : public testing::Test {
 protected:
  Connections() { BuildLaptop(machine_); }
  /// The flags, or -1 when not connected.
  int Ask(const ProxySettings& settings = {}) {
    std::uint32_t flags = 0xFF;
    const int connected = AnswerConnectedState(machine_.Path(), kernel_, settings, flags);
    EXPECT_TRUE(connected == 1 || flags == 0);
    return connected == 1 ? static_cast<int>(flags) : -1;
  }
  Connectivity Known() { return ConnectivityOf(machine_.Path(), *ReadNetworkState(kernel_)); }

  FakeMachine machine_;
  test::FakeKernel kernel_;
};

TEST_F(Connections, AreThereWithARouteToEverywhere) {
  Tell(kernel_, LinkMessage(3, "wlp0s20f3"), AddressMessage(3, "192.168.1.20", 24),
       RouteMessage(3, "192.168.1.1"));
  EXPECT_EQ(Ask(), 2);
  EXPECT_EQ(Ask({.proxy = "http=a:1", .bypass = ""}), 6);
  EXPECT_TRUE(Known().internet);
}

TEST_F(Connections, AreThereOnANetworkThatLeadsNowhere) {
  Tell(kernel_, LinkMessage(3, "wlp0s20f3"), AddressMessage(3, "192.168.1.20", 24), {});
  EXPECT_EQ(Ask(), 2);
  EXPECT_FALSE(Known().internet);
}

TEST_F(Connections, AreNoneWithoutALink) {
  Tell(kernel_, LinkMessage(3, "wlp0s20f3", "", IFF_UP), AddressMessage(3, "192.168.1.20", 24),
       RouteMessage(3, "192.168.1.1"));
  EXPECT_EQ(Ask(), -1);
  Tell(kernel_, LinkMessage(5, "docker0", "bridge"), AddressMessage(5, "172.17.0.1", 16), {});
  EXPECT_EQ(Ask(), -1) << "the machine's own bridge";
  Tell(kernel_, LinkMessage(1, "lo", "", test::kRunning | IFF_LOOPBACK), AddressMessage(1, "127.0.0.1", 8),
       {});
  EXPECT_EQ(Ask(), -1);
}

TEST_F(Connections, OverAModemAreThoseWithNoOtherWay) {
  const auto modem = LinkMessage(8, "ppp0", "ppp", test::kRunning, ARPHRD_PPP);
  Tell(kernel_, modem, AddressMessage(8, "10.0.8.1", 32), RouteMessage(8, ""));
  EXPECT_EQ(Ask(), 1);
  Tell(kernel_, modem + LinkMessage(3, "wlp0s20f3"), {},
       RouteMessage(8, "") + RouteMessage(3, "192.168.1.1", 600));
  EXPECT_EQ(Ask(), 2) << "a tunnel over the wireless network";
}

TEST_F(Connections, AreNotToldWhereTheKernelRefuses) {
  kernel_.Fail(RTM_GETADDR, AF_UNSPEC, EACCES);
  std::uint32_t flags = 7;
  EXPECT_EQ(AnswerConnectedState(machine_.Path(), kernel_, {}, flags), 0);
  EXPECT_EQ(LastError(), 5u);
}

TEST_F(Connections, AreJudgedByTheManagerWhereItHasMadeThem) {
  Tell(kernel_, LinkMessage(3, "wlp0s20f3"), AddressMessage(3, "192.168.1.20", 24),
       RouteMessage(3, "192.168.1.1"));
  const test::PrivateBus bus;
  const test::MockService manager{VELMORA_TEST_FILES "/network_manager_mock.py",
                                  "org.freedesktop.NetworkManager", "/org/freedesktop/NetworkManager"};
  const auto ask = [&] {
    return ConnectivityOf(machine_.Path(), *ReadNetworkState(kernel_), NetworkManager(manager.Connection()));
  };
  manager.Call("org.freedesktop.DBus.Mock", "SetState", {"70", "2"});
  EXPECT_TRUE(ask().connected);
  EXPECT_FALSE(ask().internet) << "a captive portal";
  manager.Call("org.freedesktop.DBus.Mock", "SetState", {"20", "1"});
  EXPECT_TRUE(ask().connected) << "somebody else has connected the machine";
  EXPECT_TRUE(ask().internet);
}

}  // namespace
}  // namespace velmora::os
