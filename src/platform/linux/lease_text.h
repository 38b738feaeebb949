/// The files in which DHCP clients keep their leases. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/network_state.h"

namespace velmora::os {

struct Lease {
  Ipv4 address = 0;
  std::string server;        ///< empty when it is not told
  std::int64_t expires = 0;  ///< seconds since 1970 UTC; 0 when it is not told, the last second for never
};

/// The latest lease of `interface` in what `dhclient` writes: blocks "lease { interface "eth0"; ... }", the
/// latest at the end. Nothing when there is none. A block that does not name an interface counts for each.
std::optional<Lease> FindClientLease(std::string_view text, std::string_view interface);

/// The lease in what `dhcpcd` keeps: the server's reply as it came. Nothing when it is none.
std::optional<Lease> ParseReply(Bytes reply);

/// Seconds from 1970-01-01 00:00 UTC to "2024/02/29 13:07:00"; nothing for any other text.
std::optional<std::int64_t> ParseLeaseTime(std::string_view text) noexcept;

}  // namespace velmora::os
