#include "platform/linux/system_bus.h"

#include <cstdlib>
#include <ctime>

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

/// Goes through the greeting on a new connection, which the library itself would wait for much longer.
bool BecomesReady(sd_bus* bus) noexcept {
  const std::uint64_t end = MicrosecondsNow() + kBusTimeoutMicroseconds;
  for (;;) {
    const int progress = sd_bus_process(bus, nullptr);
    if (progress < 0) return false;
    if (sd_bus_is_ready(bus) > 0) return true;
    if (progress > 0) continue;
    const std::uint64_t now = MicrosecondsNow();
    if (now >= end || sd_bus_wait(bus, end - now) < 0) return false;
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

Bus ConnectToSystemBus() noexcept {
  sd_bus* opened = nullptr;
  if (sd_bus_open_system(&opened) < 0) return nullptr;
  Bus bus(opened);
  if (sd_bus_set_method_call_timeout(bus.get(), kBusTimeoutMicroseconds) < 0 || !BecomesReady(bus.get())) {
    return nullptr;
  }
  return bus;
}

std::optional<std::string> ReadBusText(sd_bus* bus, const BusObject& object, const char* property) {
  BusError error;
  char* text = nullptr;
  const int result = sd_bus_get_property_string(bus, object.service, object.path, object.interface, property,
                                                error.Out(), &text);
  if (result < 0) return std::nullopt;
  const std::unique_ptr<char, TextFreer> owned(text);
  return std::string(text);
}

std::optional<bool> ReadBusFlag(sd_bus* bus, const BusObject& object, const char* property) noexcept {
  BusError error;
  int flag = 0;
  const int result = sd_bus_get_property_trivial(bus, object.service, object.path, object.interface, property,
                                                 error.Out(), 'b', &flag);
  if (result < 0) return std::nullopt;
  return flag != 0;
}

std::optional<std::uint32_t> ReadBusNumber(sd_bus* bus, const BusObject& object,
                                           const char* property) noexcept {
  BusError error;
  std::uint32_t number = 0;
  const int result = sd_bus_get_property_trivial(bus, object.service, object.path, object.interface, property,
                                                 error.Out(), 'u', &number);
  if (result < 0) return std::nullopt;
  return number;
}

std::optional<std::string> ReadBusPath(sd_bus* bus, const BusObject& object, const char* property) {
  BusError error;
  sd_bus_message* reply = nullptr;
  const int result = sd_bus_get_property(bus, object.service, object.path, object.interface, property,
                                         error.Out(), &reply, "o");
  const BusMessage owned(reply);
  const char* path = nullptr;
  if (result < 0 || sd_bus_message_read_basic(reply, 'o', &path) <= 0) return std::nullopt;
  return std::string(path);
}

bool IsOnBus(sd_bus* bus, const char* service) noexcept {
  BusError error;
  sd_bus_message* reply = nullptr;
  const int result =
      sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "NameHasOwner", error.Out(), &reply, "s", service);
  const BusMessage owned(reply);
  int has_owner = 0;
  return result >= 0 && sd_bus_message_read(reply, "b", &has_owner) > 0 && has_owner != 0;
}

}  // namespace velmora::os
