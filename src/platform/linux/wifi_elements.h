/// The elements that an access point announces: an id byte, a length byte, and so many bytes. Pure.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/netlink_message.h"

namespace velmora::os {

/// The bytes of the first whole element with that id; nothing when there is none.
std::optional<Bytes> FindElement(Bytes elements, std::uint8_t id) noexcept;

/// The network's name: at most 32 bytes, empty when it is hidden.
Bytes SsidOf(Bytes elements) noexcept;

/// By the numbers of DOT11_AUTH_ALGORITHM and DOT11_CIPHER_ALGORITHM.
struct WifiSecurity {
  std::uint32_t authentication =
      1;  ///< 1 open, 2 shared key, 3 WPA, 4 with a key, 6 RSN, 7 with a key, 9 SAE, 10 OWE
  std::uint32_t cipher = 0;  ///< 0 none, 0x101 WEP, 2 TKIP, 4 CCMP, 8 GCMP, 9 GCMP-256
};

/// What a network with these elements asks for; `is_private`: its beacons say that it is encrypted.
WifiSecurity SecurityOf(Bytes elements, bool is_private) noexcept;

/// The physical layer by the numbers of DOT11_PHY_TYPE: 4 OFDM, 5 HR-DSSS, 6 ERP, 7 HT, 8 VHT, 10 HE, 11 EHT.
std::uint32_t PhyTypeOf(Bytes elements, std::uint32_t megahertz) noexcept;

}  // namespace velmora::os
