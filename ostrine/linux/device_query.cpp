#include "ostrine/linux/device_query.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "ostrine/common/wql_text.h"
#include "ostrine/linux/bus_devices.h"
#include "ostrine/linux/describe.h"
#include "ostrine/linux/driver.h"
#include "ostrine/linux/last_error.h"
#include "ostrine/linux/uninstall.h"
#include "platform/ostrine/interface_guid.h"
#include "platform/ostrine/setup_class.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

using velmora::unicode::WideFromUtf8;

struct NamedClass {
  GUID id;
  SetupClass setup_class;
  const wchar_t* name;
};

constexpr NamedClass kClasses[] = {
    {velmora::setup_class::kNet, SetupClass::kNet, L"Net"},
    {velmora::setup_class::kBluetooth, SetupClass::kBluetooth, L"Bluetooth"},
    {velmora::setup_class::kBiometric, SetupClass::kBiometric, L"Biometric"},
    {velmora::setup_class::kMedia, SetupClass::kMedia, L"MEDIA"},
    {velmora::setup_class::kKeyboard, SetupClass::kKeyboard, L"Keyboard"},
    {velmora::setup_class::kDisplay, SetupClass::kDisplay, L"Display"},
    {velmora::setup_class::kUsb, SetupClass::kUsb, L"USB"},
    {velmora::setup_class::kSystem, SetupClass::kSystem, L"System"},
};

bool IsNamedBy(const Device& device, std::wstring_view hardware_id) {
  return std::any_of(device.ids.hardware.begin(), device.ids.hardware.end(),
                     [&](const std::wstring& own) { return EqualIgnoringCase(own, hardware_id); });
}

}  // namespace

DeviceQuery::DeviceQuery(Path root, const GUID& setup_class)
    : root_(std::move(root)), setup_class_(SetupClassOf(setup_class)) {}

DeviceQuery::Devices DeviceQuery::List() const {
  return setup_class_ == SetupClass::kNone ? Devices() : ListDevices(root_, setup_class_);
}

std::vector<std::wstring> DeviceQuery::Descriptions() const {
  NameDatabase names(root_);
  std::vector<std::wstring> descriptions;
  for (const Device& device : List()) descriptions.push_back(Describe(device, names));
  return descriptions;
}

std::vector<std::wstring> DeviceQuery::HardwareIds() const {
  std::vector<std::wstring> ids;
  for (const Device& device : List()) {
    if (!device.ids.hardware.empty()) ids.push_back(device.ids.hardware.front());
  }
  return ids;
}

DeviceQuery::Devices DeviceQuery::ListUpToBearer(std::wstring_view hardware_id) const {
  if (hardware_id.empty() || setup_class_ == SetupClass::kNone) return {};
  const auto is_bearer = [&](const Device& device) { return IsNamedBy(device, hardware_id); };
  Devices devices = ListDevicesUpTo(root_, setup_class_, is_bearer);
  return devices.empty() || !is_bearer(devices.back()) ? Devices() : devices;
}

DeviceQuery::Devices DeviceQuery::ListUpTo(LookUp by, std::wstring_view name, NameDatabase& names) const {
  if (by == LookUp::kHardwareId) return ListUpToBearer(name);
  if (name.empty()) return {};
  Devices devices = List();
  const auto found = std::find_if(devices.begin(), devices.end(), [&](const Device& device) {
    return EqualIgnoringCase(Describe(device, names), name);
  });
  if (found == devices.end()) return {};
  devices.erase(found + 1, devices.end());
  return devices;
}

std::wstring DeviceQuery::Text(LookUp by, std::wstring_view name, enmDEVICE_PROPERTY property) const {
  if (property == PROP_INF) return {};  // drivers are not installed from such files here
  NameDatabase names(root_);
  const Devices devices = ListUpTo(by, name, names);
  return devices.empty() ? std::wstring() : TextOf(devices, property, names);
}

