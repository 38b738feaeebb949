/// What the made-up configuration manager exports beside the system's functions.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>

extern "C" {

/// Node and flags of the last rescan.
DWORD RescannedNode();
ULONG RescanFlags();

/// How often a node was looked for and rescanned since the last script.
DWORD LocateCount();
DWORD RescanCount();

/// What the calls give from now on, and what happens in a rescan that succeeds.
void ScriptConfigurationManager(CONFIGRET locate, CONFIGRET rescan, void (*hook)());

}  // extern "C"
