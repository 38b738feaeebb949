/// CDeviceInformention over a machine's devices.
#include "platform/ostrine/deviceinformation.h"

#include <algorithm>

#include "platform/case_folding.h"
#include "platform/os/last_error.h"
#include "platform/unicode.h"
#include "simulator/guid_text.h"
#include "simulator/session.h"
#include "simulator/spoiled.h"
#include "velmora/export.h"

using simulator::Device;
using simulator::Entered;
using simulator::Fault;
using velmora::unicode::WideFromUtf8;

namespace {

constexpr unsigned long kProblemOfAbsent = 45;  ///< the system's problem code of a device that is not there
constexpr unsigned long kNoSuchDevice = 0xE000020B;
constexpr unsigned long kRemovalFails = velmora::os::kErrorAccessDenied;

/// The machine's devices; none, and a problem, when they are not scripted.
std::vector<Device>& Devices(const Entered& call, std::string_view function) {
  static std::vector<Device> none;
  if (call.session.machine.devices) return *call.session.machine.devices;
  call.session.ReportUnscripted(function, "devices");
  none.clear();
  return none;
}

bool IsIn(const Device& device, const GUID& setup_class) {
  const char* name = simulator::SetupClassName(setup_class);
  return name != nullptr && device.setup_class == name;
}

bool IsNamed(const std::string& text, const std::wstring& wanted) {
  return !wanted.empty() && velmora::EqualIgnoringCase(WideFromUtf8(text), wanted);
}

/// The first present device of the class that `is_meant`; null if there is none.
template <class Predicate>
Device* FindDevice(std::vector<Device>& devices, const GUID& setup_class, Predicate is_meant) {
  const auto found = std::ranges::find_if(devices, [&](const Device& device) {
    return simulator::IsPresent(device) && IsIn(device, setup_class) && is_meant(device);
  });
  return found == devices.end() ? nullptr : &*found;
}

Device* FindByDescription(std::vector<Device>& devices, const GUID& setup_class,
                          const std::wstring& description) {
  return FindDevice(devices, setup_class,
                    [&](const Device& device) { return IsNamed(device.description, description); });
}

Device* FindByHardwareId(std::vector<Device>& devices, const GUID& setup_class, const std::wstring& id) {
  return FindDevice(devices, setup_class, [&](const Device& device) {
    return std::ranges::any_of(device.hardware_ids, [&](const std::string& own) { return IsNamed(own, id); });
  });
}

std::string TextProperty(Device& device, enmDEVICE_PROPERTY property) {
  switch (property) {
    case PROP_DESCRIPTION:
      return device.description;
    case PROP_MANUFACTURER:
      return device.manufacturer;
    case PROP_DRIVER_VERSION:
      return device.driver_version;
    case PROP_HARDWARE_ID:
      return device.hardware_ids.empty() ? std::string() : device.hardware_ids.front();
    case PROP_DEVICE_TYPE:
      return device.type.value_or(device.setup_class);
    case PROP_DEVICE_NAME:
      return device.name;
    case PROP_DISPLAY_NAME:
      return device.display_name;
    case PROP_INF:
      return device.inf;
    case PROP_INSTANCE_ID:
      return device.instance_id;
    case PROP_PROBLEM_CODE:
      return std::to_string(simulator::TakeProblemCode(device));
  }
  return {};
}

std::wstring TextProperty(Device* device, enmDEVICE_PROPERTY property) {
  return device == nullptr ? std::wstring() : WideFromUtf8(TextProperty(*device, property));
}

unsigned long NumberProperty(Device* device, enmDEVICE_PROPERTY property) {
  if (property != PROP_PROBLEM_CODE) return 0;
  return device == nullptr ? kProblemOfAbsent : simulator::TakeProblemCode(*device);
}

/// What a number is under a fault: a failed look-up is one for a device that is not there.
unsigned long SpoiledNumberProperty(Fault fault, enmDEVICE_PROPERTY property) {
  return fault == Fault::kFail ? NumberProperty(nullptr, property) : simulator::SpoiledNumber(fault);
}

}  // namespace

VELMORA_API std::vector<std::wstring> CDeviceInformention::GetDeviceDesc(GUID setup_class) {
  const Entered call("GetDeviceDesc", setup_class);
  if (call.fault != Fault::kNone) return simulator::SpoiledTexts(call.fault);
  std::vector<std::wstring> descriptions;
  for (const auto& device : Devices(call, "GetDeviceDesc")) {
    if (simulator::IsPresent(device) && IsIn(device, setup_class)) {
      descriptions.push_back(WideFromUtf8(device.description));
    }
  }
  return descriptions;
}

