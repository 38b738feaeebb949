#pragma once

#include <utility>

#include "platform/os/handle.h"
#include "platform/os/last_error.h"

namespace velmora {

/// A handle of the operating system, or none, which is closed once and on every path. Closing it leaves the
/// last error as it was.
template <bool (*kClose)(void*)>
class OwnedHandle {
 public:
  explicit OwnedHandle(void* handle = nullptr) noexcept
      : handle_(handle != os::InvalidHandle() ? handle : nullptr) {}
  OwnedHandle(OwnedHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  OwnedHandle& operator=(OwnedHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~OwnedHandle() { Close(); }

  explicit operator bool() const noexcept { return handle_ != nullptr; }
  void* Get() const noexcept { return handle_; }

  void Close() noexcept {
    if (handle_ == nullptr) return;
    const auto error = os::LastError();
    kClose(std::exchange(handle_, nullptr));
    os::SetLastError(error);
  }

 private:
  void* handle_;
};

}  // namespace velmora
