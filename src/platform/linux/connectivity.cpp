#include "platform/linux/connectivity.h"

#include <net/if_arp.h>

#include <algorithm>

#include "platform/linux/network_interface.h"

namespace velmora::os {
namespace {

const NetworkLink* FindRunning(const NetworkState& state, std::uint32_t index) {
  const auto found = std::find_if(state.links.begin(), state.links.end(), [&](const NetworkLink& link) {
    return link.index == index && link.IsRunning() && !link.IsLoopback();
  });
  return found != state.links.end() ? &*found : nullptr;
}

}  // namespace

Connectivity ConnectivityOf(const std::filesystem::path& root, const NetworkState& state) {
  Connectivity connectivity;
  bool is_only_dialled = true;
  for (const DefaultRoute& route : state.routes) {
    const NetworkLink* link = FindRunning(state, route.index);
    if (link == nullptr) continue;
    connectivity.connected = connectivity.internet = true;
    if (link->hardware != ARPHRD_PPP) is_only_dialled = false;
  }
  connectivity.dialled = connectivity.internet && is_only_dialled;
  for (const NetworkAddress& address : state.addresses) {
    if (connectivity.connected) break;
    const NetworkLink* link = address.is_global ? FindRunning(state, address.index) : nullptr;
    if (link != nullptr && MediumOf(root, link->name) != Medium::kNone) connectivity.connected = true;
  }
  return connectivity;
}

Connectivity ConnectivityOf(const std::filesystem::path& root, const NetworkState& state,
                            const NetworkManager& manager) {
  Connectivity connectivity = ConnectivityOf(root, state);
  const auto managed = manager.Connectivity();
  if (!managed || !managed->connected) return connectivity;
  connectivity.connected = true;
  connectivity.internet = managed->internet.value_or(connectivity.internet);
  return connectivity;
}

}  // namespace velmora::os
