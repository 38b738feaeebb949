// CDeviceInformention on this system: each operation lists the devices afresh.
#include "ostrine/linux/device_query.h"
#include "ostrine/linux/guard.h"
#include "ostrine/linux/last_error.h"
#include "ostrine/linux/system_root.h"
#include "platform/ostrine/deviceinformation.h"

using ostrine::DeviceQuery;
using ostrine::Guarded;
using ostrine::LookUp;
using ostrine::SystemRoot;

namespace {

/// What a number is when it could not be found out: never the code of a device that works.
unsigned long UnansweredNumber(enmDEVICE_PROPERTY property) {
  return property == PROP_PROBLEM_CODE ? ostrine::kNotPresent : 0;
}

}  // namespace

std::vector<std::wstring> CDeviceInformention::GetDeviceDesc(GUID setup_class) {
  return Guarded(std::vector<std::wstring>(),
                 [&] { return DeviceQuery(SystemRoot(), setup_class).Descriptions(); });
}

std::vector<std::wstring> CDeviceInformention::GetDeviceHardwareID(GUID setup_class) {
  return Guarded(std::vector<std::wstring>(),
                 [&] { return DeviceQuery(SystemRoot(), setup_class).HardwareIds(); });
}

std::wstring CDeviceInformention::GetDeviceStrInfoByDesc(std::wstring description, GUID setup_class,
                                                         enmDEVICE_PROPERTY property) {
  return Guarded(std::wstring(), [&] {
    return DeviceQuery(SystemRoot(), setup_class).Text(LookUp::kDescription, description, property);
  });
}

std::wstring CDeviceInformention::GetDeviceStrInfoByHardwareID(std::wstring hardware_id, GUID setup_class,
                                                               enmDEVICE_PROPERTY property) {
  return Guarded(std::wstring(), [&] {
    return DeviceQuery(SystemRoot(), setup_class).Text(LookUp::kHardwareId, hardware_id, property);
  });
}

unsigned long CDeviceInformention::GetDeviceULONGInfoByDesc(std::wstring description, GUID setup_class,
                                                            enmDEVICE_PROPERTY property) {
  return Guarded(UnansweredNumber(property), [&]() -> unsigned long {
    return DeviceQuery(SystemRoot(), setup_class).Number(LookUp::kDescription, description, property);
  });
}

unsigned long CDeviceInformention::GetDeviceULONGInfoByHardwareID(std::wstring hardware_id, GUID setup_class,
                                                                  enmDEVICE_PROPERTY property) {
  return Guarded(UnansweredNumber(property), [&]() -> unsigned long {
    return DeviceQuery(SystemRoot(), setup_class).Number(LookUp::kHardwareId, hardware_id, property);
  });
}

std::uint64_t CDeviceInformention::GetLastIntallTime(std::wstring hardware_id, GUID setup_class) {
  return Guarded(std::uint64_t{0},
                 [&] { return DeviceQuery(SystemRoot(), setup_class).InstallTime(hardware_id); });
}

std::vector<std::wstring> CDeviceInformention::GetUnknownDeviceHardID() {
  return Guarded(std::vector<std::wstring>(), [] { return ostrine::UnknownHardwareIds(SystemRoot()); });
}

unsigned long CDeviceInformention::UnstallDeviceByHardwareID(std::wstring hardware_id, GUID setup_class) {
  return Guarded(static_cast<unsigned long>(ostrine::kErrorGeneralFailure), [&]() -> unsigned long {
    return DeviceQuery(SystemRoot(), setup_class).Remove(hardware_id);
  });
}
