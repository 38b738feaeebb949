// CDeviceInformention on this system: each operation has the system list the devices afresh.
#include "platform/ostrine/deviceinformation.h"

#include <windows.h>

#include <cfgmgr32.h>

#include <algorithm>
#include <climits>
#include <string_view>

#include "ostrine/windows/device_rules.h"
#include "ostrine/windows/device_set.h"
#include "ostrine/windows/guard.h"
#include "ostrine/windows/property_keys.h"

namespace {

using ostrine::Device;
using ostrine::DeviceSet;
using ostrine::Guarded;

/// Whether the texts are equal but for letter case, as the system compares names.
bool EqualNames(std::wstring_view left, std::wstring_view right) {
  return left.size() == right.size() && left.size() <= INT_MAX &&
         CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                              static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

std::optional<Device> FindByDescription(const DeviceSet& devices, std::wstring_view description) {
  if (description.empty()) return std::nullopt;
  return devices.Find(
      [&](const Device& device) { return EqualNames(device.Text(SPDRP_DEVICEDESC), description); });
}

std::optional<Device> FindByHardwareId(const DeviceSet& devices, std::wstring_view hardware_id) {
  if (hardware_id.empty()) return std::nullopt;
  return devices.Find([&](const Device& device) {
    const auto ids = device.Texts(SPDRP_HARDWAREID);
    return std::any_of(ids.begin(), ids.end(),
                       [&](const std::wstring& id) { return EqualNames(id, hardware_id); });
  });
}

/// The name under which the device presents itself: the friendly name, which is a Bluetooth device's own,
/// else what the system calls it.
std::wstring NameOf(const Device& device) {
  std::wstring name = device.Text(SPDRP_FRIENDLYNAME);
  return name.empty() ? device.Text(ostrine::property_key::kName) : name;
}

std::wstring TextOf(const std::optional<Device>& device, enmDEVICE_PROPERTY property) {
  if (!device) return {};
  switch (property) {
    case PROP_DESCRIPTION:
      return device->Text(SPDRP_DEVICEDESC);
    case PROP_MANUFACTURER:
      return device->Text(SPDRP_MFG);
    case PROP_DRIVER_VERSION:
      return device->Text(ostrine::property_key::kDriverVersion);
    case PROP_HARDWARE_ID:
      return device->FirstHardwareId();
    case PROP_DEVICE_TYPE:
      return device->Text(SPDRP_CLASS);
    case PROP_DEVICE_NAME:
      return NameOf(*device);
    case PROP_DISPLAY_NAME:
      return device->Text(SPDRP_FRIENDLYNAME);
    case PROP_INF:
      return device->Text(ostrine::property_key::kDriverInfPath);
    case PROP_INSTANCE_ID:
      return device->InstanceId();
    case PROP_PROBLEM_CODE:
      return std::to_wstring(device->ProblemCode());
  }
  return {};
}

/// What a number is when there is no such device, or it could not be asked: never the code of one that works.
unsigned long UnansweredNumber(enmDEVICE_PROPERTY property) {
  return property == PROP_PROBLEM_CODE ? CM_PROB_PHANTOM : 0;
}

unsigned long NumberOf(const std::optional<Device>& device, enmDEVICE_PROPERTY property) {
  if (property != PROP_PROBLEM_CODE) return 0;
  return device ? device->ProblemCode() : UnansweredNumber(property);
}

}  // namespace

std::vector<std::wstring> CDeviceInformention::GetDeviceDesc(GUID setup_class) {
  return Guarded(std::vector<std::wstring>(), [&] {
    std::vector<std::wstring> descriptions;
    DeviceSet(setup_class).ForEach([&](const Device& device) {
      descriptions.push_back(device.Text(SPDRP_DEVICEDESC));
    });
    return descriptions;
  });
}

std::vector<std::wstring> CDeviceInformention::GetDeviceHardwareID(GUID setup_class) {
  return Guarded(std::vector<std::wstring>(), [&] {
    std::vector<std::wstring> ids;
    DeviceSet(setup_class).ForEach([&](const Device& device) {
      std::wstring id = device.FirstHardwareId();
      if (!id.empty()) ids.push_back(std::move(id));
    });
    return ids;
  });
}

std::wstring CDeviceInformention::GetDeviceStrInfoByDesc(std::wstring description, GUID setup_class,
                                                         enmDEVICE_PROPERTY property) {
  return Guarded(std::wstring(), [&] {
    const DeviceSet devices(setup_class);
    return TextOf(FindByDescription(devices, description), property);
  });
}

std::wstring CDeviceInformention::GetDeviceStrInfoByHardwareID(std::wstring hardware_id, GUID setup_class,
                                                               enmDEVICE_PROPERTY property) {
  return Guarded(std::wstring(), [&] {
    const DeviceSet devices(setup_class);
    return TextOf(FindByHardwareId(devices, hardware_id), property);
  });
}

unsigned long CDeviceInformention::GetDeviceULONGInfoByDesc(std::wstring description, GUID setup_class,
                                                            enmDEVICE_PROPERTY property) {
  return Guarded(UnansweredNumber(property), [&] {
    const DeviceSet devices(setup_class);
    return NumberOf(FindByDescription(devices, description), property);
  });
}

unsigned long CDeviceInformention::GetDeviceULONGInfoByHardwareID(std::wstring hardware_id, GUID setup_class,
                                                                  enmDEVICE_PROPERTY property) {
  return Guarded(UnansweredNumber(property), [&] {
    const DeviceSet devices(setup_class);
    return NumberOf(FindByHardwareId(devices, hardware_id), property);
  });
}

std::uint64_t CDeviceInformention::GetLastIntallTime(std::wstring hardware_id, GUID setup_class) {
  return Guarded(std::uint64_t{0}, [&]() -> std::uint64_t {
    const DeviceSet devices(setup_class);
    const auto device = FindByHardwareId(devices, hardware_id);
    const auto time = device ? device->Time(ostrine::property_key::kInstallDate) : std::nullopt;
    if (!time) return 0;
    return ostrine::UnixMilliseconds((std::uint64_t{time->dwHighDateTime} << 32) | time->dwLowDateTime);
  });
}

std::vector<std::wstring> CDeviceInformention::GetUnknownDeviceHardID() {
  return Guarded(std::vector<std::wstring>(), [] {
    std::vector<std::wstring> ids;
    DeviceSet().ForEach([&](const Device& device) {
      if (!ostrine::LacksDriver(device.ProblemCode())) return;
      std::wstring id = device.FirstHardwareId();
      if (!id.empty()) ids.push_back(std::move(id));
    });
    return ids;
  });
}

unsigned long CDeviceInformention::UnstallDeviceByHardwareID(std::wstring hardware_id, GUID setup_class) {
  return Guarded(static_cast<unsigned long>(ERROR_NOT_ENOUGH_MEMORY), [&]() -> unsigned long {
    const DeviceSet devices(setup_class);
    auto device = FindByHardwareId(devices, hardware_id);
    return device ? device->Remove() : static_cast<unsigned long>(ERROR_NO_SUCH_DEVINST);
  });
}
