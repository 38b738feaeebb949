/// One short conversation with a service on the system bus.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "ostrine/linux/sysfs.h"
#include "platform/linux/systemd_message.h"

namespace ostrine {

using BusMessage = velmora::SystemdMessage;

/// A private connection that lives as long as the object and waits for everything together no longer than it
/// was given. It starts no service: one that does not run answers nothing. Messages must not outlive it.
class BusConnection {
 public:
  static constexpr std::chrono::milliseconds kPatience{3000};

  /// Connects to the system bus below `root`, run/dbus/system_bus_socket.
  explicit BusConnection(const Path& root, std::chrono::milliseconds patience = kPatience);
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;
  ~BusConnection() { Close(); }

  struct Method {
    const char* service;
    const char* object;
    const char* interface;
    const char* name;
  };

  /// A message that calls `method`, to be given its arguments and to Call; null without a connection.
  BusMessage NewCall(const Method& method) const;

  /// The reply to `call`; null for an error, a null call, or no reply in time.
  BusMessage Call(const BusMessage& call) const;

 private:
  /// Microseconds left of the patience.
  std::uint64_t Remaining() const;
  bool Connect(const Path& socket);
  void Close();

  std::chrono::steady_clock::time_point deadline_;
  std::optional<velmora::SystemdLibrary> library_;  ///< loaded only where there is a bus
  sd_bus* bus_ = nullptr;
};

}  // namespace ostrine
