/// What Velmora requires of the service control manager.
#pragma once

#include <cstdint>

namespace velmora::os {

using ServiceHandle = void*;

/// SERVICE_STATUS, 28 bytes.
struct ServiceStatus {
  std::uint32_t service_type;
  std::uint32_t current_state;  ///< 1 stopped, 2 start pending, 3 stop pending, 4 running, 7 paused
  std::uint32_t controls_accepted;
  std::uint32_t win32_exit_code;
  std::uint32_t service_specific_exit_code;
  std::uint32_t check_point;
  std::uint32_t wait_hint;
};

/// Opens the manager of `machine` (null: this one) and `database` (null: the active one) with the rights
/// `access`. Null with the last error set on failure.
ServiceHandle OpenSCManagerW(const wchar_t* machine, const wchar_t* database, std::uint32_t access);

/// Opens the service `name` with the rights `access`; null with the last error on failure: 1060 no such
/// service, 5 not permitted. Names are found without regard to letter case.
ServiceHandle OpenServiceW(ServiceHandle manager, const wchar_t* name, std::uint32_t access);

/// Fills `status`; false with the last error on failure.
bool QueryServiceStatus(ServiceHandle service, ServiceStatus& status);

/// Sends `control` (1: stop) and fills `status` with the service's latest state; false with the last error on
/// failure: 1062 not running, 1051 others that run depend on it, 1061 it takes no controls now.
bool ControlService(ServiceHandle service, std::uint32_t control, ServiceStatus& status);

/// Starts the service with `count` arguments (0 and null: none); false with the last error on failure: 1056
/// it runs already, 1058 it is disabled, 5 not permitted. Success means that the start was accepted.
bool StartServiceW(ServiceHandle service, std::uint32_t count, const wchar_t** arguments);

/// Closes a manager or service handle. Every handle is closed once.
bool CloseServiceHandle(ServiceHandle handle);

}  // namespace velmora::os
