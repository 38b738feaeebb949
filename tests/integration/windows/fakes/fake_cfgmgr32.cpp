/// A configuration manager that has a root and one device, and that notes how it is asked to rescan.
#include <windows.h>

#include <cfgmgr32.h>

#include <cwchar>

namespace {

DWORD rescanned_node = 0;
ULONG rescan_flags = 0xFFFFFFFF;

}  // namespace

extern "C" {

__declspec(dllexport) DWORD RescannedNode() { return rescanned_node; }
__declspec(dllexport) ULONG RescanFlags() { return rescan_flags; }

__declspec(dllexport) CONFIGRET WINAPI CM_Locate_DevNodeW(DEVINST* node, DEVINSTID_W id, ULONG flags) {
  if (flags != CM_LOCATE_DEVNODE_NORMAL) return CR_INVALID_FLAG;
  if (id == nullptr) {
    *node = 1;
  } else if (std::wcscmp(id, L"USB\\VID_8087&PID_0026\\5&1") == 0) {
    *node = 0x80000002;
  } else {
    *node = 0xDEAD;  // as a careless system might
    return CR_NO_SUCH_DEVNODE;
  }
  return CR_SUCCESS;
}

__declspec(dllexport) CONFIGRET WINAPI CM_Reenumerate_DevNode(DEVINST node, ULONG flags) {
  rescanned_node = node;
  rescan_flags = flags;
  return node == 1 ? CR_SUCCESS : CR_FAILURE;
}

}  // extern "C"
