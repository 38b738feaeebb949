/// What Velmora requires of the system's internet settings.
#pragma once

#include <cstdint>

namespace velmora::os {

/// Reads `option` (38: the proxy, whose first 32-bit word is the access type: 1 direct, 3 proxy) of the
/// process's settings into `size` bytes at `buffer`. True and the size used on success; false with the last
/// error otherwise: 122, and the size that is needed, when `buffer` is null or too small.
bool InternetQueryOptionW(std::uint32_t option, void* buffer, std::uint32_t& size);

/// Tells how the machine is connected: nonzero, 1 as a rule, when it is. `flags` receives bit 0 modem, bit 1
/// local network, bit 2 proxy, bit 5 offline. `reserved` is 0.
int InternetGetConnectedState(std::uint32_t& flags, std::uint32_t reserved);

}  // namespace velmora::os
