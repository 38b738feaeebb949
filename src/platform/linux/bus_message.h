/// Reading what services answer with. Every function leaves the message behind what it read, and is false, or
/// gives nothing, when the message is broken or of another shape.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/system_bus.h"

namespace velmora::os {

/// Reads the variant that follows into `value` when it is of the type with that letter; one of another type
/// is skipped.
template <class Value>
bool ReadBusVariant(sd_bus_message* message, char type, Value& value) {
  char kind = 0;
  const char* contents = nullptr;
  if (sd_bus_message_peek_type(message, &kind, &contents) <= 0 || kind != 'v' || contents == nullptr)
    return false;
  if (std::string_view(contents) != std::string_view(&type, 1)) return sd_bus_message_skip(message, "v") >= 0;
  return sd_bus_message_enter_container(message, 'v', contents) >= 0 &&
         sd_bus_message_read_basic(message, type, &value) >= 0 && sd_bus_message_exit_container(message) >= 0;
}

bool ReadBusVariant(sd_bus_message* message, std::string& text);
bool ReadBusVariant(sd_bus_message* message, bool& flag);

/// Is given the name of an entry, and reads its value from the message.
using BusEntryReader = std::function<bool(std::string_view name)>;

/// Goes through the array of entries {sv}, or {oa{sa{sv}}} and the like, that follows: `entry` is what stands
/// between the braces.
bool ForEachBusEntry(sd_bus_message* message, const char* entry, const BusEntryReader& read_value);

}  // namespace velmora::os
