/// One short conversation with a service on the system bus.
#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <cstdint>
#include <memory>

#include "ostrine/linux/sysfs.h"

namespace ostrine {

struct BusMessageReleaser {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageReleaser>;

/// A private connection that lives as long as the object and waits for everything together no longer than it
/// was given. It starts no service: one that does not run answers nothing.
class BusConnection {
 public:
  static constexpr std::chrono::milliseconds kPatience{3000};

  /// Connects to the system bus below `root`, run/dbus/system_bus_socket.
  explicit BusConnection(const Path& root, std::chrono::milliseconds patience = kPatience);
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

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
  struct Releaser {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  };

  /// Microseconds left of the patience.
  std::uint64_t Remaining() const;
  bool Connect(const Path& socket);

  std::chrono::steady_clock::time_point deadline_;
  std::unique_ptr<sd_bus, Releaser> bus_;
};

}  // namespace ostrine
