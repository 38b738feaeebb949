#include "ostrine/linux/bus_connection.h"

#include <algorithm>
#include <string>
#include <utility>

namespace ostrine {
namespace {

/// A bus address for the socket `path`, whose unusual characters are written as numbers.
std::string SocketAddress(const std::string& path) {
  std::string address = "unix:path=";
  for (const char c : path) {
    const bool is_plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                          c == '/' || c == '_' || c == '-' || c == '.';
    if (is_plain) {
      address.push_back(c);
    } else {
      const auto byte = static_cast<unsigned char>(c);
      address.append({'%', "0123456789abcdef"[byte >> 4], "0123456789abcdef"[byte & 15]});
    }
  }
  return address;
}

}  // namespace

BusConnection::BusConnection(const Path& root, std::chrono::milliseconds patience)
    : deadline_(std::chrono::steady_clock::now() + patience) {
  const Path socket = root / "run/dbus/system_bus_socket";
  if (Exists(socket) && !Connect(socket)) Close();
}

std::uint64_t BusConnection::Remaining() const {
  const auto left =
      std::chrono::duration_cast<std::chrono::microseconds>(deadline_ - std::chrono::steady_clock::now())
          .count();
  return static_cast<std::uint64_t>(std::max<long long>(left, 0));
}

bool BusConnection::Connect(const Path& socket) {
  const velmora::SystemdLibrary& library = library_.emplace();
  if (!library || library.bus_new(&bus_) < 0 ||
      library.bus_set_address(bus_, SocketAddress(socket.string()).c_str()) < 0 ||
      library.bus_set_bus_client(bus_, 1) < 0 || library.bus_start(bus_) < 0) {
    return false;
  }
  // The library's own waiting for the bus's greeting has no limit that we could set.
  for (;;) {
    const int ready = library.bus_is_ready(bus_);
    if (ready != 0) return ready > 0;
    const int processed = library.bus_process(bus_, nullptr);
    if (processed < 0) return false;
    if (processed > 0) continue;
    const std::uint64_t left = Remaining();
    if (left == 0 || library.bus_wait(bus_, left) < 0) return false;
  }
}

void BusConnection::Close() {
  if (bus_ != nullptr) library_->bus_close_unref(std::exchange(bus_, nullptr));
}

BusMessage BusConnection::NewCall(const Method& method) const {
  sd_bus_message* call = nullptr;
  if (bus_ == nullptr || library_->bus_message_new_method_call(bus_, &call, method.service, method.object,
                                                               method.interface, method.name) < 0) {
    return {};
  }
  BusMessage message(*library_, call);
  return message.SetAutoStart(false) < 0 ? BusMessage() : std::move(message);
}

BusMessage BusConnection::Call(const BusMessage& call) const {
  const std::uint64_t left = Remaining();  // 0 would stand for the library's own limit
  if (bus_ == nullptr || !call || left == 0) return {};
  sd_bus_message* reply = nullptr;
  if (library_->bus_call(bus_, call.Get(), left, nullptr, &reply) < 0) return {};
  return BusMessage(*library_, reply);
}

}  // namespace ostrine
