/// Handles that several services hand out and CloseHandle closes.
#include "platform/os/handle.h"

#include "platform/os/last_error.h"
#include "simulator/session.h"

namespace velmora::os {

bool CloseHandle(Handle handle) {
  const simulator::Closing call("CloseHandle");
  const bool was_open = call.session.Close(handle, "CloseHandle");
  if (was_open && !call.Fails()) return true;
  SetLastError(kErrorInvalidHandle);
  return false;
}

}  // namespace velmora::os
