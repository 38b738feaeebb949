#include "platform/linux/adapters.h"

#include <linux/netlink.h>
#include <net/if_arp.h>

#include <algorithm>
#include <limits>
#include <new>

#include "platform/linux/adapter_name.h"
#include "platform/linux/dhcp.h"
#include "platform/linux/network_interface.h"
#include "platform/linux/system_bus.h"
#include "platform/os/last_error.h"
#include "platform/ostrine/interface_guid.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kErrorNoData = 232;

constexpr std::uint32_t kTypeEthernet = 6;
constexpr std::uint32_t kTypeDialled = 23;
constexpr std::uint32_t kTypeVirtual = 53;
constexpr std::uint32_t kTypeWireless = 71;
constexpr std::uint32_t kTypeTunnel = 131;
constexpr std::uint32_t kTypeMobile = 243;

std::uint32_t TypeOf(const NetworkLink& link, Medium medium) {
  switch (medium) {
    case Medium::kWired:
      return kTypeEthernet;
    case Medium::kWireless:
      return kTypeWireless;
    case Medium::kMobile:
      return kTypeMobile;
    case Medium::kNone:
      break;
  }
  if (!IsTunnel(link)) return kTypeVirtual;
  return link.hardware == ARPHRD_PPP ? kTypeDialled : kTypeTunnel;
}

IpAddressText Entry(const std::string& address, const std::string& mask) {
  IpAddressText entry{};
  address.copy(entry.address, sizeof entry.address);
  mask.copy(entry.mask, sizeof entry.mask);
  return entry;
}

IpAddressText NoAddress() { return Entry("0.0.0.0", "0.0.0.0"); }

/// An adapter that is listed, with what it was made from.
struct Listed {
  const NetworkLink* link = nullptr;
  std::vector<const NetworkAddress*> addresses;  ///< none while the link is down
};

std::vector<const NetworkAddress*> AddressesOf(const NetworkLink& link, const NetworkState& state) {
  std::vector<const NetworkAddress*> addresses;
  if (!link.IsRunning()) return addresses;
  for (const NetworkAddress& address : state.addresses) {
    if (address.index == link.index && !address.is_ipv6) addresses.push_back(&address);
  }
  return addresses;
}

std::vector<Listed> ListAdapters(const std::filesystem::path& root, const NetworkState& state) {
  std::vector<Listed> adapters;
  for (const NetworkLink& link : state.links) {
    if (link.IsLoopback()) continue;
    Listed listed{.link = &link, .addresses = AddressesOf(link, state)};
    if (!listed.addresses.empty() || IsCard(root, link.name)) adapters.push_back(std::move(listed));
  }
  return adapters;
}

/// What the kernel says of an adapter over netlink.
Adapter KernelsWord(const NetworkState& state, const Listed& listed) {
  const NetworkLink& link = *listed.link;
  Adapter adapter{.name = GuidText(InterfaceGuid(link.name)),
                  .description = {},
                  .address = link.address,
                  .index = link.index};
  for (const NetworkAddress* address : listed.addresses) {
    adapter.ip_addresses.push_back(Entry(TextOf(address->address), TextOf(MaskOf(address->prefix_length))));
  }
  for (const DefaultRoute& route : state.routes) {
    const bool is_here = route.index == link.index && route.gateway && !listed.addresses.empty();
    if (is_here) adapter.gateways.push_back(Entry(TextOf(*route.gateway), "255.255.255.255"));
  }
  if (adapter.ip_addresses.empty()) adapter.ip_addresses.push_back(NoAddress());
  if (adapter.gateways.empty()) adapter.gateways.push_back(NoAddress());
  return adapter;
}

/// Adds what takes longer to find out and no room in the list: types, names and leases.
void Complete(const std::filesystem::path& root, const std::vector<Listed>& listed,
              std::vector<Adapter>& adapters) {
  const Bus bus = ConnectToSystemBus();
  const NetworkManager manager(bus.get());
  const Moment now = Now();
  for (std::size_t i = 0; i < listed.size(); ++i) {
    const auto& [link, addresses] = listed[i];
    adapters[i].type = TypeOf(*link, MediumOf(root, link->name));
    adapters[i].description = DescribeAdapter(root, *link);
    const NetworkAddress* first = addresses.empty() ? nullptr : addresses.front();
    ManagedDhcp dhcp = DhcpOf(root, manager, *link, first, now);
    adapters[i].dhcp_enabled = dhcp.enabled;
    adapters[i].dhcp_server = std::move(dhcp.server);
    adapters[i].lease_obtained = dhcp.obtained;
    adapters[i].lease_expires = dhcp.expires;
  }
}

