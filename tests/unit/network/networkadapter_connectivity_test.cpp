#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "platform/os/last_error.h"
#include "tests/support/simulator/allocations.h"
#include "tests/unit/network/adapter_machine.h"
#include "velmora/networkadapter.h"

namespace {

using namespace network_test;
using simulator::Fault;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr auto kUntouched = static_cast<emIP_STATE_INFO>(77);

simulator::Adapter& Adapter(simulator::Machine& machine) { return machine.adapters->list[0]; }

// The record.

static_assert(std::is_standard_layout_v<stIP_INFO> && sizeof(stIP_INFO::dhcpEnabled) == 4);
static_assert(offsetof(stIP_INFO, dhcpEnabled) == 0 && offsetof(stIP_INFO, leaseExpired) == 4 &&
              offsetof(stIP_INFO, proxySet) == 5 && offsetof(stIP_INFO, vpnOpen) == 6 &&
              offsetof(stIP_INFO, firewallEnabled) == 7 && offsetof(stIP_INFO, outboundRuleBlocked) == 8 &&
              offsetof(stIP_INFO, hostsChanged) == 9);

// Finding the wireless adapter, which three operations do alike.

emIP_STATE_INFO StateOf(const simulator::Machine& machine) {
  const auto run = simulator::Use(machine);
  auto state = kUntouched;
  const bool result = CNetworkAdapter().CHeckIPReady(state);
  EXPECT_EQ(result, state == IP_STATE_READY || state == IP_STATE_OTHER_PREFIX || state == IP_STATE_STATIC);
  return state;
}

TEST(WirelessAdapter, IsFoundByADescriptionThatStandsInTheCardsCaptionInEitherLetterCase) {
  auto machine = LaptopOnWifi();
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
  Adapter(machine).description = "WI-FI 6 ax201";
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
}

TEST(WirelessAdapter, IsFoundByADescriptionThatStandsInTheCardsDisplayName) {
  auto machine = LaptopOnWifi();
  Adapter(machine).description = "wireless card #2";
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
}

TEST(WirelessAdapter, IsNotFoundByADescriptionThatIsLongerThanTheCardsNamesOrEmpty) {
  auto machine = LaptopOnWifi();
  for (const char* const description : {"Intel(R) Wi-Fi 6 AX201 160MHz #2", "", "Ethernet"}) {
    Adapter(machine).description = description;
    EXPECT_EQ(StateOf(machine), kUntouched) << description;
  }
}

TEST(WirelessAdapter, IsTheFirstOfTheListThatMatches) {
  auto machine = LaptopOnWifi();
  machine.adapters->list.insert(machine.adapters->list.begin(), WifiAdapter("169.254.10.3", "169.254.10.1"));
  EXPECT_EQ(StateOf(machine), IP_STATE_UNUSABLE);
  machine.adapters->list[0].description = "Something else";
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
}

TEST(WirelessAdapter, IsNotFoundWithoutAWirelessCard) {
  auto machine = LaptopOnWifi();
  machine.devices->clear();
  EXPECT_EQ(StateOf(machine), kUntouched);
}

TEST(WirelessAdapter, IsLookedForInAListThatIsAskedForItsSizeFirst) {
  const auto run = simulator::Use(LaptopOnWifi());
  auto state = kUntouched;
  CNetworkAdapter().CHeckIPReady(state);
  EXPECT_THAT(TraceWithout(run, kCardCalls),
              ElementsAre("GetAdaptersInfo(null, 0)", "GetAdaptersInfo(pointer, 704)"));
}

TEST(WirelessAdapter, IsNotFoundWhenTheListCannotBeRead) {
  auto machine = LaptopOnWifi();
  machine.adapters->error = 50;
  EXPECT_EQ(StateOf(machine), kUntouched);
  machine.adapters.emplace();  // answered with 232, no adapter
  EXPECT_EQ(StateOf(machine), kUntouched);
  for (const Fault fault : {Fault::kFail, Fault::kEmpty, Fault::kThrow}) {
    auto run = simulator::Use(LaptopOnWifi());
    run.Inject(fault, 0);
    auto state = kUntouched;
    EXPECT_FALSE(CNetworkAdapter().CHeckIPReady(state));
    EXPECT_EQ(state, kUntouched);
    EXPECT_EQ(run.Calls("GetAdaptersInfo"), 1);
  }
}

TEST(WirelessAdapter, IsNotFoundWhenTheListGrowsBetweenTheTwoCalls) {
  auto machine = LaptopOnWifi();
  machine.adapters->list.push_back({.description = "Dock", .arrives_after_calls = 1});
  const auto run = simulator::Use(machine);
  auto state = kUntouched;
  EXPECT_FALSE(CNetworkAdapter().CHeckIPReady(state));
  EXPECT_EQ(state, kUntouched);
  EXPECT_EQ(run.Calls("GetAdaptersInfo"), 2);
}

TEST(WirelessAdapter, IsLookedForOnlyOnceRoundInAListThatPointsBackAtItself) {
  auto machine = LaptopOnWifi();
  Adapter(machine).description = "Something else";
  machine.adapters->list.push_back({.description = "Another"});
  machine.adapters->loops = true;
  EXPECT_EQ(StateOf(machine), kUntouched);
}

TEST(WirelessAdapter, HasADescriptionOfAllItsFieldWhereThatHasNoZero) {
  auto machine = LaptopOnWifi();
  const std::string longest(140, 'd');
  Adapter(machine).description = longest;
  for (auto& device : *machine.devices) device.description = longest.substr(0, 132);
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
}

// The address.

TEST(IpReady, ClassifiesTheFirstAddressAndTheFirstGateway) {
  auto machine = LaptopOnWifi();
  const auto state_with = [&](const char* address, const char* gateway, bool dhcp) {
    Adapter(machine).ip_addresses = {{.address = address}, {.address = "1.1.1.1"}};
    Adapter(machine).gateways = {{.address = gateway}, {.address = "1.1.1.1"}};
    Adapter(machine).dhcp_enabled = dhcp;
    return StateOf(machine);
  };
  EXPECT_EQ(state_with("10.1.2.3", "10.1.2.1", true), IP_STATE_READY);
  EXPECT_EQ(state_with("10.1.2.3", "10.1.2.1", false), IP_STATE_STATIC);
  EXPECT_EQ(state_with("169.254.10.3", "169.254.10.1", true), IP_STATE_UNUSABLE);
  EXPECT_EQ(state_with("0.0.0.0", "0.0.0.0", true), IP_STATE_UNUSABLE);
  EXPECT_EQ(state_with("192.168.1.20", "10.0.0.1", true), IP_STATE_OTHER_PREFIX);
  EXPECT_EQ(state_with("10.1.2.3", "", true), IP_STATE_OTHER_PREFIX);
  EXPECT_EQ(state_with("1.2.3.", "1.2.3.", true), IP_STATE_NO_ADDRESS);
}

TEST(IpReady, ReadsAnAddressOfSixteenCharactersWithoutAZero) {
  auto machine = LaptopOnWifi();
  Adapter(machine).ip_addresses = {{.address = "255.255.255.2550", .mask = "255.255.255.2550"}};
  Adapter(machine).gateways = {{.address = "255.255.255.2551", .mask = "255.255.255.2550"}};
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
}

TEST(IpReady, LooksAtNothingButTheAddress) {
  const auto run = simulator::Use(LaptopOnWifi());
  auto state = kUntouched;
  EXPECT_TRUE(CNetworkAdapter().CHeckIPReady(state));
  for (const char* const other :
       {"OpenFileForReading", "InternetQueryOptionW", "SystemTime", "CoInitializeEx"}) {
    EXPECT_EQ(run.Calls(other), 0) << other;
  }
  EXPECT_EQ(run.Calls("GetAdaptersInfo"), 2) << "and not for a VPN";
}

TEST(IpReady, LogsTheDescriptionTheResultAndTheState) {
  auto machine = LaptopOnWifi();
  Adapter(machine).ip_addresses = {{.address = "0.0.0.0"}};
  Adapter(machine).gateways = {{.address = "0.0.0.0"}};
  const auto run = simulator::Use(machine);
  const velmora::testing::CapturedLog log;
  auto state = kUntouched;
  CNetworkAdapter().CHeckIPReady(state);
  EXPECT_THAT(OwnLines(log), ElementsAre("DEBUG Desc=Intel(R) Wi-Fi 6 AX201 160MHzbRet=0, "
                                         "state=1(CNetworkAdapter::CHeckIPReady)"));
}

// The record's fields.

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
  Adapter(machine).description = "Something else";
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
  Adapter(machine).dhcp_enabled = false;
  EXPECT_EQ(InfoOf(machine).info.dhcpEnabled, 0);
}

