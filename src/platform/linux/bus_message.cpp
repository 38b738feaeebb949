#include "platform/linux/bus_message.h"

namespace velmora::os {

bool ReadBusVariant(sd_bus_message* message, std::string& text) {
  const char* value = nullptr;
  if (!ReadBusVariant(message, 's', value)) return false;
  if (value != nullptr) text = value;
  return true;
}

bool ReadBusVariant(sd_bus_message* message, bool& flag) {
  int value = flag ? 1 : 0;
  if (!ReadBusVariant(message, 'b', value)) return false;
  flag = value != 0;
  return true;
}

bool ForEachBusEntry(sd_bus_message* message, const char* entry, const BusEntryReader& read_value) {
  const std::string array = "{" + std::string(entry) + "}";
  if (sd_bus_message_enter_container(message, 'a', array.c_str()) < 0) return false;
  for (;;) {
    const int entered = sd_bus_message_enter_container(message, 'e', entry);
    if (entered < 0) return false;
    if (entered == 0) break;
    const char* name = nullptr;
    if (sd_bus_message_read_basic(message, entry[0], &name) <= 0 || name == nullptr) return false;
    if (!read_value(name) || sd_bus_message_exit_container(message) < 0) return false;
  }
  return sd_bus_message_exit_container(message) >= 0;
}

}  // namespace velmora::os
