/// Handles that the operating system's services hand out.
#pragma once

namespace velmora::os {

using Handle = void*;

/// What CreateFileW and FindFirstFile answer when they fail. Every other service answers null.
inline Handle InvalidHandle() { return reinterpret_cast<Handle>(static_cast<long long>(-1)); }

/// Closes a process, thread, device or radio handle; false with the last error 6 for one that is not open.
bool CloseHandle(Handle handle);

}  // namespace velmora::os
