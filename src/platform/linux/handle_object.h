/// What handles are on Linux: pointers to objects on the heap, each of which owns what its kind of handle
/// stands for. A handle belongs to whoever got it, and goes with the call that closes its kind.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/os/handle.h"

namespace velmora::os {

/// Base of everything that a handle can point to.
class HandleObject {
 public:
  HandleObject() = default;
  HandleObject(const HandleObject&) = delete;
  HandleObject& operator=(const HandleObject&) = delete;
  virtual ~HandleObject() = default;
};

/// Base of what CloseHandle closes. Other kinds have a closing call of their own.
class KernelObject : public HandleObject {};

/// Gives an object away as a handle.
template <class Object>
Handle HandleOf(std::unique_ptr<Object> object) noexcept {
  HandleObject* base = object.release();
  return base;
}

/// The object behind a handle that is open; null when it is one of another kind, or no object at all: null,
/// InvalidHandle and the standard handles, which stand at addresses where no object can.
template <class Object>
Object* ObjectOf(Handle handle) noexcept {
  const auto address = reinterpret_cast<std::uintptr_t>(handle);
  if (address == 0 || address % alignof(HandleObject) != 0) return nullptr;
  return dynamic_cast<Object*>(static_cast<HandleObject*>(handle));
}

/// Deletes `object` and keeps the last error; false with the last error 6 for null.
bool DeleteObject(HandleObject* object) noexcept;

/// Closes a handle of kind `Object` and keeps the last error; false with the last error 6 for any other.
template <class Object>
bool CloseObject(Handle handle) noexcept {
  return DeleteObject(ObjectOf<Object>(handle));
}

}  // namespace velmora::os
