/// The look at the firewall, of which only the process's locale remains.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/unit/network/adapter_machine.h"
#include "velmora/networkadapter.h"

namespace {

using namespace network_test;
using simulator::Fault;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

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

}  // namespace