VELMORA_API std::vector<std::wstring> CDeviceInformention::GetDeviceHardwareID(GUID setup_class) {
  const Entered call("GetDeviceHardwareID", setup_class);
  if (call.fault != Fault::kNone) return simulator::SpoiledTexts(call.fault);
  std::vector<std::wstring> ids;
  for (const auto& device : Devices(call, "GetDeviceHardwareID")) {
    if (simulator::IsPresent(device) && IsIn(device, setup_class) && !device.hardware_ids.empty()) {
      ids.push_back(WideFromUtf8(device.hardware_ids.front()));
    }
  }
  return ids;
}

VELMORA_API std::wstring CDeviceInformention::GetDeviceStrInfoByDesc(std::wstring description,
                                                                     GUID setup_class,
                                                                     enmDEVICE_PROPERTY property) {
  const Entered call("GetDeviceStrInfoByDesc", description, setup_class,
                     static_cast<std::uint32_t>(property));
  if (call.fault != Fault::kNone) return simulator::SpoiledText(call.fault);
  auto& devices = Devices(call, "GetDeviceStrInfoByDesc");
  return TextProperty(FindByDescription(devices, setup_class, description), property);
}

VELMORA_API std::wstring CDeviceInformention::GetDeviceStrInfoByHardwareID(std::wstring hardware_id,
                                                                           GUID setup_class,
                                                                           enmDEVICE_PROPERTY property) {
  const Entered call("GetDeviceStrInfoByHardwareID", hardware_id, setup_class,
                     static_cast<std::uint32_t>(property));
  if (call.fault != Fault::kNone) return simulator::SpoiledText(call.fault);
  auto& devices = Devices(call, "GetDeviceStrInfoByHardwareID");
  return TextProperty(FindByHardwareId(devices, setup_class, hardware_id), property);
}

VELMORA_API unsigned long CDeviceInformention::GetDeviceULONGInfoByDesc(std::wstring description,
                                                                        GUID setup_class,
                                                                        enmDEVICE_PROPERTY property) {
  const Entered call("GetDeviceULONGInfoByDesc", description, setup_class,
                     static_cast<std::uint32_t>(property));
  if (call.fault != Fault::kNone) return SpoiledNumberProperty(call.fault, property);
  auto& devices = Devices(call, "GetDeviceULONGInfoByDesc");
  return NumberProperty(FindByDescription(devices, setup_class, description), property);
}

VELMORA_API unsigned long CDeviceInformention::GetDeviceULONGInfoByHardwareID(std::wstring hardware_id,
                                                                              GUID setup_class,
                                                                              enmDEVICE_PROPERTY property) {
  const Entered call("GetDeviceULONGInfoByHardwareID", hardware_id, setup_class,
                     static_cast<std::uint32_t>(property));
  if (call.fault != Fault::kNone) return SpoiledNumberProperty(call.fault, property);
  auto& devices = Devices(call, "GetDeviceULONGInfoByHardwareID");
  return NumberProperty(FindByHardwareId(devices, setup_class, hardware_id), property);
}

VELMORA_API std::uint64_t CDeviceInformention::GetLastIntallTime(std::wstring hardware_id, GUID setup_class) {
  const Entered call("GetLastIntallTime", hardware_id, setup_class);
  if (call.fault != Fault::kNone) return call.fault == Fault::kUnterminated ? ~std::uint64_t{0} : 0;
  const auto* device = FindByHardwareId(Devices(call, "GetLastIntallTime"), setup_class, hardware_id);
  return device == nullptr ? 0 : device->last_install_time;
}

VELMORA_API std::vector<std::wstring> CDeviceInformention::GetUnknownDeviceHardID() {
  const Entered call("GetUnknownDeviceHardID");
  if (call.fault != Fault::kNone) return simulator::SpoiledTexts(call.fault);
  std::vector<std::wstring> ids;
  for (const auto& device : Devices(call, "GetUnknownDeviceHardID")) {
    if (simulator::IsPresent(device) && device.unknown && !device.hardware_ids.empty()) {
      ids.push_back(WideFromUtf8(device.hardware_ids.front()));
    }
  }
  return ids;
}

VELMORA_API unsigned long CDeviceInformention::UnstallDeviceByHardwareID(std::wstring hardware_id,
                                                                         GUID setup_class) {
  const Entered call("UnstallDeviceByHardwareID", hardware_id, setup_class);
  if (call.fault != Fault::kNone) return call.Fails() ? kRemovalFails : 0;
  auto* device = FindByHardwareId(Devices(call, "UnstallDeviceByHardwareID"), setup_class, hardware_id);
  return device == nullptr ? kNoSuchDevice : simulator::Remove(*device);
}
