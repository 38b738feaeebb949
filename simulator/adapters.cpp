/// The IP helper's adapter list of a machine, laid out in the caller's buffer.
#include "platform/os/adapters.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <span>

#include "simulator/failing.h"

using simulator::Adapter;
using simulator::AdapterAddress;
using simulator::Entered;
using simulator::Error;
using simulator::Fault;

namespace velmora::os {
namespace {

constexpr Error kNoData = 232;

/// Text that fills its field has no zero.
template <std::size_t Size>
void PutText(const std::string& text, char (&field)[Size]) {
  std::memcpy(field, text.data(), std::min(text.size(), Size));
}

void Put(const AdapterAddress& address, IpAddressText& text) {
  PutText(address.address, text.address);
  PutText(address.mask, text.mask);
}

std::size_t MoreThanOne(const std::vector<AdapterAddress>& addresses) {
  return addresses.empty() ? 0 : addresses.size() - 1;
}

/// Lays records out one behind the other, then the addresses that do not stand in the records themselves.
class Layout {
 public:
  Layout(AdapterInfo* records, std::size_t count)
      : records_(records, count), next_address_(reinterpret_cast<IpAddressText*>(records + count)) {}

  void Put(std::size_t index, const Adapter& adapter) {
    auto& info = *new (&records_[index]) AdapterInfo{};
    if (index + 1 < records_.size()) info.next = &records_[index + 1];
    PutText(adapter.name, info.name);
    PutText(adapter.description, info.description);
    const auto& bytes = adapter.address.data;
    info.address_length = static_cast<std::uint32_t>(std::min(bytes.size(), sizeof info.address));
    std::copy_n(bytes.begin(), info.address_length, info.address);
    info.index = adapter.index;
    info.type = adapter.type;
    info.dhcp_enabled = adapter.dhcp_enabled ? 1 : 0;
    PutList(adapter.ip_addresses, info.ip_addresses);
    PutList(adapter.gateways, info.gateways);
    info.lease_obtained = adapter.lease_obtained;
    info.lease_expires = adapter.lease_expires;
  }

 private:
  void PutList(const std::vector<AdapterAddress>& addresses, IpAddressText& first) {
    IpAddressText* at = &first;
    for (std::size_t i = 0; i < addresses.size(); ++i) {
      if (i > 0) at = at->next = new (next_address_++) IpAddressText{};
      os::Put(addresses[i], *at);
    }
  }

  std::span<AdapterInfo> records_;
  IpAddressText* next_address_;
};

/// The adapters that are there at this call.
std::vector<Adapter> PresentAdapters(const Entered& call) {
  const auto calls = static_cast<std::size_t>(
      std::ranges::count(call.session.calls, "GetAdaptersInfo", &simulator::Call::function));
  std::vector<Adapter> present = call.session.machine.adapters->list;
  std::erase_if(present, [&](const Adapter& adapter) { return adapter.arrives_after_calls >= calls; });
  return present;
}

std::size_t SizeOf(const std::vector<Adapter>& adapters) {
  std::size_t size = adapters.size() * sizeof(AdapterInfo);
  for (const auto& adapter : adapters) {
    size += (MoreThanOne(adapter.ip_addresses) + MoreThanOne(adapter.gateways)) * sizeof(IpAddressText);
  }
  return size;
}

/// Fills every text to its end, so that none has a zero.
void Spoil(AdapterInfo& info) {
  std::ranges::fill(info.name, 'A');
  std::ranges::fill(info.description, 'A');
  for (auto* text : {&info.ip_addresses, &info.gateways}) {
    std::ranges::fill(text->address, '1');
    std::ranges::fill(text->mask, '1');
  }
}

}  // namespace

std::uint32_t GetAdaptersInfo(AdapterInfo* list, std::uint32_t& size) {
  Entered call("GetAdaptersInfo", static_cast<const void*>(list), size);
  if (call.Fails()) return simulator::kInjectedError;
  if (call.fault == Fault::kEmpty) return 0;  // succeeds and writes nothing
  if (!call.session.machine.adapters)
    return simulator::Unscripted(call.session, "GetAdaptersInfo", "adapters");
  const auto& script = *call.session.machine.adapters;
  if (script.error != 0) return script.error;
  const auto adapters = PresentAdapters(call);
  if (adapters.empty()) return kNoData;
  const std::size_t needed = SizeOf(adapters);
  if (list == nullptr || size < needed) {
    size = static_cast<std::uint32_t>(needed);
    return kErrorBufferOverflow;
  }
  Layout layout(list, adapters.size());
  for (std::size_t i = 0; i < adapters.size(); ++i) {
    layout.Put(i, adapters[i]);
    if (call.fault == Fault::kUnterminated) Spoil(list[i]);
  }
  if (script.loops) list[adapters.size() - 1].next = list;
  return 0;
}

}  // namespace velmora::os
