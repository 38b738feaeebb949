/// What the kernel's nl80211 family tells of Wi-Fi interfaces and of what their latest scan found.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/netlink.h"
#include "platform/linux/wifi_elements.h"

namespace velmora::os {

struct WifiInterface {
  std::uint32_t index = 0;
  std::string name;
  std::uint32_t mode = 0;  ///< 1 in an ad-hoc network, 2 client of access points...
};

/// An access point as it was last heard.
struct AccessPoint {
  std::array<std::uint8_t, 6> address{};
  std::uint32_t megahertz = 0;
  std::uint64_t timestamp = 0;
  std::uint16_t beacon_interval = 0;
  std::uint16_t capability = 0;
  std::int32_t signal = 0;  ///< dBm; where the hardware only tells a percentage, what that stands for
  std::uint32_t age = 0;    ///< milliseconds since it was heard
  bool is_connected = false;
  std::vector<std::uint8_t> elements;

  bool IsPrivate() const noexcept;
  bool IsAdHoc() const noexcept;
  /// 0 for -100 dBm and less, 100 for -50 dBm and more, in between in proportion.
  std::uint32_t Quality() const noexcept;
};

/// What the messages of an answer say; others, and broken ones, are passed over. Pure.
std::optional<std::uint16_t> ParseFamily(Bytes messages);
std::vector<WifiInterface> ParseWifiInterfaces(Bytes messages, std::uint16_t family);
std::vector<AccessPoint> ParseScan(Bytes messages, std::uint16_t family);

/// The number of the nl80211 family; nothing, with errno ENOENT where the kernel has no Wi-Fi.
std::optional<std::uint16_t> FindWifiFamily(Netlink& netlink);

/// The interfaces that are clients or members of networks, in the order of their numbers.
std::optional<std::vector<WifiInterface>> ReadWifiInterfaces(Netlink& netlink, std::uint16_t family);

/// What the latest scan of the interface found: what it is connected to first, then the strongest. No scan is
/// started.
std::optional<std::vector<AccessPoint>> ReadScan(Netlink& netlink, std::uint16_t family,
                                                 std::uint32_t interface);

}  // namespace velmora::os
