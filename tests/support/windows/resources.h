/// What this process holds of the system's resources.
#pragma once

#include <cstddef>

namespace windows_support {

/// Open handles.
std::size_t HandleCount();

/// Bytes that are allocated in the process's heaps.
std::size_t HeapBytes();

}  // namespace windows_support
