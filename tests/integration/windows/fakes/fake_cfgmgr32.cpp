/// A configuration manager that has a root and one device, that notes how it is asked to rescan, and that
/// fails when it is told to.
#include "tests/integration/windows/fakes/fake_cfgmgr32.h"

#include <cwchar>

namespace {

DWORD rescanned_node = 0;
ULONG rescan_flags = 0xFFFFFFFF;
int locate_count = 0;
int rescan_count = 0;
CONFIGRET locate_result = CR_SUCCESS;
CONFIGRET rescan_result = CR_SUCCESS;
void (*rescan_hook)() = nullptr;

}  // namespace

extern "C" {

__declspec(dllexport) DWORD RescannedNode() { return rescanned_node; }
__declspec(dllexport) ULONG RescanFlags() { return rescan_flags; }
__declspec(dllexport) DWORD LocateCount() { return static_cast<DWORD>(locate_count); }
__declspec(dllexport) DWORD RescanCount() { return static_cast<DWORD>(rescan_count); }
__declspec(dllexport) void ScriptConfigurationManager(CONFIGRET locate, CONFIGRET rescan, void (*hook)()) {
  locate_result = locate;
  rescan_result = rescan;
  rescan_hook = hook;
  locate_count = 0;
  rescan_count = 0;
}

__declspec(dllexport) CONFIGRET WINAPI CM_Locate_DevNodeW(DEVINST* node, DEVINSTID_W id, ULONG flags) {
  ++locate_count;
  if (flags != CM_LOCATE_DEVNODE_NORMAL) return CR_INVALID_FLAG;
  if (locate_result != CR_SUCCESS) return locate_result;
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
  ++rescan_count;
  rescanned_node = node;
  rescan_flags = flags;
  if (rescan_result != CR_SUCCESS) return rescan_result;
  if (node != 1) return CR_FAILURE;
  if (rescan_hook != nullptr) rescan_hook();
  return CR_SUCCESS;
}

/// Devices have their problems as properties here.
__declspec(dllexport) CONFIGRET WINAPI CM_Get_DevNode_Status(ULONG* status, ULONG* problem, DEVINST, ULONG) {
  *status = 0;
  *problem = 0;
  return CR_SUCCESS;
}

}  // extern "C"
