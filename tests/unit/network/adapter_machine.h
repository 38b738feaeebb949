/// Laptops for the tests of CNetworkAdapter.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/unit/network/card_machine.h"

namespace network_test {

inline constexpr auto kWifiCaption = "Intel(R) Wi-Fi 6 AX201 160MHz";
inline constexpr auto kWifiDisplayName = "Wireless Card #2";

inline simulator::Adapter WifiAdapter(const std::string& address, const std::string& gateway) {
  return {.description = kWifiCaption,
          .type = 71,
          .ip_addresses = {{.address = address, .mask = "255.255.255.0"}},
          .gateways = {{.address = gateway}}};
}

/// A laptop whose wireless card works and has an address by DHCP; nothing speaks against it.
inline simulator::Machine LaptopOnWifi() {
  auto machine = LaptopWithCards();
  for (auto& device : *machine.devices) {
    if (device.hardware_ids.front() != kWifiId) continue;
    device.description = kWifiCaption;
    device.display_name = kWifiDisplayName;
    device.manufacturer = "Intel Corporation";
    device.driver_version = "22.80.1.1";
    device.inf = "oem12.inf";
  }
  machine.wmi->classes["Win32_NetworkAdapter"] = {{{"Name", kWifiDisplayName},
                                                   {"MACAddress", "A4:6B:B6:12:34:56"},
                                                   {"GUID", "{5A6B7C8D-1234-4321-ABCD-0123456789AB}"},
                                                   {"AdapterType", "Ethernet 802.3"}}};
  machine.adapters = {.list = {WifiAdapter("192.168.1.20", "192.168.1.10")}};
  machine.adapters->list[0].lease_expires = 2'000;
  machine.wifi = {.interfaces = {{.guid = "{5A6B7C8D-1234-4321-ABCD-0123456789AB}"}}};
  machine.internet.emplace();
  machine.com.emplace();
  machine.network_list.emplace();
  machine.firewall.emplace();
  machine.files = {{.path = "C:", .folder = true},
                   {.path = "C:\\Windows", .folder = true},
                   {.path = "C:\\Windows\\System32", .folder = true},
                   {.path = "C:\\Windows\\System32\\drivers", .folder = true},
                   {.path = "C:\\Windows\\System32\\drivers\\etc", .folder = true},
                   {.path = "C:\\Windows\\System32\\drivers\\etc\\hosts", .contents = "# Copyright\r\n"}};
  machine.clock = {.now = 1'000 * 10'000'000LL};
  return machine;
}

/// Calls of the services that CNetworkAdapter itself asks, without those that find the card.
inline std::vector<std::string> TraceWithout(const simulator::Run& run,
                                             const std::vector<std::string>& left_out) {
  auto trace = run.Trace();
  std::erase_if(trace, [&](const std::string& call) {
    return std::ranges::any_of(left_out, [&](const auto& name) { return call.starts_with(name); });
  });
  return trace;
}

/// The calls that find the card and its names.
inline const std::vector<std::string> kCardCalls{
    "Hal", "Reg", "GetDevice", "SelectStr", "CWMI", "StringToWString", "GetUnknown"};

/// The lines that CNetworkAdapter wrote, without those of the card's class.
inline std::vector<std::string> OwnLines(const velmora::testing::CapturedLog& log) {
  std::vector<std::string> texts;
  for (const auto& line : log.Lines()) {
    if (line.function.starts_with("CNetworkAdapter::")) texts.push_back(line.level + " " + line.text);
  }
  return texts;
}

}  // namespace network_test
