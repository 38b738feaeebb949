#include "network/adapter_list.h"

#include <cstdint>
#include <new>

#include "platform/os/last_error.h"

namespace velmora::network {

AdapterList::AdapterList() {
  if (os::GetAdaptersInfo(nullptr, size_) != os::kErrorBufferOverflow) return;
  memory_.reset(new (std::nothrow) std::byte[size_]());
  if (!memory_) return;
  std::uint32_t size = size_;
  is_read_ = os::GetAdaptersInfo(reinterpret_cast<os::AdapterInfo*>(memory_.get()), size) == 0;
}

const os::AdapterInfo* AdapterList::RecordAt(const void* address) const {
  // A link that points below the memory makes the difference wrap around, beyond every size.
  const auto offset =
      reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(memory_.get());
  if (sizeof(os::AdapterInfo) > size_ || offset > size_ - sizeof(os::AdapterInfo)) return nullptr;
  if (offset % alignof(os::AdapterInfo) != 0) return nullptr;
  return reinterpret_cast<const os::AdapterInfo*>(memory_.get() + offset);
}

}  // namespace velmora::network
