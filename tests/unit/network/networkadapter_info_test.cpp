/// The record of facts about the wireless adapter's address.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/simulator/allocations.h"
#include "tests/unit/network/adapter_machine.h"
#include "velmora/networkadapter.h"

namespace {

using namespace network_test;
using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

simulator::Adapter& FirstAdapter(simulator::Machine& machine) { return machine.adapters->list[0]; }

static_assert(std::is_standard_layout_v<stIP_INFO> && sizeof(stIP_INFO::dhcpEnabled) == 4);
static_assert(offsetof(stIP_INFO, dhcpEnabled) == 0 && offsetof(stIP_INFO, leaseExpired) == 4 &&
              offsetof(stIP_INFO, proxySet) == 5 && offsetof(stIP_INFO, vpnOpen) == 6 &&
              offsetof(stIP_INFO, firewallEnabled) == 7 && offsetof(stIP_INFO, outboundRuleBlocked) == 8 &&
              offsetof(stIP_INFO, hostsChanged) == 9);

struct Filled {
  int result = 77;
  stIP_INFO info;
};

/// Fills a record whose flags all say what the machine does not, so that a field that is not written shows.
Filled InfoOf(const simulator::Machine& machine) {
  const auto run = simulator::Use(machine);
  Filled filled;
  filled.info = {.dhcpEnabled = 77,
                 .leaseExpired = true,
                 .proxySet = true,
                 .vpnOpen = true,
                 .firewallEnabled = true,
                 .outboundRuleBlocked = true,
                 .hostsChanged = true};
  filled.result = CNetworkAdapter().GetIpInfo(filled.info);
  return filled;
}

TEST(IpInfo, IsFilledFromTheWirelessAdapter) {
  const auto [result, info] = InfoOf(LaptopOnWifi());
  EXPECT_EQ(result, 1);
  EXPECT_EQ(info.dhcpEnabled, 1);
  EXPECT_FALSE(info.leaseExpired);
  EXPECT_FALSE(info.proxySet);
  EXPECT_FALSE(info.vpnOpen);
  EXPECT_FALSE(info.hostsChanged);
}

TEST(IpInfo, NeverWritesItsFirewallFields) {
  auto machine = LaptopOnWifi();
  machine.firewall = {.public_profile_enabled = true,
                      .rules = {{.grouping = "@FirewallAPI.dll,-25000", .direction = 2, .action = 0}}};
  EXPECT_TRUE(InfoOf(machine).info.firewallEnabled);
  EXPECT_TRUE(InfoOf(machine).info.outboundRuleBlocked);
  const auto run = simulator::Use(machine);
  stIP_INFO info;
  EXPECT_EQ(CNetworkAdapter().GetIpInfo(info), 1);
  EXPECT_FALSE(info.firewallEnabled);
  EXPECT_FALSE(info.outboundRuleBlocked);
}

TEST(IpInfo, IsNotTouchedWithoutAWirelessAdapter) {
  auto machine = LaptopOnWifi();
  FirstAdapter(machine).description = "Something else";
  const auto [result, info] = InfoOf(machine);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(info.dhcpEnabled, 77);
  EXPECT_TRUE(info.leaseExpired && info.proxySet && info.vpnOpen && info.hostsChanged);
  const auto run = simulator::Use(machine);
  stIP_INFO unused;
  CNetworkAdapter().GetIpInfo(unused);
  EXPECT_EQ(run.Calls("SetProcessLocale"), 0);
}

TEST(IpInfo, SaysThatTheAddressWasSetByHand) {
  auto machine = LaptopOnWifi();
  FirstAdapter(machine).dhcp_enabled = false;
  EXPECT_EQ(InfoOf(machine).info.dhcpEnabled, 0);
}

TEST(IpInfo, SaysThatTheLeaseHasEndedAtItsVeryEnd) {
  auto machine = LaptopOnWifi();  // at second 1000
  const auto is_expired = [&](std::int64_t end) {
    FirstAdapter(machine).lease_expires = end;
    return InfoOf(machine).info.leaseExpired;
  };
  EXPECT_TRUE(is_expired(999));
  EXPECT_TRUE(is_expired(1000));
  EXPECT_FALSE(is_expired(1001));
  EXPECT_TRUE(is_expired(0)) << "as of an address that was set by hand";
  machine.clock->now += 9'999'999;
  EXPECT_FALSE(is_expired(1001)) << "parts of a second do not count";
}

TEST(IpInfo, SaysThatAProxyIsSetOnlyForTheAccessTypeThatMeansIt) {
  auto machine = LaptopOnWifi();
  for (const std::uint32_t type : {0U, 1U, 3U, 4U, 0x0103U}) {
    machine.internet->access_type = type;
    EXPECT_EQ(InfoOf(machine).info.proxySet, type == 3) << type;
  }
}

TEST(IpInfo, AsksForTheProxyFirstForTheSizeAndThenForTheAnswer) {
  auto machine = LaptopOnWifi();
  machine.internet->proxy_answer = simulator::Bytes{{3, 0, 0, 0, 1}};
  const auto run = simulator::Use(machine);
  stIP_INFO info;
  CNetworkAdapter().GetIpInfo(info);
  EXPECT_TRUE(info.proxySet);
  EXPECT_THAT(run.Trace(), Contains("InternetQueryOptionW(38, null, 0)"));
  EXPECT_THAT(run.Trace(), Contains("InternetQueryOptionW(38, pointer, 5)"));
}

TEST(IpInfo, TakesAnAnswerThatIsShorterThanTheAccessTypeAsNoProxy) {
  auto machine = LaptopOnWifi();
  for (std::size_t size = 0; size < 4; ++size) {
    machine.internet->proxy_answer = simulator::Bytes{std::vector<std::uint8_t>(size, 3)};
    EXPECT_FALSE(InfoOf(machine).info.proxySet) << size;
  }
  machine.internet->proxy_answer = simulator::Bytes{{3, 0, 0, 0}};
  EXPECT_TRUE(InfoOf(machine).info.proxySet);
}

TEST(IpInfo, TakesAProxyThatCannotBeReadAsNone) {
  auto machine = LaptopOnWifi();
  machine.internet = {.access_type = 3, .proxy_error = 12'009};
  const auto [result, info] = InfoOf(machine);
  EXPECT_EQ(result, 1);
  EXPECT_FALSE(info.proxySet);
}

TEST(IpInfo, SaysThatAVpnIsOpenForAWanMiniportInEitherLetterCase) {
  auto machine = LaptopOnWifi();
  for (const char* const description : {"WAN Miniport (IKEv2)", "My wan miniport #3"}) {
    auto with_vpn = machine;
    with_vpn.adapters->list.push_back({.description = description});
    EXPECT_TRUE(InfoOf(with_vpn).info.vpnOpen) << description;
  }
  machine.adapters->list.push_back({.description = "WAN Mini port"});
  EXPECT_FALSE(InfoOf(machine).info.vpnOpen);
}

TEST(IpInfo, SaysThatTheHostsFileIsChanged) {
  auto machine = LaptopOnWifi();
  const auto is_changed = [&](const char* contents) {
    machine.files->back().contents = contents;
    return InfoOf(machine).info.hostsChanged;
  };
  EXPECT_TRUE(is_changed("# a\r\n127.0.0.1 localhost\r\n"));
  EXPECT_TRUE(is_changed("\t# a"));
  EXPECT_FALSE(is_changed("# a\r\n\r\n   # b\r\n"));
  EXPECT_FALSE(is_changed(""));
}

TEST(IpInfo, ReadsAHostsFileThatIsLongerThanOnePiece) {
  auto machine = LaptopOnWifi();
  machine.files->back().contents = "# " + std::string(10'000, 'c') + "\r\n1.2.3.4 here";
  EXPECT_TRUE(InfoOf(machine).info.hostsChanged);
  machine.files->back().contents = "#";
  machine.files->back().repeated = 3'000'000;  // one line without an end
  EXPECT_FALSE(InfoOf(machine).info.hostsChanged);
}

TEST(IpInfo, TakesAHostsFileThatCannotBeOpenedAsUnchanged) {
  auto machine = LaptopOnWifi();
  machine.files->back().contents = "127.0.0.1 localhost";
  machine.files->back().open_error = 5;
  EXPECT_FALSE(InfoOf(machine).info.hostsChanged);
  machine.files->back() = {.path = machine.files->back().path, .folder = true};
  EXPECT_FALSE(InfoOf(machine).info.hostsChanged);
  machine.files->pop_back();
  EXPECT_FALSE(InfoOf(machine).info.hostsChanged);
}

TEST(IpInfo, IsReadInTheOrderOfItsSteps) {
  const auto run = simulator::Use(LaptopOnWifi());
  stIP_INFO info;
  CNetworkAdapter().GetIpInfo(info);
  EXPECT_THAT(
      TraceWithout(run, kCardCalls),
      ElementsAre("GetAdaptersInfo(null, 0)", "GetAdaptersInfo(pointer, 704)",
                  "InternetQueryOptionW(38, null, 0)", StartsWith("InternetQueryOptionW(38, pointer, "),
                  "GetAdaptersInfo(null, 0)", "GetAdaptersInfo(pointer, 704)", "SystemTime()",
                  "CoInitializeEx(2)", "SetProcessLocale(chs)",
                  "CoCreateInstance({E2B3C97F-6AE1-41AC-817A-F6F92166D7DD}, 1, "
                  "{98325047-C671-4174-8D81-DEFCD3F03186})",
                  "FirewallIsEnabled(4)", "ComRelease()", "CoUninitialize()",
                  "OpenFileForReading(C:\\Windows\\System32\\drivers\\etc\\hosts)", "ReadFile(4096)",
                  "ReadFile(4096)", "CloseHandle()"));
}

TEST(IpInfo, LogsTheVpnTheLeaseAndTheHostsFile) {
  auto machine = LaptopOnWifi();
  {
    const auto run = simulator::Use(machine);
    const velmora::testing::CapturedLog log;
    stIP_INFO info;
    CNetworkAdapter().GetIpInfo(info);
    EXPECT_THAT(OwnLines(log),
                ElementsAre("DEBUG strDescription=bRet=0(CNetworkAdapter::GetIpInfo)",
                            "DEBUG tCurTime=1000, LeaseExpires=2000(CNetworkAdapter::GetIpInfo)",
                            "DEBUG IsHostsChange=0(CNetworkAdapter::GetIpInfo)"));
  }
  machine.adapters->list.push_back({.description = "WAN Miniport (IP)"});
  const auto run = simulator::Use(machine);
  const velmora::testing::CapturedLog log;
  stIP_INFO info;
  CNetworkAdapter().GetIpInfo(info);
  EXPECT_THAT(OwnLines(log),
              Contains("DEBUG strDescription=WAN Miniport (IP)bRet=1(CNetworkAdapter::GetIpInfo)"));
}

TEST(IpInfo, IsWholeOrNotTouchedWhenMemoryRunsOut) {
  auto machine = LaptopOnWifi();
  machine.internet->access_type = 3;
  machine.files->back().contents = "1.2.3.4 here";
  const auto run = simulator::Use(machine);
  const auto results = velmora::testing::WithEachAllocationFailing([] {
    stIP_INFO info{.dhcpEnabled = 77};
    const int result = CNetworkAdapter().GetIpInfo(info);
    return std::pair(result, info);
  });
  for (const auto& [result, info] : results) {
    EXPECT_EQ(info.dhcpEnabled, result == 1 ? 1 : 77);
    EXPECT_EQ(info.hostsChanged, result == 1);
  }
  EXPECT_TRUE(results.back().second.proxySet);
}

}  // namespace
