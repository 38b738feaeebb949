/// Ownership of a file descriptor.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace velmora::os {

/// An open file descriptor, or none; closing it keeps errno.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ < 0) return;
    const int kept = errno;
    close(number_);
    errno = kept;
  }

  explicit operator bool() const noexcept { return number_ >= 0; }
  int Number() const noexcept { return number_; }
  /// Gives the descriptor to the caller.
  int Release() noexcept { return std::exchange(number_, -1); }

 private:
  int number_ = -1;
};

}  // namespace velmora::os
