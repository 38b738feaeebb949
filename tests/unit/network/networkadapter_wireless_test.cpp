/// Finding the wireless adapter, which three operations do alike, and the state of its address.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/unit/network/adapter_machine.h"
#include "velmora/networkadapter.h"

namespace {

using namespace network_test;
using simulator::Fault;
using testing::ElementsAre;

simulator::Adapter& WirelessCard(simulator::Machine& machine) { return machine.adapters->list[0]; }

constexpr auto kUntouchedState = static_cast<emIP_STATE_INFO>(77);

emIP_STATE_INFO StateOf(const simulator::Machine& machine) {
  const auto run = simulator::Use(machine);
  auto state = kUntouchedState;
  const bool result = CNetworkAdapter().CHeckIPReady(state);
  EXPECT_EQ(result, state == IP_STATE_READY || state == IP_STATE_OTHER_PREFIX || state == IP_STATE_STATIC);
  return state;
}

TEST(WirelessAdapter, IsFoundByADescriptionThatStandsInTheCardsCaptionInEitherLetterCase) {
  auto machine = LaptopOnWifi();
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
  WirelessCard(machine).description = "WI-FI 6 ax201";
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
}

TEST(WirelessAdapter, IsFoundByADescriptionThatStandsInTheCardsDisplayName) {
  auto machine = LaptopOnWifi();
  WirelessCard(machine).description = "wireless card #2";
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
}

TEST(WirelessAdapter, IsNotFoundByADescriptionThatIsLongerThanTheCardsNamesOrEmpty) {
  auto machine = LaptopOnWifi();
  for (const char* const description : {"Intel(R) Wi-Fi 6 AX201 160MHz #2", "", "Ethernet"}) {
    WirelessCard(machine).description = description;
    EXPECT_EQ(StateOf(machine), kUntouchedState) << description;
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
  EXPECT_EQ(StateOf(machine), kUntouchedState);
}

TEST(WirelessAdapter, IsLookedForInAListThatIsAskedForItsSizeFirst) {
  const auto run = simulator::Use(LaptopOnWifi());
  auto state = kUntouchedState;
  CNetworkAdapter().CHeckIPReady(state);
  EXPECT_THAT(TraceWithout(run, kCardCalls),
              ElementsAre("GetAdaptersInfo(null, 0)", "GetAdaptersInfo(pointer, 704)"));
}

TEST(WirelessAdapter, IsNotFoundWhenTheListCannotBeRead) {
  auto machine = LaptopOnWifi();
  machine.adapters->error = 50;
  EXPECT_EQ(StateOf(machine), kUntouchedState);
  machine.adapters.emplace();  // answered with 232, no adapter
  EXPECT_EQ(StateOf(machine), kUntouchedState);
  for (const Fault fault : {Fault::kFail, Fault::kEmpty, Fault::kThrow}) {
    auto run = simulator::Use(LaptopOnWifi());
    run.Inject(fault, 0);
    auto state = kUntouchedState;
    EXPECT_FALSE(CNetworkAdapter().CHeckIPReady(state));
    EXPECT_EQ(state, kUntouchedState);
    EXPECT_EQ(run.Calls("GetAdaptersInfo"), 1);
  }
}

TEST(WirelessAdapter, IsNotFoundWhenTheListGrowsBetweenTheTwoCalls) {
  auto machine = LaptopOnWifi();
  machine.adapters->list.push_back({.description = "Dock", .arrives_after_calls = 1});
  const auto run = simulator::Use(machine);
  auto state = kUntouchedState;
  EXPECT_FALSE(CNetworkAdapter().CHeckIPReady(state));
  EXPECT_EQ(state, kUntouchedState);
  EXPECT_EQ(run.Calls("GetAdaptersInfo"), 2);
}

TEST(WirelessAdapter, IsLookedForOnlyOnceRoundInAListThatPointsBackAtItself) {
  auto machine = LaptopOnWifi();
  WirelessCard(machine).description = "Something else";
  machine.adapters->list.push_back({.description = "Another"});
  machine.adapters->loops = true;
  EXPECT_EQ(StateOf(machine), kUntouchedState);
}

TEST(WirelessAdapter, HasADescriptionOfAllItsFieldWhereThatHasNoZero) {
  auto machine = LaptopOnWifi();
  const std::string longest(140, 'd');
  WirelessCard(machine).description = longest;
  for (auto& device : *machine.devices) device.description = longest.substr(0, 132);
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
}

// The address.

TEST(IpReady, ClassifiesTheFirstAddressAndTheFirstGateway) {
  auto machine = LaptopOnWifi();
  const auto state_with = [&](const char* address, const char* gateway, bool dhcp) {
    WirelessCard(machine).ip_addresses = {{.address = address}, {.address = "1.1.1.1"}};
    WirelessCard(machine).gateways = {{.address = gateway}, {.address = "1.1.1.1"}};
    WirelessCard(machine).dhcp_enabled = dhcp;
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
  WirelessCard(machine).ip_addresses = {{.address = "255.255.255.2550", .mask = "255.255.255.2550"}};
  WirelessCard(machine).gateways = {{.address = "255.255.255.2551", .mask = "255.255.255.2550"}};
  EXPECT_EQ(StateOf(machine), IP_STATE_READY);
}

TEST(IpReady, LooksAtNothingButTheAddress) {
  const auto run = simulator::Use(LaptopOnWifi());
  auto state = kUntouchedState;
  EXPECT_TRUE(CNetworkAdapter().CHeckIPReady(state));
  for (const char* const other :
       {"OpenFileForReading", "InternetQueryOptionW", "SystemTime", "CoInitializeEx"}) {
    EXPECT_EQ(run.Calls(other), 0) << other;
  }
  EXPECT_EQ(run.Calls("GetAdaptersInfo"), 2) << "and not for a VPN";
}

TEST(IpReady, LogsTheDescriptionTheResultAndTheState) {
  auto machine = LaptopOnWifi();
  WirelessCard(machine).ip_addresses = {{.address = "0.0.0.0"}};
  WirelessCard(machine).gateways = {{.address = "0.0.0.0"}};
  const auto run = simulator::Use(machine);
  const velmora::testing::CapturedLog log;
  auto state = kUntouchedState;
  CNetworkAdapter().CHeckIPReady(state);
  EXPECT_THAT(OwnLines(log), ElementsAre("DEBUG Desc=Intel(R) Wi-Fi 6 AX201 160MHzbRet=0, "
                                         "state=1(CNetworkAdapter::CHeckIPReady)"));
}

}  // namespace