TEST(IpInfo, SaysThatTheLeaseHasEndedAtItsVeryEnd) {
  auto machine = LaptopOnWifi();  // at second 1000
  const auto is_expired = [&](std::int64_t end) {
    Adapter(machine).lease_expires = end;
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

// The firewall probe.

/// What is called between the entering of the apartment and its leaving.
std::vector<std::string> ProbeOf(const simulator::Machine& machine) {
  const auto run = simulator::Use(machine);
  stIP_INFO info;
  EXPECT_EQ(CNetworkAdapter().GetIpInfo(info), 1);
  const auto trace = run.Trace();
  const auto begin = std::ranges::find(trace, "CoInitializeEx(2)");
  const auto end = std::ranges::find(trace, "CoUninitialize()");
  EXPECT_NE(end, trace.end());
  return {begin + 1, end};
}

TEST(FirewallProbe, GoesOnInAThreadThatIsInTheOtherApartment) {
  auto machine = LaptopOnWifi();
  machine.com = {.initialize_result = 0x80010106};
  EXPECT_THAT(ProbeOf(machine), Contains("SetProcessLocale(chs)"));
}

TEST(FirewallProbe, EndsWhenComCannotBeInitialized) {
  auto machine = LaptopOnWifi();
  machine.com = {.initialize_result = 0x8007000E};
  EXPECT_THAT(ProbeOf(machine), IsEmpty());
}

TEST(FirewallProbe, SetsTheLocaleAlsoWhereThereIsNoFirewallPolicy) {
  auto machine = LaptopOnWifi();
  machine.firewall = {.create_result = 0x80040154};
  EXPECT_THAT(ProbeOf(machine), ElementsAre("SetProcessLocale(chs)", StartsWith("CoCreateInstance(")));
  machine.firewall = {.is_null = true};
  EXPECT_THAT(ProbeOf(machine), ElementsAre("SetProcessLocale(chs)", StartsWith("CoCreateInstance(")));
}

TEST(FirewallProbe, DoesNotWalkTheRulesOfAFirewallThatIsOff) {
  auto machine = LaptopOnWifi();
  machine.firewall->rules = {{}};
  EXPECT_THAT(ProbeOf(machine), Not(Contains("FirewallRules()")));
}

TEST(FirewallProbe, ExaminesOutboundRulesOfTheCoreGroupUpToTheFirstThatBlocks) {
  auto machine = LaptopOnWifi();
  const simulator::FirewallRule core{.grouping = "@FirewallAPI.dll,-25000", .direction = 2};
  auto inbound = core;
  inbound.direction = 1;
  auto other = core;
  other.grouping = "@FirewallAPI.dll,-25001";
  auto disabled = core;
  disabled.enabled = false;
  auto blocking = core;
  blocking.action = 0;
  auto without_interface = core;
  without_interface.has_rule_interface = false;
  machine.firewall = {.public_profile_enabled = true,
                      .rules = {inbound, other, disabled, without_interface, core, blocking, core}};
  const std::string query = "ComQueryInterface({AF230D27-BABA-4E42-ACED-F524F22CFCE2})";
  EXPECT_THAT(
      ProbeOf(machine),
      ElementsAre("SetProcessLocale(chs)", StartsWith("CoCreateInstance("), "FirewallIsEnabled(4)",
                  "FirewallRules()",
                  // inbound
                  "FirewallNextRule()", query, "FirewallRuleDirection()", "ComRelease()", "ComRelease()",
                  // of another group
                  "FirewallNextRule()", query, "FirewallRuleDirection()", "FirewallRuleGrouping()",
                  "ComRelease()", "ComRelease()",
                  // disabled
                  "FirewallNextRule()", query, "FirewallRuleDirection()", "FirewallRuleGrouping()",
                  "FirewallRuleEnabled()", "ComRelease()", "ComRelease()",
                  // without the rules' interface
                  "FirewallNextRule()", query, "ComRelease()",
                  // allows
                  "FirewallNextRule()", query, "FirewallRuleDirection()", "FirewallRuleGrouping()",
                  "FirewallRuleEnabled()", "FirewallRuleAction()", "ComRelease()", "ComRelease()",
                  // blocks
                  "FirewallNextRule()", query, "FirewallRuleDirection()", "FirewallRuleGrouping()",
                  "FirewallRuleEnabled()", "FirewallRuleAction()", "ComRelease()", "ComRelease()",
                  // the walk and the policy
                  "ComRelease()", "ComRelease()"));
}

TEST(FirewallProbe, IsBalancedAndKeepsTheRecordWholeWhateverStepFails) {
  auto machine = LaptopOnWifi();
  machine.firewall = {.public_profile_enabled = true,
                      .rules = {{.grouping = "@FirewallAPI.dll,-25000", .direction = 2}}};
  const auto trace = [&] {
    const auto run = simulator::Use(machine);
    stIP_INFO info;
    CNetworkAdapter().GetIpInfo(info);
    return run.Trace();
  }();
  const auto first = std::ranges::find(trace, "CoInitializeEx(2)") - trace.begin();
  const auto last = std::ranges::find(trace, "CoUninitialize()") - trace.begin();
  ASSERT_LT(first, last);
  for (auto step = first; step < last; ++step) {
    for (const Fault fault : {Fault::kFail, Fault::kEmpty, Fault::kThrow}) {
      auto run = simulator::Use(machine);
      run.Inject(fault, static_cast<int>(step));
      stIP_INFO info;
      EXPECT_EQ(CNetworkAdapter().GetIpInfo(info), 1) << trace[static_cast<std::size_t>(step)];
      EXPECT_EQ(info.dhcpEnabled, 1);
      EXPECT_EQ(run.OpenHandles(), 0) << trace[static_cast<std::size_t>(step)];
    }
  }
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

// Modem and mobile broadband.

simulator::Machine MachineOnline(std::uint32_t flags, std::vector<simulator::Adapter> adapters) {
  auto machine = simulator::BlankMachine();
  machine.internet = {.connected = true, .connection_flags = flags};
  machine.adapters = {.list = std::move(adapters)};
  return machine;
}

simulator::Adapter AdapterOfType(std::uint32_t type, const char* address = "10.0.0.2",
                                 const char* description = "Some adapter") {
  return {.description = description, .type = type, .ip_addresses = {{.address = address}}};
}

int UsesModem(const simulator::Machine& machine) {
  const auto run = simulator::Use(machine);
  return CNetworkAdapter().IsUsingModemNetwork();
}

TEST(ModemNetwork, IsUsedWhenTheConnectionIsAModems) {
  const auto run = simulator::Use(MachineOnline(0x11, {AdapterOfType(6)}));
  EXPECT_EQ(CNetworkAdapter().IsUsingModemNetwork(), 1);
  EXPECT_THAT(run.Trace(), ElementsAre("InternetGetConnectedState(0)"));
}

TEST(ModemNetwork, IsNotUsedWithoutAConnectionWhateverTheFlagsSay) {
  auto machine = MachineOnline(1, {AdapterOfType(243)});
  machine.internet->connected = false;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(CNetworkAdapter().IsUsingModemNetwork(), 0);
  EXPECT_EQ(run.Calls("GetAdaptersInfo"), 0);
}

TEST(ModemNetwork, IsUsedOverMobileBroadbandOfEitherType) {
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243)})), 1);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(244)})), 1);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(242)})), 0);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(245)})), 0);
}

