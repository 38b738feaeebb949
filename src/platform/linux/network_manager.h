/// What NetworkManager says, where it runs. It is asked over the bus, and never started for a question.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/linux/system_bus.h"

namespace velmora::os {

struct ManagedDhcp {
  bool enabled = false;
  std::string server;
  std::int64_t obtained = 0;  ///< seconds since 1970 UTC; 0 without a lease
  std::int64_t expires = 0;
};

struct ManagedConnectivity {
  bool connected = false;
  std::optional<bool> internet;  ///< absent where it is not told
};

class NetworkManager {
 public:
  /// `bus` may be null: then nobody manages anything.
  explicit NetworkManager(SystemBus* bus) noexcept;

  /// How the interface gets its IPv4 address; nothing when it is not managed.
  std::optional<ManagedDhcp> DhcpOf(const std::string& interface) const;

  std::optional<ManagedConnectivity> Connectivity() const;

 private:
  bool IsManual(const std::string& device) const;

  SystemBus* bus_;
};

}  // namespace velmora::os
