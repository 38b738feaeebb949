/// The system's message bus, with an end to every wait.
#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace velmora::os {

struct BusCloser {
  void operator()(sd_bus* bus) const noexcept { sd_bus_close_unref(bus); }
};
struct MessageCloser {
  void operator()(sd_bus_message* message) const noexcept { sd_bus_message_unref(message); }
};

using Bus = std::unique_ptr<sd_bus, BusCloser>;
using BusMessage = std::unique_ptr<sd_bus_message, MessageCloser>;

/// The longest that any one call waits for its answer.
inline constexpr std::uint64_t kBusTimeoutMicroseconds = 5'000'000;

/// What a failed call said.
class BusError {
 public:
  BusError() = default;
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;
  ~BusError() { sd_bus_error_free(&error_); }

  sd_bus_error* Out() noexcept { return &error_; }
  bool Is(const char* name) const noexcept { return sd_bus_error_has_name(&error_, name) != 0; }
  /// Whether the caller lacks the right, or would have to be asked for a password first.
  bool IsRefusal() const noexcept;
  bool IsTimeout() const noexcept;

 private:
  sd_bus_error error_{};
};

/// A connection of the caller's own, ready for calls; null when there is no bus, or none that answers in
/// time.
Bus ConnectToSystemBus() noexcept;

/// Names an object and its interface.
struct BusObject {
  const char* service;
  const char* path;
  const char* interface;
};

/// A property's text or flag; nothing when it cannot be read or is of another type.
std::optional<std::string> ReadBusText(sd_bus* bus, const BusObject& object, const char* property);
std::optional<bool> ReadBusFlag(sd_bus* bus, const BusObject& object, const char* property) noexcept;

/// A property that is an unsigned 32-bit number, or the path of an object.
std::optional<std::uint32_t> ReadBusNumber(sd_bus* bus, const BusObject& object,
                                           const char* property) noexcept;
std::optional<std::string> ReadBusPath(sd_bus* bus, const BusObject& object, const char* property);

/// Whether `service` is there now; it is not started for the question.
bool IsOnBus(sd_bus* bus, const char* service) noexcept;

}  // namespace velmora::os
