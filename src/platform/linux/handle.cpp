#include "platform/os/handle.h"

#include <cerrno>

#include "platform/linux/handle_object.h"
#include "platform/os/last_error.h"

namespace velmora::os {

bool DeleteObject(HandleObject* object) noexcept {
  if (object == nullptr) {
    SetLastError(kErrorInvalidHandle);
    return false;
  }
  const int last_error = errno;
  delete object;
  errno = last_error;
  return true;
}

bool CloseHandle(Handle handle) { return CloseObject<KernelObject>(handle); }

}  // namespace velmora::os