TEST(ModemNetwork, IsNotUsedWhileTheCableOrWifiIsUpToo) {
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243), AdapterOfType(6)})), 0);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(71), AdapterOfType(243)})), 0);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(6)})), 0);
}

TEST(ModemNetwork, LooksPastAdaptersWithoutAnAddress) {
  EXPECT_EQ(UsesModem(MachineOnline(
                2, {AdapterOfType(243), AdapterOfType(6, "0.0.0.0"), AdapterOfType(71, "0.0.0.0")})),
            1);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243, "0.0.0.0")})), 0);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243), AdapterOfType(6, "10.0.0.0")})), 1)
      << "an address that contains four zeros counts as none";
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243), AdapterOfType(6, "")})), 0)
      << "an empty one does not contain them";
}

TEST(ModemNetwork, LooksPastVirtualWifiInEitherLetterCase) {
  EXPECT_EQ(UsesModem(MachineOnline(
                2, {AdapterOfType(243), AdapterOfType(71, "10.0.0.2", "Wi-Fi Direct VIRTUAL")})),
            1);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243), AdapterOfType(6, "10.0.0.2", "Virtual")})), 0)
      << "a virtual cable counts";
}

TEST(ModemNetwork, IsNotUsedWhenTheListCannotBeRead) {
  auto machine = MachineOnline(2, {AdapterOfType(243)});
  machine.adapters->error = 50;
  EXPECT_EQ(UsesModem(machine), 0);
}

