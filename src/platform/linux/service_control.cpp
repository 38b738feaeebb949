/// Service control over the service manager's bus interface.
///
/// A manager handle is a connection to the bus, and a service handle shares it, so that either may be closed
/// first. Rights are those that the caller asked for: a call without its right fails with 5. Whether the
/// system grants them is decided when a service is started or stopped, with 5 as well: asking for the state
/// is free.
#include "platform/os/service_control.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/case_folding.h"
#include "platform/linux/handle_object.h"
#include "platform/linux/service_state.h"
#include "platform/linux/system_bus.h"
#include "platform/linux/systemd.h"
#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kRightToQuery = 0x4;
constexpr std::uint32_t kRightToStart = 0x10;
constexpr std::uint32_t kRightToStop = 0x20;
constexpr std::uint32_t kRightToInterrogate = 0x80;

constexpr std::uint32_t kControlStop = 1;
constexpr std::uint32_t kControlInterrogate = 4;

using SharedBus = std::shared_ptr<SystemBus>;

/// Base of what CloseServiceHandle closes.
class ServiceObject : public HandleObject {
 public:
  explicit ServiceObject(SharedBus bus) noexcept : bus_(std::move(bus)) {}
  const SharedBus& Connection() const noexcept { return bus_; }

 private:
  SharedBus bus_;
};

class Manager : public ServiceObject {
 public:
  using ServiceObject::ServiceObject;
};

class Service : public ServiceObject {
 public:
  Service(SharedBus bus, std::string unit, std::uint32_t rights) noexcept
      : ServiceObject(std::move(bus)), unit_(std::move(unit)), rights_(rights) {}
  SystemBus* Bus() const noexcept { return Connection().get(); }
  const std::string& Unit() const noexcept { return unit_; }
  bool May(std::uint32_t right) const noexcept { return (rights_ & right) != 0; }

 private:
  std::string unit_;
  std::uint32_t rights_;
};

/// False, with `error` as the last error, unless that is 0.
bool Succeed(std::uint32_t error) noexcept {
  if (error != 0) SetLastError(error);
  return error == 0;
}

ServiceHandle FailToOpen(std::uint32_t error) noexcept {
  SetLastError(error);
  return nullptr;
}

bool NamesThisMachine(const wchar_t* machine) { return machine == nullptr || *machine == 0; }

bool NamesTheActiveDatabase(const wchar_t* database) {
  return database == nullptr || *database == 0 || EqualIgnoringCase(database, L"ServicesActive");
}

/// What stopping a service in this state runs into; 0 when nothing.
std::uint32_t HindranceToStop(const Service& service, const UnitFacts& unit) {
  const std::uint32_t state = StatusOf(unit).current_state;
  if (state == kServiceStopped) return kErrorServiceNotActive;
  if (state != kServiceRunning && state != kServicePaused) return kErrorServiceCannotAcceptControl;
  if (!unit.can_stop) return kErrorInvalidServiceControl;
  return HasRunningDependents(service.Bus(), service.Unit()) ? kErrorDependentServicesRunning : 0;
}

std::uint32_t Stop(const Service& service, ServiceStatus& status) {
  if (!service.May(kRightToStop)) return kErrorAccessDenied;
  UnitFacts unit;
  if (const std::uint32_t error = ReadUnit(service.Bus(), service.Unit(), unit)) return error;
  if (const std::uint32_t error = HindranceToStop(service, unit)) {
    status = StatusOf(unit);
    return error;
  }
  if (const std::uint32_t error = StopUnit(service.Bus(), service.Unit())) return error;
  UnitFacts after;
  if (const std::uint32_t error = ReadUnit(service.Bus(), service.Unit(), after)) return error;
  status = StatusOf(after);
  // The job may not have begun yet; it has been accepted all the same.
  if (status.current_state == kServiceRunning) status.current_state = kServiceStopPending;
  return 0;
}

std::uint32_t Interrogate(const Service& service, std::uint32_t right, ServiceStatus& status) {
  if (!service.May(right)) return kErrorAccessDenied;
  UnitFacts unit;
  if (const std::uint32_t error = ReadUnit(service.Bus(), service.Unit(), unit)) return error;
  status = StatusOf(unit);
  return 0;
}

std::uint32_t Start(const Service& service) {
  if (!service.May(kRightToStart)) return kErrorAccessDenied;
  UnitFacts unit;
  if (const std::uint32_t error = ReadUnit(service.Bus(), service.Unit(), unit)) return error;
  if (StatusOf(unit).current_state != kServiceStopped) return kErrorServiceAlreadyRunning;
  if (unit.load_state == "masked") return kErrorServiceDisabled;
  return StartUnit(service.Bus(), service.Unit());
}

}  // namespace

ServiceHandle OpenSCManagerW(const wchar_t* machine, const wchar_t* database, std::uint32_t /*access*/) {
  if (!NamesThisMachine(machine)) return FailToOpen(kErrorServerUnavailable);
  if (!NamesTheActiveDatabase(database)) return FailToOpen(kErrorDatabaseDoesNotExist);
  SharedBus bus(ConnectToSystemBus());
  if (!bus || !HasServiceManager(bus.get())) return FailToOpen(kErrorServerUnavailable);
  return HandleOf(std::make_unique<Manager>(std::move(bus)));
}

ServiceHandle OpenServiceW(ServiceHandle handle, const wchar_t* name, std::uint32_t access) {
  const auto* manager = ObjectOf<Manager>(handle);
  if (manager == nullptr) return FailToOpen(kErrorInvalidHandle);
  auto unit = name != nullptr ? UnitOfService(name) : std::nullopt;
  if (!unit) return FailToOpen(kErrorInvalidName);
  if (const std::uint32_t error = FindUnit(manager->Connection().get(), *unit)) return FailToOpen(error);
  return HandleOf(std::make_unique<Service>(manager->Connection(), std::move(*unit), access));
}

bool QueryServiceStatus(ServiceHandle handle, ServiceStatus& status) {
  const auto* service = ObjectOf<Service>(handle);
  return Succeed(service != nullptr ? Interrogate(*service, kRightToQuery, status) : kErrorInvalidHandle);
}

bool ControlService(ServiceHandle handle, std::uint32_t control, ServiceStatus& status) {
  const auto* service = ObjectOf<Service>(handle);
  if (service == nullptr) return Succeed(kErrorInvalidHandle);
  if (control == kControlStop) return Succeed(Stop(*service, status));
  if (control == kControlInterrogate) return Succeed(Interrogate(*service, kRightToInterrogate, status));
  return Succeed(kErrorInvalidServiceControl);
}

bool StartServiceW(ServiceHandle handle, std::uint32_t count, const wchar_t** /*arguments*/) {
  const auto* service = ObjectOf<Service>(handle);
  if (service == nullptr) return Succeed(kErrorInvalidHandle);
  if (count != 0) return Succeed(kErrorInvalidParameter);  // units take no arguments
  return Succeed(Start(*service));
}

bool CloseServiceHandle(ServiceHandle handle) { return CloseObject<ServiceObject>(handle); }

}  // namespace velmora::os
