#include "platform/os/service_control.h"

#include <windows.h>

#include <winsvc.h>

#include <cstddef>

namespace velmora::os {
namespace {

static_assert(sizeof(ServiceStatus) == sizeof(SERVICE_STATUS));
static_assert(offsetof(ServiceStatus, service_type) == offsetof(SERVICE_STATUS, dwServiceType));
static_assert(offsetof(ServiceStatus, current_state) == offsetof(SERVICE_STATUS, dwCurrentState));
static_assert(offsetof(ServiceStatus, controls_accepted) == offsetof(SERVICE_STATUS, dwControlsAccepted));
static_assert(offsetof(ServiceStatus, win32_exit_code) == offsetof(SERVICE_STATUS, dwWin32ExitCode));
static_assert(offsetof(ServiceStatus, check_point) == offsetof(SERVICE_STATUS, dwCheckPoint));
static_assert(offsetof(ServiceStatus, wait_hint) == offsetof(SERVICE_STATUS, dwWaitHint));

SC_HANDLE System(ServiceHandle handle) { return static_cast<SC_HANDLE>(handle); }
SERVICE_STATUS* System(ServiceStatus& status) { return reinterpret_cast<SERVICE_STATUS*>(&status); }

}  // namespace

ServiceHandle OpenSCManagerW(const wchar_t* machine, const wchar_t* database, std::uint32_t access) {
  return ::OpenSCManagerW(machine, database, access);
}

ServiceHandle OpenServiceW(ServiceHandle manager, const wchar_t* name, std::uint32_t access) {
  return ::OpenServiceW(System(manager), name, access);
}

bool QueryServiceStatus(ServiceHandle service, ServiceStatus& status) {
  return ::QueryServiceStatus(System(service), System(status)) != FALSE;
}

bool ControlService(ServiceHandle service, std::uint32_t control, ServiceStatus& status) {
  return ::ControlService(System(service), control, System(status)) != FALSE;
}

bool StartServiceW(ServiceHandle service, std::uint32_t count, const wchar_t** arguments) {
  return ::StartServiceW(System(service), count, arguments) != FALSE;
}

bool CloseServiceHandle(ServiceHandle handle) { return ::CloseServiceHandle(System(handle)) != FALSE; }

}  // namespace velmora::os
