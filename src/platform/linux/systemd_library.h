/// libsystemd, which knows how to talk to the message bus and how to read the database of hardware names.
///
/// It is loaded when the first question needs it, never with the library: it brings half a dozen others
/// along, which take longer to load than most questions take to answer. A machine may lack it; it has no bus
/// then, and no such database.
#pragma once

#include <dlfcn.h>
#include <systemd/sd-bus.h>
#include <systemd/sd-hwdb.h>

namespace velmora {

/// Keeps the library loaded as long as it lives. It is false, and nothing of it may be called, where the
/// library or any of its functions is missing. The functions go by their own names without "sd_".
class SystemdLibrary {
 private:
  void* library_;
  bool is_whole_;  ///< as far as it has been looked through

  /// A function whose type is that of what it is put into.
  class Found {
   public:
    explicit Found(void* address) noexcept : address_(address) {}
    template <class Function>
    operator Function*() const noexcept {
      return reinterpret_cast<Function*>(address_);
    }

   private:
    void* address_;
  };

  Found Find(const char* name) noexcept {
    void* const found = library_ != nullptr ? dlsym(library_, name) : nullptr;
    if (found == nullptr) is_whole_ = false;
    return Found(found);
  }

 public:
  explicit SystemdLibrary(const char* file = "libsystemd.so.0") noexcept
      // Once loaded it stays in the process: it leaves things to do for when threads end.
      : library_(dlopen(file, RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE)), is_whole_(library_ != nullptr) {}
  SystemdLibrary(const SystemdLibrary&) = delete;
  SystemdLibrary& operator=(const SystemdLibrary&) = delete;
  ~SystemdLibrary() {
    if (library_ != nullptr) dlclose(library_);
  }

  explicit operator bool() const noexcept { return is_whole_; }

  decltype(&sd_bus_call) const bus_call = Find("sd_bus_call");
  decltype(&sd_bus_call_method) const bus_call_method = Find("sd_bus_call_method");
  decltype(&sd_bus_close_unref) const bus_close_unref = Find("sd_bus_close_unref");
  decltype(&sd_bus_error_free) const bus_error_free = Find("sd_bus_error_free");
  decltype(&sd_bus_get_property) const bus_get_property = Find("sd_bus_get_property");
  decltype(&sd_bus_get_property_string) const bus_get_property_string = Find("sd_bus_get_property_string");
  decltype(&sd_bus_get_property_strv) const bus_get_property_strv = Find("sd_bus_get_property_strv");
  decltype(&sd_bus_get_property_trivial) const bus_get_property_trivial = Find("sd_bus_get_property_trivial");
  decltype(&sd_bus_is_ready) const bus_is_ready = Find("sd_bus_is_ready");
  decltype(&sd_bus_new) const bus_new = Find("sd_bus_new");
  decltype(&sd_bus_open_system) const bus_open_system = Find("sd_bus_open_system");
  decltype(&sd_bus_process) const bus_process = Find("sd_bus_process");
  decltype(&sd_bus_set_address) const bus_set_address = Find("sd_bus_set_address");
  decltype(&sd_bus_set_bus_client) const bus_set_bus_client = Find("sd_bus_set_bus_client");
  decltype(&sd_bus_set_method_call_timeout) const bus_set_method_call_timeout =
      Find("sd_bus_set_method_call_timeout");
  decltype(&sd_bus_set_property) const bus_set_property = Find("sd_bus_set_property");
  decltype(&sd_bus_start) const bus_start = Find("sd_bus_start");
  decltype(&sd_bus_wait) const bus_wait = Find("sd_bus_wait");

  decltype(&sd_bus_message_append) const bus_message_append = Find("sd_bus_message_append");
  decltype(&sd_bus_message_enter_container) const bus_message_enter_container =
      Find("sd_bus_message_enter_container");
  decltype(&sd_bus_message_exit_container) const bus_message_exit_container =
      Find("sd_bus_message_exit_container");
  decltype(&sd_bus_message_new_method_call) const bus_message_new_method_call =
      Find("sd_bus_message_new_method_call");
  decltype(&sd_bus_message_peek_type) const bus_message_peek_type = Find("sd_bus_message_peek_type");
  decltype(&sd_bus_message_read) const bus_message_read = Find("sd_bus_message_read");
  decltype(&sd_bus_message_read_basic) const bus_message_read_basic = Find("sd_bus_message_read_basic");
  decltype(&sd_bus_message_set_auto_start) const bus_message_set_auto_start =
      Find("sd_bus_message_set_auto_start");
  decltype(&sd_bus_message_skip) const bus_message_skip = Find("sd_bus_message_skip");
  decltype(&sd_bus_message_unref) const bus_message_unref = Find("sd_bus_message_unref");

  decltype(&sd_hwdb_get) const hwdb_get = Find("sd_hwdb_get");
  decltype(&sd_hwdb_new_from_path) const hwdb_new_from_path = Find("sd_hwdb_new_from_path");
  decltype(&sd_hwdb_unref) const hwdb_unref = Find("sd_hwdb_unref");
};

}  // namespace velmora
