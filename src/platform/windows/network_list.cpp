#include "platform/os/network_list.h"

#include <windows.h>

#include <netlistmgr.h>

namespace velmora::os {

static_assert(sizeof(VariantBool) == sizeof(VARIANT_BOOL) && kVariantTrue == VARIANT_TRUE);

ComResult NetworkListIsConnected(ComObject manager, VariantBool& connected) {
  VARIANT_BOOL answer = VARIANT_FALSE;
  const HRESULT result = static_cast<INetworkListManager*>(manager)->IsConnected(&answer);
  if (SUCCEEDED(result)) connected = answer;
  return result;
}

ComResult NetworkListIsConnectedToInternet(ComObject manager, VariantBool& connected) {
  VARIANT_BOOL answer = VARIANT_FALSE;
  const HRESULT result = static_cast<INetworkListManager*>(manager)->IsConnectedToInternet(&answer);
  if (SUCCEEDED(result)) connected = answer;
  return result;
}

}  // namespace velmora::os
