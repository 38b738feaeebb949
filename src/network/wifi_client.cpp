#include "network/wifi_client.h"

namespace velmora::network {
namespace {

constexpr std::uint32_t kClientVersion = 2;

}  // namespace

WifiClient::WifiClient() {
  std::uint32_t negotiated_version = 0;
  if (os::WlanOpenHandle(kClientVersion, negotiated_version, client_.Receive()) != 0 || !client_) return;
  if (os::WlanEnumInterfaces(client_.Get(), interfaces_.Receive()) != 0) interfaces_.Reset();
}

const GUID* WifiClient::FirstInterface() const {
  const auto* list = interfaces_.Get();
  return list != nullptr && list->count > 0 ? &list->items[0].guid : nullptr;
}

}  // namespace velmora::network
