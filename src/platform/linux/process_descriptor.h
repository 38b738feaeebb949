/// Descriptors that stay with one process, also when its number is used again. The C library's declarations
/// cannot be linked from C++ in every version.
#pragma once

#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include "platform/linux/descriptor.h"

namespace velmora::os {

/// The running or just ended process `id`; nothing, with errno, when there is none.
inline Descriptor OpenProcessDescriptor(pid_t id) noexcept {
  return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, id, 0)));
}

/// Sends a signal, or with 0 only tries whether it may be sent; false with errno on failure.
inline bool SignalProcess(const Descriptor& process, int signal) noexcept {
  return syscall(SYS_pidfd_send_signal, process.Number(), signal, nullptr, 0) == 0;
}

}  // namespace velmora::os
