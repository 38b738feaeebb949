/// A message on the bus.
#pragma once

#include <cerrno>
#include <memory>
#include <utility>

#include "platform/linux/systemd_library.h"

namespace velmora {

/// Owns a message, or none; lives no longer than the library by which it was made. What it is asked to do
/// gives the library's own result: below 0 for a failure, which everything is without a message, and 0 at the
/// end of what there is to read.
class SystemdMessage {
 public:
  SystemdMessage() noexcept : message_(nullptr, Releaser{nullptr}) {}
  SystemdMessage(const SystemdLibrary& library, sd_bus_message* message) noexcept
      : message_(message, Releaser{&library}) {}

  explicit operator bool() const noexcept { return message_ != nullptr; }
  sd_bus_message* Get() const noexcept { return message_.get(); }

  /// Adds values, or reads values into what the pointers point to. Texts that are read stay the message's.
  template <class... Values>
  int Append(const char* types, Values... values) const noexcept {
    return Do(&SystemdLibrary::bus_message_append, types, values...);
  }
  template <class... Pointers>
  int Read(const char* types, Pointers... values) const noexcept {
    return Do(&SystemdLibrary::bus_message_read, types, values...);
  }
  int ReadBasic(char type, void* value) const noexcept {
    return Do(&SystemdLibrary::bus_message_read_basic, type, value);
  }
  int PeekType(char& type, const char*& contents) const noexcept {
    return Do(&SystemdLibrary::bus_message_peek_type, &type, &contents);
  }
  int Skip(const char* types) const noexcept { return Do(&SystemdLibrary::bus_message_skip, types); }
  int Enter(char type, const char* contents) const noexcept {
    return Do(&SystemdLibrary::bus_message_enter_container, type, contents);
  }
  int Exit() const noexcept { return Do(&SystemdLibrary::bus_message_exit_container); }

  /// Whether the service that is called is started for the call where it does not run.
  int SetAutoStart(bool starts) const noexcept {
    return Do(&SystemdLibrary::bus_message_set_auto_start, starts ? 1 : 0);
  }

 private:
  struct Releaser {
    void operator()(sd_bus_message* message) const noexcept { library->bus_message_unref(message); }
    const SystemdLibrary* library;
  };

  template <class Function, class... Arguments>
  int Do(Function SystemdLibrary::* function, Arguments... arguments) const noexcept {
    if (!message_) return -EINVAL;
    return (message_.get_deleter().library->*function)(message_.get(), arguments...);
  }

  std::unique_ptr<sd_bus_message, Releaser> message_;
};

}  // namespace velmora
