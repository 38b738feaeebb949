#include "velmora-report/network_verdict.h"

#include <vector>

namespace report {
namespace {

std::string Joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const auto& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text;
}

std::string RadioInWords(unsigned char radio) {
  constexpr unsigned char kOn = 1;
  constexpr unsigned char kOff = 2;
  if (radio == kOn) return "on";
  return radio == kOff ? "switched off" : "switch not readable";
}

std::string ConnectionInWords(const NetworkFacts& facts) {
  if (!facts.is_connected || !facts.is_internet_connected) return "connection unknown";
  if (!*facts.is_connected) return "machine not connected";
  return *facts.is_internet_connected ? "internet reachable" : "no way to the internet";
}

std::vector<std::string> Doubts(const NetworkFacts& facts) {
  std::vector<std::string> doubts;
  if (facts.problem_code != 0 && facts.has_card)
    doubts.push_back("the card has problem " + std::to_string(facts.problem_code));
  if (!facts.details) return doubts;
  // An address that was set by hand has no lease that could end.
  if (facts.details->leaseExpired && facts.details->dhcpEnabled != 0)
    doubts.emplace_back("the address's lease has ended");
  if (facts.details->proxySet) doubts.emplace_back("a proxy is set");
  if (facts.details->vpnOpen) doubts.emplace_back("a VPN adapter is there");
  if (facts.details->hostsChanged) doubts.emplace_back("the hosts file has entries");
  return doubts;
}

}  // namespace

std::string AddressInWords(emIP_STATE_INFO state) {
  switch (state) {
    case IP_STATE_NO_ADDRESS:
      return "no address";
    case IP_STATE_READY:
      return "address from DHCP";
    case IP_STATE_UNUSABLE:
      return "no usable address";
    case IP_STATE_OTHER_PREFIX:
      return "address unlike its gateway";
    case IP_STATE_STATIC:
      return "address set by hand";
  }
  return "address state " + std::to_string(static_cast<std::int32_t>(state));
}

std::string NetworkVerdict(const NetworkFacts& facts) {
  std::vector<std::string> parts;
  if (facts.has_card) {
    parts.push_back(RadioInWords(facts.radio));
    parts.push_back(facts.address ? AddressInWords(*facts.address) : "not among the system's adapters");
  } else {
    parts.emplace_back("no card");
  }
  parts.push_back(ConnectionInWords(facts));
  if (facts.is_on_modem) parts.emplace_back("over a modem");
  std::string verdict = "Wi-Fi: " + Joined(parts) + ".";
  const std::string doubts = Joined(Doubts(facts));
  return doubts.empty() ? verdict : verdict + " Worth a look: " + doubts + ".";
}

}  // namespace report
