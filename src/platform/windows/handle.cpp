#include "platform/os/handle.h"

#include <windows.h>

namespace velmora::os {

bool CloseHandle(Handle handle) { return ::CloseHandle(handle) != FALSE; }

}  // namespace velmora::os
