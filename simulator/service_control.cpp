/// The service control manager over a machine's services.
#include "platform/os/service_control.h"

#include <algorithm>

#include "platform/case_folding.h"
#include "platform/unicode.h"
#include "simulator/failing.h"

using simulator::Closing;
using simulator::Entered;
using simulator::Error;
using simulator::Fault;
using simulator::Hex;
using simulator::Refuse;
using simulator::Service;
using simulator::Session;
using simulator::Succeed;

namespace velmora::os {
namespace {

constexpr Error kNoSuchService = 1060;
constexpr Error kAlreadyRunning = 1056;
constexpr Error kNotRunning = 1062;
constexpr std::uint32_t kStopped = 1;
constexpr std::uint32_t kRunning = 4;
constexpr std::uint32_t kStopControl = 1;
constexpr const char* kServiceCloser = "CloseServiceHandle";

/// Rights that a service must have been opened with.
enum Right : std::uint32_t { kQueryStatus = 0x4, kStart = 0x10, kStop = 0x20 };

struct ManagerHandle {};

struct OpenService {
  std::wstring name;
  std::uint32_t access;
};

Service* FindService(Session& session, const std::wstring& name) {
  auto& services = session.machine.services;
  if (!services) return nullptr;
  const auto found = std::ranges::find_if(*services, [&](const Service& service) {
    return EqualIgnoringCase(unicode::WideFromUtf8(service.name), name);
  });
  return found == services->end() ? nullptr : &*found;
}

/// The service behind a handle; when it cannot be used, null and the reason in `error`.
Service* UseService(Session& session, ServiceHandle handle, Right right, const char* function, Error& error) {
  const auto* opened = session.Find<OpenService>(handle, function);
  error = kErrorInvalidHandle;
  if (opened == nullptr) return nullptr;
  error = kErrorAccessDenied;
  if ((opened->access & right) == 0) return nullptr;
  error = kNoSuchService;
  return FindService(session, opened->name);
}

/// What an injected fault gives: 0 for a success that changes nothing.
Error InjectedResult(const Entered& call) { return call.Fails() ? simulator::kInjectedError : 0; }

}  // namespace

ServiceHandle OpenSCManagerW(const wchar_t* machine, const wchar_t* database, std::uint32_t access) {
  Entered call("OpenSCManagerW", machine, database, Hex{access});
  if (simulator::IsRefused(call)) return nullptr;
  if (!call.session.machine.services) {
    return Refuse(simulator::Unscripted(call.session, "OpenSCManagerW", "services"));
  }
  return call.session.Open(kServiceCloser, ManagerHandle{});
}

ServiceHandle OpenServiceW(ServiceHandle manager, const wchar_t* name, std::uint32_t access) {
  Entered call("OpenServiceW", name, Hex{access});
  if (simulator::IsRefused(call)) return nullptr;
  if (call.session.Find<ManagerHandle>(manager, "OpenServiceW") == nullptr)
    return Refuse(kErrorInvalidHandle);
  const Service* service = FindService(call.session, name);
  if (service == nullptr) return Refuse(kNoSuchService);
  if (service->open_error != 0) return Refuse(service->open_error);
  return call.session.Open(kServiceCloser, OpenService{name, access});
}

bool QueryServiceStatus(ServiceHandle handle, ServiceStatus& status) {
  Entered call("QueryServiceStatus");
  if (call.fault != Fault::kNone) return Succeed(InjectedResult(call));
  Error error = 0;
  const Service* service = UseService(call.session, handle, kQueryStatus, "QueryServiceStatus", error);
  if (service == nullptr) return Succeed(error);
  if (service->query_error == 0) status.current_state = service->state;
  return Succeed(service->query_error);
}

bool ControlService(ServiceHandle handle, std::uint32_t control, ServiceStatus& status) {
  Entered call("ControlService", control);
  if (call.fault != Fault::kNone) return Succeed(InjectedResult(call));
  Error error = 0;
  Service* service = UseService(call.session, handle, kStop, "ControlService", error);
  if (service == nullptr) return Succeed(error);
  if (control != kStopControl) return Succeed(kErrorInvalidParameter);
  if (service->state == kStopped) return Succeed(kNotRunning);
  if (service->stop_error == 0) service->state = service->state_after_stop;
  status.current_state = service->state;
  return Succeed(service->stop_error);
}

bool StartServiceW(ServiceHandle handle, std::uint32_t count, const wchar_t** arguments) {
  Entered call("StartServiceW", count, static_cast<const void*>(arguments));
  if (call.fault != Fault::kNone) return Succeed(InjectedResult(call));
  Error error = 0;
  Service* service = UseService(call.session, handle, kStart, "StartServiceW", error);
  if (service == nullptr) return Succeed(error);
  if (service->state == kRunning) return Succeed(kAlreadyRunning);
  if (service->start_error == 0) service->state = service->state_after_start;
  return Succeed(service->start_error);
}

bool CloseServiceHandle(ServiceHandle handle) {
  const Closing call("CloseServiceHandle");
  const bool was_open = call.session.Close(handle, kServiceCloser);
  return Succeed(was_open && !call.Fails() ? 0 : kErrorInvalidHandle);
}

}  // namespace velmora::os
