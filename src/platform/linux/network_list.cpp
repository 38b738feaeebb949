#include "platform/os/network_list.h"

#include <linux/netlink.h>

#include "platform/linux/com_object.h"
#include "platform/linux/connectivity.h"
#include "platform/linux/netlink.h"
#include "platform/linux/system_bus.h"

namespace velmora::os {
namespace {

constexpr auto kBadPointer = static_cast<ComResult>(0x80004003U);

ComResult Answer(ComObject manager, bool Connectivity::* fact, VariantBool& connected) {
  const auto* list = ObjectOf<NetworkListObject>(manager);
  if (list == nullptr) return kBadPointer;
  NetlinkSocket netlink(NETLINK_ROUTE);
  const auto state = ReadNetworkState(netlink);
  if (!state) return kComFail;
  const Bus bus = ConnectToSystemBus();
  const Connectivity connectivity = ConnectivityOf(list->Root(), *state, NetworkManager(bus.get()));
  connected = connectivity.*fact ? kVariantTrue : VariantBool{0};
  return kComOk;
}

}  // namespace

ComResult NetworkListIsConnected(ComObject manager, VariantBool& connected) {
  return Answer(manager, &Connectivity::connected, connected);
}

ComResult NetworkListIsConnectedToInternet(ComObject manager, VariantBool& connected) {
  return Answer(manager, &Connectivity::internet, connected);
}

}  // namespace velmora::os