/// Text of a field of `Size` bytes: as many whole characters as fit, and a zero.
template <std::size_t Size>
void PutText(const std::string& text, char (&field)[Size]) {
  std::size_t size = std::min(text.size(), Size - 1);
  const auto is_inside = [&](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  while (size > 0 && size < text.size() && is_inside(size)) --size;
  std::copy_n(text.data(), size, field);
}

/// Lays records out one behind the other, then the addresses that do not stand in the records themselves.
class Layout {
 public:
  Layout(AdapterInfo* records, std::size_t count)
      : records_(records, count), next_address_(reinterpret_cast<IpAddressText*>(records + count)) {}

  void Put(std::size_t index, const Adapter& adapter) {
    auto& info = *new (&records_[index]) AdapterInfo{};
    if (index + 1 < records_.size()) info.next = &records_[index + 1];
    info.combo_index = info.index = adapter.index;
    PutText(adapter.name, info.name);
    PutText(adapter.description, info.description);
    info.address_length = static_cast<std::uint32_t>(std::min(adapter.address.size(), sizeof info.address));
    std::copy_n(adapter.address.begin(), info.address_length, info.address);
    info.type = adapter.type;
    info.dhcp_enabled = adapter.dhcp_enabled ? 1 : 0;
    PutList(adapter.ip_addresses, info.ip_addresses);
    PutList(adapter.gateways, info.gateways);
    PutText(adapter.dhcp_server, info.dhcp_server.address);
    info.lease_obtained = adapter.lease_obtained;
    info.lease_expires = adapter.lease_expires;
  }

 private:
  void PutList(const std::vector<IpAddressText>& addresses, IpAddressText& first) {
    IpAddressText* at = &first;
    for (std::size_t i = 0; i < addresses.size(); ++i) {
      if (i > 0) at = at->next = new (next_address_++) IpAddressText{};
      *at = addresses[i];
    }
  }

  std::span<AdapterInfo> records_;
  IpAddressText* next_address_;
};

std::size_t MoreThanOne(const std::vector<IpAddressText>& addresses) {
  return addresses.empty() ? 0 : addresses.size() - 1;
}

}  // namespace

std::size_t SizeOf(std::span<const Adapter> adapters) {
  std::size_t size = adapters.size() * sizeof(AdapterInfo);
  for (const Adapter& adapter : adapters) {
    size += (MoreThanOne(adapter.ip_addresses) + MoreThanOne(adapter.gateways)) * sizeof(IpAddressText);
  }
  return size;
}

void PutAdapters(std::span<const Adapter> adapters, AdapterInfo* list) {
  Layout layout(list, adapters.size());
  for (std::size_t i = 0; i < adapters.size(); ++i) layout.Put(i, adapters[i]);
}

std::uint32_t FillAdaptersInfo(const std::filesystem::path& root, Netlink& netlink, AdapterInfo* list,
                               std::uint32_t& size) {
  const auto state = ReadNetworkState(netlink, Routes::kIpv4);
  if (!state) return LastError();
  const std::vector<Listed> listed = ListAdapters(root, *state);
  if (listed.empty()) return kErrorNoData;
  std::vector<Adapter> adapters;
  adapters.reserve(listed.size());
  for (const Listed& one : listed) adapters.push_back(KernelsWord(*state, one));
  const std::size_t needed = SizeOf(adapters);
  if (needed > std::numeric_limits<std::uint32_t>::max()) return kErrorNotEnoughMemory;
  if (list == nullptr || size < needed) {
    size = static_cast<std::uint32_t>(needed);
    return kErrorBufferOverflow;
  }
  Complete(root, listed, adapters);
  PutAdapters(adapters, list);
  return 0;
}

std::uint32_t GetAdaptersInfo(AdapterInfo* list, std::uint32_t& size) {
  NetlinkSocket netlink(NETLINK_ROUTE);
  return FillAdaptersInfo("/", netlink, list, size);
}

}  // namespace velmora::os
