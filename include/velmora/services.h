/// Services and processes of this machine, by name: whether they are there, starting, stopping and ending
/// them.
///
/// Source: WMI for the questions, the service control manager for starting and stopping. Nothing is kept
/// between calls. Failure: an empty text or false; nothing throws. A name that would change a query, one that
/// holds an apostrophe above all, names nothing: nothing is asked then. On Linux a service is a unit of
/// systemd, by its name without ".service". Starting and stopping need the rights that the system asks for.
/// Threads: every call stands for itself.
#pragma once

#include <string>

#include "velmora/export.h"

/// Ends the first process whose image file's name, with its extension, is `name` in either letter case; other
/// processes of that name stay. True when one was found and could be opened to be ended, whether it then
/// ended or not. False without one, and when it has ended meanwhile; on Linux nobody is hit who got its
/// number.
VELMORA_API bool KillProcByName(std::wstring name);

/// Whether a process runs whose image file's name, with its extension, is `name` in either letter case.
VELMORA_API bool IsProcessRunning(std::wstring name);

/// Whether the state of service `name` is exactly "Running".
VELMORA_API bool IsServiceRunning(std::wstring name);

/// The state of service `name` in WMI's words: "Running", "Stopped", "Start Pending", "Stop Pending",
/// "Paused"; empty when there is no such service.
VELMORA_API std::wstring GetServiceState(const std::wstring& name);

/// Whether a process "unsecapp.exe" runs from the system's WMI folder, that is exactly from
/// "C:\Windows\system32\wbem\unsecapp.exe", in these letters. The first such process counts.
VELMORA_API bool IsProc_unsecapp_Exist();

/// Whether there is a service whose name is `name`, letter case included.
VELMORA_API bool IsServiceExist(std::wstring name);

/// Has service `name` stopped, if it runs, and waits 2 seconds, or not at all when it reports itself stopped
/// at once. Whether it has stopped is not told.
VELMORA_API void StopServiceByName(const std::wstring& name);

/// Has service `name` started. True at once when it runs already; true 2 seconds after its start was
/// accepted, whatever becomes of it. False when it cannot be started; a debug line then tells the error.
VELMORA_API bool StartServiceByName(const std::wstring& name);

/// Name of the service that brings a signed-in user push notifications, such as "WpnUserService_1a2b3": the
/// first whose name begins with "WpnUserService" and goes on. Empty when there is none.
VELMORA_API std::wstring GetWpnUserServiceExName();
