// Services. Hosts read in the location of the log lines that they come from the source `devicedriver`.
#include <cstdint>
#include <string>

#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/os/clock.h"
#include "platform/os/last_error.h"
#include "platform/os/service_control.h"
#include "platform/owned.h"
#include "system/system_query.h"
#include "system/whole_text.h"
#include "velmora/services.h"

using velmora::Answer;
using velmora::AskText;
using velmora::AskTextByName;
using velmora::Attempt;
using velmora::LogDebug;
using velmora::Owned;
using velmora::os::ServiceStatus;

namespace {

using OwnedService = Owned<velmora::os::ServiceHandle, velmora::os::CloseServiceHandle>;

enum State : std::uint32_t { kStopped = 1, kRunning = 4 };

std::wstring StateOf(const std::wstring& name) {
  return AskTextByName(L"SELECT State FROM Win32_Service WHERE Name='", name, L"State");
}

/// Null, with the last error, for a name that no service can have.
OwnedService OpenManager(const std::wstring& service_name) {
  constexpr std::uint32_t kInvalidName = 123;
  if (!velmora::IsWhole(service_name)) {
    velmora::os::SetLastError(kInvalidName);
    return OwnedService();
  }
  constexpr std::uint32_t kExecute = 0x20000000;
  return OwnedService(velmora::os::OpenSCManagerW(nullptr, nullptr, kExecute));
}

OwnedService OpenService(const OwnedService& manager, const std::wstring& name) {
  constexpr std::uint32_t kQueryStartAndStop = 0x34;
  return OwnedService(velmora::os::OpenServiceW(manager.Get(), name.c_str(), kQueryStartAndStop));
}

/// The pause after a request: short, and without another look at the service. `status` says how the service
/// stood at the request, and only one that stood in `wanted` already spares the caller the pause.
void PauseUnless(State wanted, const ServiceStatus& status) {
  constexpr int kSteps = 20;
  constexpr std::uint32_t kStepMilliseconds = 100;
  for (int i = 0; i < kSteps && status.current_state != wanted; ++i) velmora::os::Sleep(kStepMilliseconds);
}

void Stop(const OwnedService& service) {
  constexpr std::uint32_t kStopControl = 1;
  ServiceStatus status{};
  if (!velmora::os::QueryServiceStatus(service.Get(), status) || status.current_state != kRunning) return;
  if (velmora::os::ControlService(service.Get(), kStopControl, status)) PauseUnless(kStopped, status);
}

/// Whether the service runs or its start was accepted; the error of the step that failed, if any, in `error`.
bool Start(const OwnedService& service, std::uint32_t& error) {
  ServiceStatus status{};
  if (velmora::os::QueryServiceStatus(service.Get(), status)) {
    if (status.current_state == kRunning) return true;
    if (velmora::os::StartServiceW(service.Get(), 0, nullptr)) {
      PauseUnless(kRunning, status);
      return true;
    }
  }
  error = velmora::os::LastError();
  return false;
}

bool StartByName(const std::wstring& name, std::uint32_t& error) {
  OwnedService service;  // closed behind the manager
  const OwnedService manager = OpenManager(name);
  if (manager) service = OpenService(manager, name);
  if (service) return Start(service, error);
  error = velmora::os::LastError();
  return false;
}

}  // namespace

bool IsServiceRunning(std::wstring name) {
  return Answer(false, [&] { return StateOf(name) == L"Running"; });
}

std::wstring GetServiceState(const std::wstring& name) {
  return Answer(std::wstring(), [&] { return StateOf(name); });
}

bool IsServiceExist(std::wstring name) {
  const auto found = Answer(std::wstring(), [&] {
    return AskTextByName(L"SELECT Name FROM Win32_Service WHERE Name='", name, L"Name");
  });
  const bool exists = !found.empty() && found == name;
  LogDebug([&](auto& line) {
    line << "IsServiceExist: strService=" << name << ", wszName=" << found << ",bRet=" << exists
         << "IsServiceExist";
  });
  return exists;
}

void StopServiceByName(const std::wstring& name) {
  Attempt([&] {
    OwnedService service;  // closed behind the manager
    const OwnedService manager = OpenManager(name);
    if (manager) service = OpenService(manager, name);
    if (service) Stop(service);
  });
}

bool StartServiceByName(const std::wstring& name) {
  std::uint32_t error = 0;
  const bool is_started = Answer(false, [&] { return StartByName(name, error); });
  LogDebug([&](auto& line) {
    line << "StartServiceByName: bRet=" << is_started << ", LastError=" << error << "StartServiceByName";
  });
  return is_started;
}

std::wstring GetWpnUserServiceExName() {
  auto name = Answer(std::wstring(), [] {
    return AskText(L"SELECT Name FROM Win32_Service Where name like 'WpnUserService_%'", L"Name");
  });
  LogDebug([&](auto& line) { line << "GetWpnUserServiceExName: wszServiceName=" << name; });
  return name;
}
