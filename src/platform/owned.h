#pragma once

#include <utility>

#include "platform/os/handle.h"
#include "platform/os/last_error.h"

namespace velmora {

/// What a service of the system hands out and wants back once through the function `Close`: a handle, a list,
/// an object. Null and the invalid handle are nothing. Giving it back keeps the thread's last error, so that
/// the error of a step that failed can be read after everything is closed.
template <class Pointer, auto Close>
class Owned {
 public:
  Owned() = default;
  explicit Owned(Pointer pointer) noexcept : pointer_(pointer != os::InvalidHandle() ? pointer : nullptr) {}
  Owned(Owned&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Owned& operator=(Owned&& other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~Owned() { Reset(); }

  Pointer Get() const noexcept { return pointer_; }
  explicit operator bool() const noexcept { return pointer_ != nullptr; }

  /// Where a call writes what it hands out. What is held before is given back.
  Pointer& Receive() noexcept {
    Reset();
    return pointer_;
  }

  void Reset() noexcept {
    if (pointer_ == nullptr) return;
    const auto last_error = os::LastError();
    static_cast<void>(Close(std::exchange(pointer_, nullptr)));
    os::SetLastError(last_error);
  }

 private:
  Pointer pointer_ = nullptr;
};

}  // namespace velmora