std::wstring DeviceQuery::TextOf(const Devices& up_to, enmDEVICE_PROPERTY property,
                                 NameDatabase& names) const {
  const Device& device = up_to.back();
  switch (property) {
    case PROP_DESCRIPTION:
      return Describe(device, names);
    case PROP_MANUFACTURER:
      return Manufacturer(device, names);
    case PROP_DRIVER_VERSION:
      return WideFromUtf8(DriverVersion(root_, DriverOf(root_, device)));
    case PROP_HARDWARE_ID:
      return device.ids.hardware.empty() ? std::wstring() : device.ids.hardware.front();
    case PROP_DEVICE_TYPE:
      return device.kind.empty() ? SetupClassName(device.setup_class) : WideFromUtf8(device.kind);
    case PROP_DEVICE_NAME:
      return WideFromUtf8(device.name);
    case PROP_DISPLAY_NAME:
      return FriendlyNames(up_to, names).back();
    case PROP_INSTANCE_ID:
      return InstanceId(device);
    case PROP_PROBLEM_CODE:
      return std::to_wstring(ProblemCode(root_, device));
    case PROP_INF:
      break;
  }
  return {};
}

std::uint32_t DeviceQuery::Number(LookUp by, std::wstring_view name, enmDEVICE_PROPERTY property) const {
  if (property != PROP_PROBLEM_CODE) return 0;
  NameDatabase names(root_);
  const Devices devices = ListUpTo(by, name, names);
  return devices.empty() ? kNotPresent : ProblemCode(root_, devices.back());
}

std::uint64_t DeviceQuery::InstallTime(std::wstring_view hardware_id) const {
  const Devices devices = ListUpToBearer(hardware_id);
  return devices.empty() ? 0 : DriverInstallTime(root_, DriverOf(root_, devices.back()));
}

std::uint32_t DeviceQuery::Remove(std::wstring_view hardware_id) const {
  const Devices devices = ListUpToBearer(hardware_id);
  return devices.empty() ? kErrorNoSuchDevice : RemoveDevice(devices.back());
}

SetupClass SetupClassOf(const GUID& id) {
  const auto* const found = std::find_if(std::begin(kClasses), std::end(kClasses),
                                         [&](const NamedClass& known) { return known.id == id; });
  return found == std::end(kClasses) ? SetupClass::kNone : found->setup_class;
}

std::wstring SetupClassName(SetupClass setup_class) {
  const auto* const found =
      std::find_if(std::begin(kClasses), std::end(kClasses),
                   [&](const NamedClass& known) { return known.setup_class == setup_class; });
  return found == std::end(kClasses) ? std::wstring() : found->name;
}

std::string SetupClassIdText(SetupClass setup_class) {
  const auto* const found =
      std::find_if(std::begin(kClasses), std::end(kClasses),
                   [&](const NamedClass& known) { return known.setup_class == setup_class; });
  if (found == std::end(kClasses)) return {};
  std::string text = velmora::GuidText(found->id);
  for (char& c : text) {
    if (c >= 'A' && c <= 'F') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

bool IsMadeUpByKernel(const Path& root, const Device& device) {
  return !ResolveBelow(device.node, DevicesFolder(root) / "virtual").empty();
}

std::wstring InstanceId(const Device& device) {
  if (device.ids.hardware.empty()) return WideFromUtf8(device.address);
  return device.ids.hardware.front() + L"\\" + WideFromUtf8(device.address);
}

std::vector<std::wstring> UnknownHardwareIds(const Path& root) {
  constexpr std::uint32_t kNoDriver = 28;
  std::vector<std::wstring> ids;
  for (const Device& device : ListDevices(root)) {
    if (device.ids.hardware.empty() || ProblemCode(root, device) != kNoDriver) continue;
    if (!IsMadeUpByKernel(root, device)) ids.push_back(device.ids.hardware.front());
  }
  return ids;
}

}  // namespace ostrine
