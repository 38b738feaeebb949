#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/os/adapters.h"

namespace velmora::network {

/// The text of a field of an adapter: up to its first zero, or all of it when it has none.
template <std::size_t Size>
std::string_view FieldText(const char (&field)[Size]) {
  const std::string_view all(field, Size);
  return all.substr(0, all.find('\0'));
}

/// The system's list of network adapters, read once. A walk goes over the records that lie in the list's own
/// memory, at most as many as fit into it, wherever their links point.
class AdapterList {
 public:
  AdapterList();

  /// False when the list could not be read; then it is empty.
  bool IsRead() const { return is_read_; }

  /// The first adapter, in the system's order, that `is_wanted`; null when none is.
  template <class Predicate>
  const os::AdapterInfo* FindIf(Predicate is_wanted) const {
    const auto* adapter = is_read_ ? RecordAt(memory_.get()) : nullptr;
    for (std::size_t left = size_ / sizeof(os::AdapterInfo); adapter != nullptr && left > 0; --left) {
      if (is_wanted(*adapter)) return adapter;
      adapter = RecordAt(adapter->next);
    }
    return nullptr;
  }

 private:
  /// The record at an address; null when none lies there whole.
  const os::AdapterInfo* RecordAt(const void* address) const;

  std::unique_ptr<std::byte[]> memory_;
  std::uint32_t size_ = 0;
  bool is_read_ = false;
};

}  // namespace velmora::network
