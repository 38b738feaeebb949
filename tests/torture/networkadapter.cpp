/// The network adapter: its inventory, its radio and access points, its connectivity.
#include "velmora/networkadapter.h"
#include "tests/torture/operation.h"

namespace torture {
namespace {

Operation IndexedText(const char* name, int (CNetworkAdapter::*getter)(std::wstring&, int)) {
  return Operation(name,
                   [getter] {
                     std::tuple<int, std::wstring> result{77, L"old"};
                     std::get<0>(result) = (CNetworkAdapter().*getter)(std::get<1>(result), 0);
                     return result;
                   })
      .MayFailWith(std::tuple(0, std::wstring()))
      .MayBeSpoiledTo(std::tuple(1, std::wstring(kOverlong, L'A')));
}

std::vector<Operation> InventoryTable() {
  return {
      Operation("CNetworkAdapter::GetWireLessIndex", [] { return CNetworkAdapter().GetWireLessIndex(); })
          .MayFailWith(std::vector<int>())
          .MayBeSpoiledTo(std::vector{0}),
      Operation("CNetworkAdapter::GetNetworkAdapterNums",
                [] {
                  unsigned int count = 77;
                  const int result = CNetworkAdapter().GetNetworkAdapterNums(count);
                  return std::tuple(result, count);
                })
          .MayFailWith(std::tuple(0, 0)),
      IndexedText("CNetworkAdapter::GetManufacturerbyIndex", &CNetworkAdapter::GetManufacturerbyIndex),
      IndexedText("CNetworkAdapter::GetGUIDIndex", &CNetworkAdapter::GetGUIDIndex),
      IndexedText("CNetworkAdapter::GetHardIdbyIndex", &CNetworkAdapter::GetHardIdbyIndex),
      Operation("CNetworkAdapter::GetErrorStatebyIndex",
                [] {
                  unsigned long code = 77;
                  const int result = CNetworkAdapter().GetErrorStatebyIndex(code, 0);
                  return std::tuple(result, code);
                })
          .MayFailWith(std::tuple(1, 0UL))
          .MayFailWith(std::tuple(1, 45UL))
          .MayBeSpoiledTo(std::tuple(1, 0xFFFFFFFFUL)),
      Operation("CNetworkAdapter::GetINFbyHardId",
                [hardware_id = std::wstring(L"PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_20")] {
                  return CNetworkAdapter().GetINFbyHardId(hardware_id);
                })
          .MayFailWith(std::wstring())
          .MayBeSpoiledTo(std::wstring(kOverlong, L'A')),
  };
}

std::vector<Operation> WifiTable() {
  constexpr unsigned long kInjected = 31;
  constexpr unsigned long kNothingToSwitch = 1168;
  return {
      Operation("CNetworkAdapter::GetWifiSwitchState", [] { return CNetworkAdapter().GetWifiSwitchState(); })
          .MayFailWith(0),
      Operation("CNetworkAdapter::SetWifiSwitchState",
                [] { return CNetworkAdapter().SetWifiSwitchState(true); })
          .MayFailWith(kInjected)
          .MayFailWith(kNothingToSwitch)
          .MayFailWith(0),  // a switching that succeeded and did nothing
      Operation("CNetworkAdapter::GetWirelessGateWayIP",
                [] {
                  std::tuple<int, std::string> result{77, "old"};
                  std::get<0>(result) = CNetworkAdapter().GetWirelessGateWayIP(std::get<1>(result));
                  return result;
                })
          .MayFailWith(std::tuple(0, std::string()))
          .MayBeSpoiledTo(std::tuple(1, std::string(16, '1')))
          // Names without end, of a card and of a later adapter, hold one another.
          .MayBeSpoiledTo(std::tuple(1, std::string("0.0.0.0"))),
      Operation("CNetworkAdapter::GetMacBySsid",
                [] {
                  std::tuple<std::string, std::string, std::string, std::string> result{"a", "b", "c", "d"};
                  auto& [head, last, manufacturer, model] = result;
                  CNetworkAdapter().GetMacBySsid(head, last, "Office", manufacturer, model);
                  return result;
                })
          .MayFailWith(std::tuple(std::string(), std::string(), std::string("c"), std::string()))
          // Elements that claim to go beyond their list are none.
          .MayBeSpoiledTo(
              std::tuple(std::string("001A2B"), std::string("3C4D5E"), std::string(), std::string())),
  };
}

std::vector<Operation> ConnectivityTable() {
  return {
      Operation("CNetworkAdapter::IsInternetAvailable",
                [] {
                  bool connected = true;
                  bool internet = true;
                  const int result = CNetworkAdapter().IsInternetAvailable(connected, internet);
                  return std::tuple(result, connected, internet);
                })
          .MayFailWith(std::tuple(0, false, false))
          .MayFailWith(std::tuple(1, false, false))  // successes that gave nothing
          .MayFailWith(std::tuple(1, true, false))
          .MayFailWith(std::tuple(1, false, true)),
      Operation("CNetworkAdapter::CHeckIPReady",
                [] {
                  auto state = static_cast<emIP_STATE_INFO>(77);
                  const bool result = CNetworkAdapter().CHeckIPReady(state);
                  return std::tuple(result, state);
                })
          .MayFailWith(std::tuple(false, 77))
          .MayBeSpoiledTo(std::tuple(true, 2))    // sixteen ones without a dot
          .MayBeSpoiledTo(std::tuple(false, 1)),  // a later adapter, as above
      Operation("CNetworkAdapter::IsUsingModemNetwork",
                [] { return CNetworkAdapter().IsUsingModemNetwork(); })
          .MayFailWith(0),
      Operation("CNetworkAdapter::IsModemCardExsit", [] { return CNetworkAdapter().IsModemCardExsit(); })
          .MayFailWith(false),
  };
}

/// Each flag of the record may turn out either way when the step that reads it fails, so each stands for
/// itself. The reserved ones are never written.
Operation Info(const char* name, bool stIP_INFO::* flag) {
  return Operation(name,
                   [flag] {
                     stIP_INFO info{.dhcpEnabled = 77, .firewallEnabled = true};
                     const int result = CNetworkAdapter().GetIpInfo(info);
                     return std::tuple(result, info.dhcpEnabled, info.*flag, info.firewallEnabled,
                                       info.outboundRuleBlocked);
                   })
      .MayFailWith(std::tuple(0, 77, flag == &stIP_INFO::firewallEnabled, true, false))
      .MayFailWith(std::tuple(1, 1, false, true, false))
      .MayFailWith(std::tuple(1, 0, false, true, false))
      .MayBeSpoiledTo(std::tuple(1, 1, true, true, false))
      .MayBeSpoiledTo(std::tuple(1, 0, true, true, false));
}

std::vector<Operation> InfoTable() {
  return {Info("CNetworkAdapter::GetIpInfo leaseExpired", &stIP_INFO::leaseExpired),
          Info("CNetworkAdapter::GetIpInfo proxySet", &stIP_INFO::proxySet),
          Info("CNetworkAdapter::GetIpInfo vpnOpen", &stIP_INFO::vpnOpen),
          Info("CNetworkAdapter::GetIpInfo hostsChanged", &stIP_INFO::hostsChanged)};
}

}  // namespace

std::vector<Operation> NetworkAdapterOperations() {
  std::vector<Operation> all;
  for (const auto table : {InventoryTable, WifiTable, ConnectivityTable, InfoTable}) {
    const auto operations = table();
    all.insert(all.end(), operations.begin(), operations.end());
  }
  return all;
}

}  // namespace torture
