/// The system's message bus, with an end to every wait.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/systemd_message.h"

namespace velmora::os {

using BusMessage = SystemdMessage;

/// The longest that any one call waits for its answer.
inline constexpr std::uint64_t kBusTimeoutMicroseconds = 5'000'000;

/// What a failed call said.
class BusError {
 public:
  BusError() = default;
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;
  ~BusError() {
    if (library_ != nullptr) library_->bus_error_free(&error_);
  }

  /// Where one call puts what it has to say.
  sd_bus_error* Out(const SystemdLibrary& library) noexcept {
    library_ = &library;
    return &error_;
  }
  bool Is(const char* name) const noexcept {
    return error_.name != nullptr && std::string_view(error_.name) == name;
  }
  /// Whether the caller lacks the right, or would have to be asked for a password first.
  bool IsRefusal() const noexcept;
  bool IsTimeout() const noexcept;
  const char* Message() const noexcept { return error_.message; }

 private:
  const SystemdLibrary* library_ = nullptr;
  sd_bus_error error_{};
};

/// Names an object and its interface.
struct BusObject {
  const char* service;
  const char* path;
  const char* interface;
};

/// A connection, with the library that it is made with. Messages and errors that come through it must not
/// outlive it.
class SystemBus {
 public:
  SystemBus() = default;
  SystemBus(const SystemBus&) = delete;
  SystemBus& operator=(const SystemBus&) = delete;
  ~SystemBus() {
    if (bus_ != nullptr) library_.bus_close_unref(bus_);
  }

  /// Connects and waits until calls can be made; false when there is no bus, or none that answers in time.
  bool Connect() noexcept;

  const SystemdLibrary& Library() const noexcept { return library_; }
  sd_bus* Get() const noexcept { return bus_; }

  /// Calls a method with values of those types and gives the reply; none, and `error`, when it fails.
  template <class... Values>
  BusMessage Call(const BusObject& object, const char* method, BusError& error, const char* types,
                  Values... values) const noexcept {
    sd_bus_message* reply = nullptr;
    const int result = library_.bus_call_method(bus_, object.service, object.path, object.interface, method,
                                                error.Out(library_), &reply, types, values...);
    BusMessage owned(library_, reply);
    return result < 0 ? BusMessage() : std::move(owned);
  }

  /// A message with the property's value; none, and `error`, when it cannot be read or is of another type.
  BusMessage Property(const BusObject& object, const char* property, BusError& error,
                      const char* type) const noexcept;

 private:
  SystemdLibrary library_;
  sd_bus* bus_ = nullptr;
};

using Bus = std::unique_ptr<SystemBus>;

/// A connection of the caller's own, ready for calls; null when there is no bus, or none that answers in
/// time.
Bus ConnectToSystemBus() noexcept;

/// A property's text or flag; nothing when it cannot be read or is of another type.
std::optional<std::string> ReadBusText(SystemBus* bus, const BusObject& object, const char* property);
std::optional<bool> ReadBusFlag(SystemBus* bus, const BusObject& object, const char* property) noexcept;

/// A property that is an unsigned 32-bit number, or the path of an object.
std::optional<std::uint32_t> ReadBusNumber(SystemBus* bus, const BusObject& object,
                                           const char* property) noexcept;
std::optional<std::string> ReadBusPath(SystemBus* bus, const BusObject& object, const char* property);

/// Whether `service` is there now; it is not started for the question.
bool IsOnBus(SystemBus* bus, const char* service) noexcept;

}  // namespace velmora::os
