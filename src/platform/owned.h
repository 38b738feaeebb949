#pragma once

#include <utility>

#include "platform/os/last_error.h"

namespace velmora {

/// What a service of the system hands out and wants back once through the function `Close`: a handle, a list,
/// an object. Null is nothing. Giving it back keeps the thread's last error, so that the error of a step that
/// failed can be read after everything is closed.
template <class Pointer, auto Close>
class Owned {
 public:
  Owned() = default;
  explicit Owned(Pointer pointer) : pointer_(pointer) {}
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() { Reset(); }

  Pointer Get() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

  /// Where a call writes what it hands out. What is held before is given back.
  Pointer& Receive() {
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
