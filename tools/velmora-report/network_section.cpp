#include "velmora-report/network_section.h"

#include <utility>

#include "velmora-report/network_verdict.h"

namespace report {
namespace {

NetworkFacts AskFacts(CNetworkAdapter& network) {
  NetworkFacts facts;
  unsigned int count = 0;
  facts.has_card = network.GetNetworkAdapterNums(count) != 0;
  network.GetErrorStatebyIndex(facts.problem_code, 0);
  facts.radio = network.GetWifiSwitchState();
  facts.is_on_modem = network.IsUsingModemNetwork() != 0;
  bool is_connected = false;
  bool is_internet_connected = false;
  if (network.IsInternetAvailable(is_connected, is_internet_connected) != 0) {
    facts.is_connected = is_connected;
    facts.is_internet_connected = is_internet_connected;
  }
  // A state that was written is known by being another than before, and so that one must be none of them.
  // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange)
  constexpr auto kNotWritten = static_cast<emIP_STATE_INFO>(0x7FFFFFFF);
  auto state = kNotWritten;
  network.CHeckIPReady(state);
  if (state != kNotWritten) facts.address = state;
  if (stIP_INFO info; network.GetIpInfo(info) != 0) facts.details = info;
  return facts;
}

Value TextOf(CNetworkAdapter& network, int (CNetworkAdapter::*getter)(std::wstring&, int), int index) {
  std::wstring text;
  (network.*getter)(text, index);
  return TextValue(text);
}

Rows AdapterRows(CNetworkAdapter& network, int index) {
  std::wstring hardware_id;
  network.GetHardIdbyIndex(hardware_id, index);
  unsigned long problem_code = 0;
  network.GetErrorStatebyIndex(problem_code, index);
  std::string gateway;
  network.GetWirelessGateWayIP(gateway);
  return {
      {"display_name", "Name", TextOf(network, &CNetworkAdapter::GetDisplayNamebyIndex, index)},
      {"caption", "Description", TextOf(network, &CNetworkAdapter::GetCaptionbyIndex, index)},
      {"manufacturer", "Maker", TextOf(network, &CNetworkAdapter::GetManufacturerbyIndex, index)},
      {"hardware_id", "Hardware ID", TextValue(hardware_id)},
      {"driver_version", "Driver version", TextOf(network, &CNetworkAdapter::GetDriverVersionbyIndex, index)},
      {"inf", "Driver file", TextValue(network.GetINFbyHardId(hardware_id))},
      {"problem_code", "Problem code", std::uint64_t{problem_code}},
      {"mac_address", "MAC address", TextOf(network, &CNetworkAdapter::GetMacAddressbyIndex, index)},
      {"guid", "Interface GUID", TextOf(network, &CNetworkAdapter::GetGUIDIndex, index)},
      {"adapter_type", "Adapter type", TextOf(network, &CNetworkAdapter::GetTypebyIndex, index)},
      {"gateway", "Gateway", gateway.empty() ? Value(Absent{}) : Value(gateway)},
  };
}

Value FlagOf(const std::optional<bool>& flag) { return flag ? Value(*flag) : Value(Absent{}); }

Value RadioValue(unsigned char radio) {
  if (radio == 0) return Absent{};
  return std::uint64_t{radio};
}

/// One flag of the address's details; absent without an adapter that has any.
Value DetailOf(const NetworkFacts& facts, bool stIP_INFO::* flag) {
  if (!facts.details) return Absent{};
  return (*facts.details).*flag;
}

Rows FactRows(const NetworkFacts& facts, bool has_modem_card) {
  return {
      {"connected", "Connected to a network", FlagOf(facts.is_connected)},
      {"internet", "Internet reachable", FlagOf(facts.is_internet_connected)},
      {"wifi_switch", "Wi-Fi radio (1 on, 2 off)", RadioValue(facts.radio)},
      {"address_state", "Wi-Fi address",
       facts.address ? Value(AddressInWords(*facts.address)) : Value(Absent{})},
      {"dhcp", "Address by DHCP", facts.details ? Value(facts.details->dhcpEnabled != 0) : Value(Absent{})},
      {"lease_expired", "Lease has ended", DetailOf(facts, &stIP_INFO::leaseExpired)},
      {"proxy", "Proxy set", DetailOf(facts, &stIP_INFO::proxySet)},
      {"vpn", "VPN adapter", DetailOf(facts, &stIP_INFO::vpnOpen)},
      {"hosts_changed", "Hosts file has entries", DetailOf(facts, &stIP_INFO::hostsChanged)},
      {"modem_network", "Connected over a modem", facts.is_on_modem},
      {"modem_card", "Mobile broadband card", has_modem_card},
  };
}

}  // namespace

Section NetworkSection() {
  CNetworkAdapter network;
  const auto facts = AskFacts(network);
  List list{.key = "adapters", .item_title = "Wireless adapter"};
  for (const int index : network.GetWireLessIndex()) list.items.push_back(AdapterRows(network, index));
  return {
      .key = "network",
      .title = "Network",
      .verdict = NetworkVerdict(facts),
      .rows = FactRows(facts, network.IsModemCardExsit()),
      .lists = {std::move(list)},
  };
}

}  // namespace report