TEST(ModemNetwork, LogsTheConnectionAndThatItIsNone) {
  const auto lines_of = [](const simulator::Machine& machine) {
    const auto run = simulator::Use(machine);
    const velmora::testing::CapturedLog log;
    CNetworkAdapter().IsUsingModemNetwork();
    return OwnLines(log);
  };
  EXPECT_THAT(lines_of(MachineOnline(18, {AdapterOfType(243)})),
              ElementsAre("DEBUG oneline=1, flags=18, state=1(CNetworkAdapter::IsUsingModemNetwork)"));
  EXPECT_THAT(lines_of(MachineOnline(18, {AdapterOfType(6)})),
              ElementsAre("DEBUG oneline=1, flags=18, state=0(CNetworkAdapter::IsUsingModemNetwork)",
                          "DEBUG not modem net(CNetworkAdapter::IsUsingModemNetwork)"));
}

TEST(ModemCard, ExistsWhenThereIsAMobileCard) {
  const auto answer_of = [](const simulator::Machine& machine, const char* line) {
    const auto run = simulator::Use(machine);
    const velmora::testing::CapturedLog log;
    const bool answer = CNetworkAdapter().IsModemCardExsit();
    EXPECT_THAT(OwnLines(log), ElementsAre(line));
    return answer;
  };
  EXPECT_TRUE(answer_of(LaptopOnWifi(), "DEBUG ModemCard exist(CNetworkAdapter::IsModemCardExsit)"));
  EXPECT_FALSE(
      answer_of(MachineWithoutCards(), "DEBUG ModemCard not exist(CNetworkAdapter::IsModemCardExsit)"));
}

