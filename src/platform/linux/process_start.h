/// Starting programs that nobody waits for.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "platform/linux/descriptor.h"

namespace velmora::os {

struct StartedProcess {
  Descriptor process;  ///< stays with this very process
  pid_t id;
};

/// Starts the program file `path` without arguments, in the caller's folder and environment, in a session of
/// its own, with nothing to read and its output discarded, and returns as soon as it runs; nothing, with
/// errno, when it could not be started. With `inherit` it gets the open files of the caller that are not
/// marked otherwise.
///
/// The new process is a child of the system's first process (or of the caller when that is a subreaper), so
/// that it leaves nothing behind when it ends. Safe in a process with many threads: between the copying of
/// the process and the program's start only calls are made that are safe there.
std::optional<StartedProcess> StartProcess(const std::string& path, bool inherit);

}  // namespace velmora::os
