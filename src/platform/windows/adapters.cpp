#include "platform/os/adapters.h"

#include <winsock2.h>

#include <windows.h>

#include <iphlpapi.h>

namespace velmora::os {

static_assert(sizeof(IpAddressText) == sizeof(IP_ADDR_STRING));
static_assert(offsetof(IpAddressText, next) == offsetof(IP_ADDR_STRING, Next));
static_assert(offsetof(IpAddressText, address) == offsetof(IP_ADDR_STRING, IpAddress));
static_assert(offsetof(IpAddressText, mask) == offsetof(IP_ADDR_STRING, IpMask));
static_assert(offsetof(IpAddressText, context) == offsetof(IP_ADDR_STRING, Context));

static_assert(sizeof(AdapterInfo) == sizeof(IP_ADAPTER_INFO));
static_assert(offsetof(AdapterInfo, next) == offsetof(IP_ADAPTER_INFO, Next));
static_assert(offsetof(AdapterInfo, name) == offsetof(IP_ADAPTER_INFO, AdapterName));
static_assert(sizeof(AdapterInfo::name) == sizeof(IP_ADAPTER_INFO::AdapterName));
static_assert(offsetof(AdapterInfo, description) == offsetof(IP_ADAPTER_INFO, Description));
static_assert(sizeof(AdapterInfo::description) == sizeof(IP_ADAPTER_INFO::Description));
static_assert(offsetof(AdapterInfo, address_length) == offsetof(IP_ADAPTER_INFO, AddressLength));
static_assert(offsetof(AdapterInfo, address) == offsetof(IP_ADAPTER_INFO, Address));
static_assert(offsetof(AdapterInfo, index) == offsetof(IP_ADAPTER_INFO, Index));
static_assert(offsetof(AdapterInfo, type) == offsetof(IP_ADAPTER_INFO, Type));
static_assert(offsetof(AdapterInfo, dhcp_enabled) == offsetof(IP_ADAPTER_INFO, DhcpEnabled));
static_assert(offsetof(AdapterInfo, current_ip_address) == offsetof(IP_ADAPTER_INFO, CurrentIpAddress));
static_assert(offsetof(AdapterInfo, ip_addresses) == offsetof(IP_ADAPTER_INFO, IpAddressList));
static_assert(offsetof(AdapterInfo, gateways) == offsetof(IP_ADAPTER_INFO, GatewayList));
static_assert(offsetof(AdapterInfo, dhcp_server) == offsetof(IP_ADAPTER_INFO, DhcpServer));
static_assert(offsetof(AdapterInfo, have_wins) == offsetof(IP_ADAPTER_INFO, HaveWins));
static_assert(offsetof(AdapterInfo, primary_wins) == offsetof(IP_ADAPTER_INFO, PrimaryWinsServer));
static_assert(offsetof(AdapterInfo, lease_obtained) == offsetof(IP_ADAPTER_INFO, LeaseObtained));
static_assert(offsetof(AdapterInfo, lease_expires) == offsetof(IP_ADAPTER_INFO, LeaseExpires));

std::uint32_t GetAdaptersInfo(AdapterInfo* list, std::uint32_t& size) {
  ULONG bytes = size;
  const ULONG result = ::GetAdaptersInfo(reinterpret_cast<IP_ADAPTER_INFO*>(list), &bytes);
  size = bytes;
  return result;
}

}  // namespace velmora::os