// The network list manager.

simulator::Machine MachineWithNetworkList(const simulator::NetworkList& list) {
  auto machine = simulator::BlankMachine();
  machine.com.emplace();
  machine.network_list = list;
  return machine;
}

struct Availability {
  int result = 77;
  bool is_connected = true;
  bool is_internet_connected = true;
  std::vector<std::string> lines;
};

Availability AvailabilityOn(simulator::Run& run) {
  const velmora::testing::CapturedLog log;
  Availability found;
  found.result = CNetworkAdapter().IsInternetAvailable(found.is_connected, found.is_internet_connected);
  found.lines = OwnLines(log);
  EXPECT_EQ(run.OpenHandles(), 0);
  EXPECT_EQ(run.Calls("CoUninitialize"), run.Calls("CoInitialize"));
  return found;
}

TEST(InternetAvailable, TellsBothAnswersOfTheManager) {
  for (const bool connected : {false, true}) {
    for (const bool internet : {false, true}) {
      auto run = simulator::Use(MachineWithNetworkList({.connected = connected, .internet = internet}));
      const auto found = AvailabilityOn(run);
      EXPECT_EQ(found.result, 1);
      EXPECT_EQ(found.is_connected, connected);
      EXPECT_EQ(found.is_internet_connected, internet);
    }
  }
}

