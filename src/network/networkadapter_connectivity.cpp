/// Whether the machine is online, and what may speak against it.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <source_location>

#include "network/adapter_list.h"
#include "network/address_state.h"
#include "network/com_apartment.h"
#include "network/firewall_probe.h"
#include "network/hosts_rule.h"
#include "network/wireless_adapter.h"
#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/os/clock.h"
#include "platform/os/files.h"
#include "platform/os/internet_settings.h"
#include "platform/os/last_error.h"
#include "platform/os/network_list.h"
#include "platform/owned.h"
#include "velmora/networkadapter.h"
#include "velmora/networkcard.h"

using velmora::Answer;
using velmora::LogDebug;
using velmora::LogDebugNarrow;
using velmora::LogError;
using velmora::Within;

namespace network = velmora::network;
namespace os = velmora::os;

namespace {

constexpr GUID kManagerClass{0xDCB00C01, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr GUID kManager{0xDCB00000, 0x570F, 0x4A9B, {0x8D, 0x69, 0x19, 0x9F, 0xDB, 0xA5, 0x72, 0x3B}};
constexpr GUID kAnyObject{0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr std::uint32_t kWhereverItRuns = 23;

constexpr std::uint32_t kProxyOption = 38;
constexpr std::uint32_t kProxyAccess = 3;
constexpr std::uint32_t kModemFlag = 1;
constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr wchar_t kHostsFile[] = L"C:\\Windows\\System32\\drivers\\etc\\hosts";

/// Whether a proxy is set by name.
bool IsProxySet() {
  std::uint32_t size = 0;
  if (os::InternetQueryOptionW(kProxyOption, nullptr, size)) return false;
  if (os::LastError() != os::kErrorInsufficientBuffer || size == 0) return false;
  const std::unique_ptr<std::byte[]> answer(new (std::nothrow) std::byte[size]());
  if (!answer) return false;
  const std::uint32_t room = size;
  if (!os::InternetQueryOptionW(kProxyOption, answer.get(), size)) return false;
  std::uint32_t access_type = 0;
  if (sizeof access_type > std::min(size, room)) return false;
  std::memcpy(&access_type, answer.get(), sizeof access_type);
  return access_type == kProxyAccess;
}

bool IsHostsFileChanged() {
  const velmora::Owned<os::Handle, os::CloseHandle> file(os::OpenFileForReading(kHostsFile));
  if (!file) return false;
  std::array<char, 4096> buffer{};
  network::HostsRule rule;
  for (;;) {
    const std::size_t size =
        os::ReadFile(file.Get(), buffer.data(), static_cast<std::uint32_t>(buffer.size()));
    if (size == 0) return rule.IsChanged();
    if (rule.Read({buffer.data(), std::min(size, buffer.size())})) return true;
  }
}

bool IsVpnOpen(const std::source_location& location) {
  const network::AdapterList adapters;
  const auto vpn = network::FindOpenVpn(adapters);
  LogDebugNarrow(
      [&](auto& line) {
        line << "strDescription=" << vpn.description << "bRet=" << vpn.is_open
             << Within("CNetworkAdapter::GetIpInfo");
      },
      location);
  return vpn.is_open;
}

bool IsLeaseExpired(std::int64_t lease_expires, const std::source_location& location) {
  const std::int64_t now = os::SystemTime() / kTicksPerSecond;
  LogDebug(
      [&](auto& line) {
        line << "tCurTime=" << now << ", LeaseExpires=" << lease_expires
             << Within("CNetworkAdapter::GetIpInfo");
      },
      location);
  return lease_expires <= now;
}

/// Reads everything before it writes anything, so that `info` is filled whole or not touched.
int FillInfo(stIP_INFO& info, const std::source_location& location) {
  const network::AdapterList adapters;
  const auto* const adapter = network::FindWirelessAdapter(adapters).info;
  if (adapter == nullptr) return 0;
  const bool is_proxy_set = IsProxySet();
  const bool is_vpn_open = IsVpnOpen(location);
  const bool is_lease_expired = IsLeaseExpired(adapter->lease_expires, location);
  network::ProbeFirewall();
  const bool is_hosts_changed = IsHostsFileChanged();
  LogDebug(
      [&](auto& line) {
        line << "IsHostsChange=" << is_hosts_changed << Within("CNetworkAdapter::GetIpInfo");
      },
      location);
  info.dhcpEnabled = static_cast<std::int32_t>(adapter->dhcp_enabled);
  info.leaseExpired = is_lease_expired;
  info.proxySet = is_proxy_set;
  info.vpnOpen = is_vpn_open;
  info.hostsChanged = is_hosts_changed;
  return 1;
}

/// What the network list manager says.
struct Connection {
  bool is_asked = false;  ///< both questions were answered
  os::ComResult result = os::kComFail;
  bool is_connected = false;
  bool is_internet_connected = false;
};

/// Notes the result of a step; false, and a line, when it failed or gave nothing.
bool Succeeds(Connection& connection, os::ComResult result, bool gave_something, const char* label,
              const std::source_location& location) {
  connection.result = result;
  if (os::ComSucceeded(result) && gave_something) return true;
  LogError([&](auto& line) { line << label << result << Within("CNetworkAdapter::IsInternetAvailable"); },
           location);
  return false;
}

void AskManager(Connection& connection, const std::source_location& location) {
  const network::ComScope scope(os::CoInitialize());
  network::ComPointer object;
  auto result = os::CoCreateInstance(kManagerClass, kWhereverItRuns, kAnyObject, object.Receive());
  if (!Succeeds(connection, result, static_cast<bool>(object), "CoCreateInstance fail, hres=", location))
    return;
  network::ComPointer manager;
  result = os::ComQueryInterface(object.Get(), kManager, manager.Receive());
  if (!Succeeds(connection, result, static_cast<bool>(manager), "QueryInterface fail, hres=", location))
    return;
  os::VariantBool connected = 0;
  result = os::NetworkListIsConnected(manager.Get(), connected);
  if (!Succeeds(connection, result, true, "get_IsConnected fail, hres=", location)) return;
  os::VariantBool internet = 0;
  result = os::NetworkListIsConnectedToInternet(manager.Get(), internet);
  if (!Succeeds(connection, result, true, "get_IsConnectedToInternet fail, hres=", location)) return;
  connection.is_connected = connected == os::kVariantTrue;
  connection.is_internet_connected = internet == os::kVariantTrue;
  connection.is_asked = true;
}

}  // namespace

int CNetworkAdapter::IsInternetAvailable(bool& isNetConnected, bool& isInternetConnected) {
  const auto here = std::source_location::current();
  Connection connection;
  velmora::Attempt([&] { AskManager(connection, here); });
  isNetConnected = connection.is_connected;
  isInternetConnected = connection.is_internet_connected;
  const int result = connection.is_asked ? 1 : 0;
  LogDebug([&](auto& line) {
    line << "bRet" << result << ", hres=" << connection.result << ", IsNetConnected=" << isNetConnected
         << ", IsInternetConnected=" << isInternetConnected << Within("CNetworkAdapter::IsInternetAvailable");
  });
  return result;
}

int CNetworkAdapter::GetIpInfo(stIP_INFO& info) {
  const auto here = std::source_location::current();
  return Answer(0, [&] { return FillInfo(info, here); });
}

bool CNetworkAdapter::CHeckIPReady(emIP_STATE_INFO& state) {
  std::wstring description;
  const bool is_found = Answer(false, [&] {
    const network::AdapterList adapters;
    auto found = network::FindWirelessAdapter(adapters);
    if (found.info == nullptr) return false;
    state = network::ClassifyAddress(network::FieldText(found.info->ip_addresses.address),
                                     network::FieldText(found.info->gateways.address),
                                     found.info->dhcp_enabled != 0);
    description.swap(found.description);
    return true;
  });
  if (!is_found) return false;
  const bool is_ready = network::IsAddressAssigned(state);
  LogDebug([&](auto& line) {
    line << "Desc=" << description << "bRet=" << is_ready << ", state=" << state
         << Within("CNetworkAdapter::CHeckIPReady");
  });
  return is_ready;
}

int CNetworkAdapter::IsUsingModemNetwork() {
  std::uint32_t flags = 0;
  int online = 0;
  const bool is_on_modem = Answer(false, [&] {
    online = os::InternetGetConnectedState(flags, 0);
    if (online != 0 && (flags & kModemFlag) != 0) return true;
    if (online != 1) return false;
    const network::AdapterList adapters;
    return network::IsOnMobileBroadbandOnly(adapters);
  });
  LogDebug([&](auto& line) {
    line << "oneline=" << online << ", flags=" << flags << ", state=" << is_on_modem
         << Within("CNetworkAdapter::IsUsingModemNetwork");
  });
  if (!is_on_modem) {
    LogDebug([](auto& line) { line << "not modem net" << Within("CNetworkAdapter::IsUsingModemNetwork"); });
  }
  return is_on_modem ? 1 : 0;
}

bool CNetworkAdapter::IsModemCardExsit() {
  const bool exists = !CNetworkCard().GetAllMobileHardId().empty();
  LogDebug([&](auto& line) {
    line << (exists ? "ModemCard exist" : "ModemCard not exist")
         << Within("CNetworkAdapter::IsModemCardExsit");
  });
  return exists;
}
