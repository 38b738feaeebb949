#include "platform/os/configuration_manager.h"

#include <windows.h>

#include <cfgmgr32.h>

namespace velmora::os {

static_assert(sizeof(DevNode) == sizeof(DEVINST));
static_assert(kConfigSuccess == CR_SUCCESS && kConfigNoSuchDevNode == CR_NO_SUCH_DEVNODE &&
              kConfigFailure == CR_FAILURE);

ConfigResult CM_Locate_DevNodeW(DevNode& node, const wchar_t* device_id, std::uint32_t flags) {
  DEVINST found = 0;
  // The identifier is only read, although the system's declaration does not say so.
  const CONFIGRET result = ::CM_Locate_DevNodeW(&found, const_cast<wchar_t*>(device_id), flags);
  if (result == CR_SUCCESS) node = found;
  return result;
}

ConfigResult CM_Reenumerate_DevNode(DevNode node, std::uint32_t flags) {
  return ::CM_Reenumerate_DevNode(node, flags);
}

}  // namespace velmora::os
