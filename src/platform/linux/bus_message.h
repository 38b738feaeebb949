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
bool ReadBusVariant(const BusMessage& message, char type, Value& value) {
  char kind = 0;
  const char* contents = nullptr;
  if (message.PeekType(kind, contents) <= 0 || kind != 'v' || contents == nullptr) return false;
  if (std::string_view(contents) != std::string_view(&type, 1)) return message.Skip("v") >= 0;
  return message.Enter('v', contents) >= 0 && message.ReadBasic(type, &value) >= 0 && message.Exit() >= 0;
}

bool ReadBusVariant(const BusMessage& message, std::string& text);
bool ReadBusVariant(const BusMessage& message, bool& flag);

/// Is given the name of an entry, and reads its value from the message.
using BusEntryReader = std::function<bool(std::string_view name)>;

/// Goes through the array of entries {sv}, or {oa{sa{sv}}} and the like, that follows: `entry` is what stands
/// between the braces.
bool ForEachBusEntry(const BusMessage& message, const char* entry, const BusEntryReader& read_value);

}  // namespace velmora::os
