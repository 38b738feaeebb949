#include "platform/linux/bus_message.h"

namespace velmora::os {

bool ReadBusVariant(const BusMessage& message, std::string& text) {
  const char* value = nullptr;
  if (!ReadBusVariant(message, 's', value)) return false;
  if (value != nullptr) text = value;
  return true;
}

bool ReadBusVariant(const BusMessage& message, bool& flag) {
  int value = flag ? 1 : 0;
  if (!ReadBusVariant(message, 'b', value)) return false;
  flag = value != 0;
  return true;
}

bool ForEachBusEntry(const BusMessage& message, const char* entry, const BusEntryReader& read_value) {
  const std::string array = "{" + std::string(entry) + "}";
  if (message.Enter('a', array.c_str()) < 0) return false;
  for (;;) {
    const int entered = message.Enter('e', entry);
    if (entered < 0) return false;
    if (entered == 0) break;
    const char* name = nullptr;
    if (message.ReadBasic(entry[0], &name) <= 0 || name == nullptr) return false;
    if (!read_value(name) || message.Exit() < 0) return false;
  }
  return message.Exit() >= 0;
}

}  // namespace velmora::os
