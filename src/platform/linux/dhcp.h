/// Whether, and for how long, an interface has its address from a DHCP server.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/linux/network_manager.h"
#include "platform/linux/network_state.h"

namespace velmora::os {

/// The present moment by the clock that callers know, in seconds since 1970 UTC, and in hundredths of a
/// second since the system started.
struct Moment {
  std::int64_t seconds = 0;
  std::int64_t hundredths = 0;
};
Moment Now();

/// Goes by what the one who set the address says, in this order: NetworkManager; systemd-networkd's lease, or
/// its settings while there is none; the kernel, where the address is only valid for a time; a lease file of
/// dhclient or dhcpcd that has this very address. Where all are silent the address is static.
///
/// `address`: the interface's first IPv4 address, or null. The times of the lease are the kernel's where no
/// one else tells them, since every client sets the address for as long as the lease lasts.
ManagedDhcp DhcpOf(const std::filesystem::path& root, const NetworkManager& manager, const NetworkLink& link,
                   const NetworkAddress* address, const Moment& now);

}  // namespace velmora::os
