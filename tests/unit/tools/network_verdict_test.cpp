#include "velmora-report/network_verdict.h"

#include <gtest/gtest.h>

namespace {

using report::NetworkFacts;
using report::NetworkVerdict;

NetworkFacts Healthy() {
  NetworkFacts facts;
  facts.has_card = true;
  facts.radio = 1;
  facts.address = IP_STATE_READY;
  facts.details = stIP_INFO{.dhcpEnabled = 1};
  facts.is_connected = true;
  facts.is_internet_connected = true;
  return facts;
}

TEST(NetworkVerdict, IsShortWhenAllIsWell) {
  EXPECT_EQ(NetworkVerdict(Healthy()), "Wi-Fi: on, address from DHCP, internet reachable.");
}

TEST(NetworkVerdict, SaysThatThereIsNoCard) {
  NetworkFacts facts;
  facts.problem_code = 45;  // of a device that is not there
  facts.is_connected = false;
  facts.is_internet_connected = false;
  EXPECT_EQ(NetworkVerdict(facts), "Wi-Fi: no card, machine not connected.");
}

TEST(NetworkVerdict, SaysWhetherTheRadioIsOff) {
  auto facts = Healthy();
  facts.radio = 2;
  facts.address = IP_STATE_UNUSABLE;
  facts.is_connected = false;
  EXPECT_EQ(NetworkVerdict(facts), "Wi-Fi: switched off, no usable address, machine not connected.");
  facts.radio = 0;
  EXPECT_EQ(NetworkVerdict(facts), "Wi-Fi: switch not readable, no usable address, machine not connected.");
}

TEST(NetworkVerdict, NamesEveryStateOfTheAddress) {
  EXPECT_EQ(report::AddressInWords(IP_STATE_NO_ADDRESS), "no address");
  EXPECT_EQ(report::AddressInWords(IP_STATE_OTHER_PREFIX), "address unlike its gateway");
  EXPECT_EQ(report::AddressInWords(IP_STATE_STATIC), "address set by hand");
  EXPECT_EQ(report::AddressInWords(static_cast<emIP_STATE_INFO>(9)), "address state 9");
}

TEST(NetworkVerdict, SaysWhatCouldNotBeAsked) {
  auto facts = Healthy();
  facts.address.reset();
  facts.details.reset();
  facts.is_connected.reset();
  EXPECT_EQ(NetworkVerdict(facts), "Wi-Fi: on, not among the system's adapters, connection unknown.");
}

TEST(NetworkVerdict, SaysHowTheMachineIsConnected) {
  auto facts = Healthy();
  facts.is_internet_connected = false;
  facts.is_on_modem = true;
  EXPECT_EQ(NetworkVerdict(facts), "Wi-Fi: on, address from DHCP, no way to the internet, over a modem.");
}

TEST(NetworkVerdict, ListsWhatIsWorthALook) {
  auto facts = Healthy();
  facts.problem_code = 10;
  facts.details = stIP_INFO{
      .dhcpEnabled = 1, .leaseExpired = true, .proxySet = true, .vpnOpen = true, .hostsChanged = true};
  EXPECT_EQ(NetworkVerdict(facts),
            "Wi-Fi: on, address from DHCP, internet reachable. Worth a look: the card has problem 10, the "
            "address's lease has ended, a proxy is set, a VPN adapter is there, the hosts file has entries.");
}

TEST(NetworkVerdict, DoesNotMissALeaseWhereTheAddressWasSetByHand) {
  auto facts = Healthy();
  facts.address = IP_STATE_STATIC;
  facts.details = stIP_INFO{.leaseExpired = true};
  EXPECT_EQ(NetworkVerdict(facts), "Wi-Fi: on, address set by hand, internet reachable.");
}

}  // namespace