TEST(InternetAvailable, AsksTheManagerInOrderAndReleasesBothInterfaces) {
  auto run = simulator::Use(MachineWithNetworkList({.connected = true, .internet = true}));
  EXPECT_THAT(AvailabilityOn(run).lines,
              ElementsAre("DEBUG bRet1, hres=0, IsNetConnected=1, "
                          "IsInternetConnected=1(CNetworkAdapter::IsInternetAvailable)"));
  EXPECT_THAT(run.Trace(), ElementsAre("CoInitialize()",
                                       "CoCreateInstance({DCB00C01-570F-4A9B-8D69-199FDBA5723B}, 23, "
                                       "{00000000-0000-0000-C000-000000000046})",
                                       "ComQueryInterface({DCB00000-570F-4A9B-8D69-199FDBA5723B})",
                                       "NetworkListIsConnected()", "NetworkListIsConnectedToInternet()",
                                       "ComRelease()", "ComRelease()", "CoUninitialize()"));
}

TEST(InternetAvailable, GoesOnInAThreadThatIsInTheOtherApartment) {
  auto machine = MachineWithNetworkList({.connected = true});
  machine.com = {.initialize_result = 0x80010106};
  auto run = simulator::Use(machine);
  EXPECT_EQ(AvailabilityOn(run).result, 1);
}

TEST(InternetAvailable, LogsTheStepThatFailsAndLeavesBothAnswersFalse) {
  const auto expect_failure = [](const simulator::NetworkList& list, const std::string& label,
                                 const std::string& code) {
    auto run = simulator::Use(MachineWithNetworkList(list));
    const auto found = AvailabilityOn(run);
    EXPECT_EQ(found.result, 0);
    EXPECT_FALSE(found.is_connected);
    EXPECT_FALSE(found.is_internet_connected);
    EXPECT_THAT(
        found.lines,
        ElementsAre("ERROR " + label + code + "(CNetworkAdapter::IsInternetAvailable)",
                    "DEBUG bRet0, hres=" + code +
                        ", IsNetConnected=0, IsInternetConnected=0(CNetworkAdapter::IsInternetAvailable)"));
  };
  expect_failure({.create_result = 0x80040154}, "CoCreateInstance fail, hres=", "-2147221164");
  expect_failure({.is_null = true}, "CoCreateInstance fail, hres=", "0");
  expect_failure({.connected = true, .connected_result = 0x80004005, .internet = true},
                 "get_IsConnected fail, hres=", "-2147467259");
  expect_failure({.connected = true, .internet = true, .internet_result = 0x80004005},
                 "get_IsConnectedToInternet fail, hres=", "-2147467259");
}

TEST(InternetAvailable, LogsAnInterfaceThatCannotBeHad) {
  for (const auto& [fault, code] : {std::pair(Fault::kFail, "-2147467262"), std::pair(Fault::kEmpty, "0")}) {
    auto run = simulator::Use(MachineWithNetworkList({.connected = true, .internet = true}));
    run.Inject(fault, 2);
    const auto found = AvailabilityOn(run);
    EXPECT_EQ(found.result, 0);
    EXPECT_THAT(found.lines, Contains("ERROR QueryInterface fail, hres=" + std::string(code) +
                                      "(CNetworkAdapter::IsInternetAvailable)"));
    EXPECT_EQ(run.Calls("ComRelease"), 1);
  }
}

TEST(InternetAvailable, LeavesBothAnswersFalseWhateverStepThrows) {
  for (int step = 0; step < 5; ++step) {
    auto run = simulator::Use(MachineWithNetworkList({.connected = true, .internet = true}));
    run.Inject(Fault::kThrow, step);
    bool connected = true;
    bool internet = true;
    EXPECT_EQ(CNetworkAdapter().IsInternetAvailable(connected, internet), 0) << step;
    EXPECT_FALSE(connected);
    EXPECT_FALSE(internet);
    EXPECT_EQ(run.OpenHandles(), 0);
  }
}

}  // namespace
