#include "platform/linux/system_bus.h"

#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <new>

namespace velmora::os {
namespace {

struct TextFreer {
  void operator()(char* text) const noexcept { std::free(text); }
};

std::uint64_t MicrosecondsNow() noexcept {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000 + static_cast<std::uint64_t>(now.tv_nsec) / 1000;
}

/// Whether a bus may be there, so far as that can be told without a library: at an address that the user has
/// set, or else at its usual place.
bool MayHaveBus() noexcept {
  return secure_getenv("DBUS_SYSTEM_BUS_ADDRESS") != nullptr ||
         access("/run/dbus/system_bus_socket", F_OK) == 0;
}

/// Goes through the greeting on a new connection, which the library itself would wait for much longer.
bool BecomesReady(const SystemdLibrary& library, sd_bus* bus) noexcept {
  const std::uint64_t end = MicrosecondsNow() + kBusTimeoutMicroseconds;
  for (;;) {
    const int progress = library.bus_process(bus, nullptr);
    if (progress < 0) return false;
    if (library.bus_is_ready(bus) > 0) return true;
    if (progress > 0) continue;
    const std::uint64_t now = MicrosecondsNow();
    if (now >= end || library.bus_wait(bus, end - now) < 0) return false;
  }
}

}  // namespace

bool BusError::IsRefusal() const noexcept {
  return Is(SD_BUS_ERROR_ACCESS_DENIED) || Is(SD_BUS_ERROR_INTERACTIVE_AUTHORIZATION_REQUIRED) ||
         Is(SD_BUS_ERROR_AUTH_FAILED);
}

bool BusError::IsTimeout() const noexcept {
  return Is(SD_BUS_ERROR_NO_REPLY) || Is(SD_BUS_ERROR_TIMEOUT) || Is("System.Error.ETIMEDOUT");
}

bool SystemBus::Connect() noexcept {
  return library_ && library_.bus_open_system(&bus_) >= 0 &&
         library_.bus_set_method_call_timeout(bus_, kBusTimeoutMicroseconds) >= 0 &&
         BecomesReady(library_, bus_);
}

BusMessage SystemBus::Property(const BusObject& object, const char* property, BusError& error,
                               const char* type) const noexcept {
  sd_bus_message* reply = nullptr;
  const int result = library_.bus_get_property(bus_, object.service, object.path, object.interface, property,
                                               error.Out(library_), &reply, type);
  BusMessage owned(library_, reply);
  return result < 0 ? BusMessage() : std::move(owned);
}

Bus ConnectToSystemBus() noexcept {
  if (!MayHaveBus()) return nullptr;
  Bus bus(new (std::nothrow) SystemBus);
  return bus && bus->Connect() ? std::move(bus) : nullptr;
}

std::optional<std::string> ReadBusText(SystemBus* bus, const BusObject& object, const char* property) {
  const SystemdLibrary& library = bus->Library();
  BusError error;
  char* text = nullptr;
  const int result = library.bus_get_property_string(bus->Get(), object.service, object.path,
                                                     object.interface, property, error.Out(library), &text);
  if (result < 0) return std::nullopt;
  const std::unique_ptr<char, TextFreer> owned(text);
  return std::string(text);
}

std::optional<bool> ReadBusFlag(SystemBus* bus, const BusObject& object, const char* property) noexcept {
  const SystemdLibrary& library = bus->Library();
  BusError error;
  int flag = 0;
  const int result = library.bus_get_property_trivial(
      bus->Get(), object.service, object.path, object.interface, property, error.Out(library), 'b', &flag);
  if (result < 0) return std::nullopt;
  return flag != 0;
}

std::optional<std::uint32_t> ReadBusNumber(SystemBus* bus, const BusObject& object,
                                           const char* property) noexcept {
  const SystemdLibrary& library = bus->Library();
  BusError error;
  std::uint32_t number = 0;
  const int result = library.bus_get_property_trivial(
      bus->Get(), object.service, object.path, object.interface, property, error.Out(library), 'u', &number);
  if (result < 0) return std::nullopt;
  return number;
}

std::optional<std::string> ReadBusPath(SystemBus* bus, const BusObject& object, const char* property) {
  BusError error;
  const BusMessage reply = bus->Property(object, property, error, "o");
  const char* path = nullptr;
  if (reply.ReadBasic('o', &path) <= 0) return std::nullopt;
  return std::string(path);
}

bool IsOnBus(SystemBus* bus, const char* service) noexcept {
  BusError error;
  const BusMessage reply =
      bus->Call({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"}, "NameHasOwner",
                error, "s", service);
  int has_owner = 0;
  return reply.Read("b", &has_owner) > 0 && has_owner != 0;
}

}  // namespace velmora::os
