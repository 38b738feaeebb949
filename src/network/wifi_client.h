#pragma once

#include "platform/os/wifi.h"
#include "platform/owned.h"

namespace velmora::network {

/// A list or data that the Wi-Fi service lent.
template <class Record>
using WifiMemory = Owned<Record*, os::WlanFreeMemory>;

/// A client of the Wi-Fi service with the interfaces that it lists. Everything is given back at its end, the
/// list before the client.
class WifiClient {
 public:
  WifiClient();

  os::Handle Handle() const { return client_.Get(); }

  /// The first interface; null when there is none or a step failed, which has left the last error.
  const GUID* FirstInterface() const;

 private:
  Owned<os::Handle, os::WlanCloseHandle> client_;
  WifiMemory<os::WlanInterfaceList> interfaces_;
};

}  // namespace velmora::network
