#include "velmora-report/device_list.h"

#include <algorithm>
#include <iterator>

#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "velmora-report/utf8.h"

namespace report {
namespace {

namespace setup_class = velmora::setup_class;

constexpr DeviceClass kClasses[] = {
    {.key = "net", .title = "Network card", .kind = "wireless", .type = emDEVICE_WIRELESS},
    {.key = "bluetooth", .title = "Bluetooth device", .kind = "bluetooth", .type = emDEVICE_BLUETOOTH},
    {.key = "biometric", .title = "Fingerprint reader", .kind = "fingerprint", .type = emDEVICE_FINGERPRINT},
    {.key = "media", .title = "Audio device", .kind = "audio", .type = emDEVICE_AUDIO},
    {.key = "keyboard", .title = "Keyboard"},
    {.key = "display", .title = "Display adapter", .kind = "display", .type = emDEVICE_DISPLAY},
    {.key = "usb", .title = "USB device", .kind = "usb", .type = emDEVICE_USB},
    {.key = "system", .title = "System device"},
};

/// The identifiers of the classes above, one each.
constexpr GUID kIds[] = {setup_class::kNet,   setup_class::kBluetooth, setup_class::kBiometric,
                         setup_class::kMedia, setup_class::kKeyboard,  setup_class::kDisplay,
                         setup_class::kUsb,   setup_class::kSystem};
static_assert(std::size(kIds) == std::size(kClasses));

const GUID& IdOf(const DeviceClass& device_class) { return kIds[&device_class - std::data(kClasses)]; }

ListedDevice ReadDevice(const DeviceClass& device_class, const std::wstring& hardware_id) {
  const GUID& id = IdOf(device_class);
  CDeviceInformention information;
  const auto text = [&](enmDEVICE_PROPERTY property) {
    return ToUtf8(information.GetDeviceStrInfoByHardwareID(hardware_id, id, property));
  };
  return {.hardware_id = text(PROP_HARDWARE_ID),
          .description = text(PROP_DESCRIPTION),
          .driver_version = text(PROP_DRIVER_VERSION),
          .instance_id = text(PROP_INSTANCE_ID),
          .problem_code = static_cast<std::uint32_t>(
              information.GetDeviceULONGInfoByHardwareID(hardware_id, id, PROP_PROBLEM_CODE))};
}

/// A device by its description: of several the first, as the library means it.
ListedDevice ReadByDescription(const DeviceClass& device_class, const std::wstring& description) {
  const GUID& id = IdOf(device_class);
  CDeviceInformention information;
  const auto text = [&](enmDEVICE_PROPERTY property) {
    return ToUtf8(information.GetDeviceStrInfoByDesc(description, id, property));
  };
  return {.hardware_id = text(PROP_HARDWARE_ID),
          .description = ToUtf8(description),
          .driver_version = text(PROP_DRIVER_VERSION),
          .instance_id = text(PROP_INSTANCE_ID),
          .problem_code = static_cast<std::uint32_t>(
              information.GetDeviceULONGInfoByDesc(description, id, PROP_PROBLEM_CODE))};
}

}  // namespace

std::span<const DeviceClass> DeviceClasses() { return kClasses; }

const DeviceClass* FindKind(std::string_view kind) {
  const auto* const found = std::ranges::find(kClasses, kind, &DeviceClass::kind);
  return kind.empty() || found == std::end(kClasses) ? nullptr : found;
}

std::vector<ListedDevice> ListDevices(const DeviceClass& device_class) {
  std::vector<ListedDevice> devices;
  CDeviceInformention information;
  for (const std::wstring& id : information.GetDeviceHardwareID(IdOf(device_class))) {
    const auto earlier = std::ranges::find(devices, ToUtf8(id), &ListedDevice::hardware_id);
    if (earlier != devices.end()) {
      ++earlier->count;
    } else {
      devices.push_back(ReadDevice(device_class, id));
    }
  }
  for (const std::wstring& description : information.GetDeviceDesc(IdOf(device_class))) {
    if (description.empty()) continue;
    const bool has_id =
        !information.GetDeviceStrInfoByDesc(description, IdOf(device_class), PROP_HARDWARE_ID).empty();
    if (!has_id) devices.push_back(ReadByDescription(device_class, description));
  }
  return devices;
}

std::vector<ListedDevice> ListByDescription(const DeviceClass& device_class) {
  std::vector<ListedDevice> devices;
  for (const std::wstring& description : CDeviceInformention().GetDeviceDesc(IdOf(device_class))) {
    devices.push_back(ReadByDescription(device_class, description));
  }
  return devices;
}

std::optional<ListedDevice> FindDevice(const DeviceClass& device_class, const std::string& hardware_id) {
  ListedDevice device = ReadDevice(device_class, FromUtf8(hardware_id));
  if (device.hardware_id.empty()) return std::nullopt;
  return device;
}

std::uint32_t ReadProblemCode(const DeviceClass& device_class, const std::string& hardware_id) {
  return static_cast<std::uint32_t>(CDeviceInformention().GetDeviceULONGInfoByHardwareID(
      FromUtf8(hardware_id), IdOf(device_class), PROP_PROBLEM_CODE));
}

}  // namespace report
