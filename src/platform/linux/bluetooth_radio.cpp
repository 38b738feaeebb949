/// The Bluetooth interface over the Bluetooth service. A radio is an adapter that is switched on. An inquiry
/// finds classic devices only, as it does under Windows, and so does every search: what has low energy alone
/// is left out.
#include "platform/os/bluetooth_radio.h"

#include <algorithm>
#include <memory>
#include <span>
#include <utility>

#include "platform/linux/bluez.h"
#include "platform/linux/handle_object.h"
#include "platform/linux/system_bus.h"
#include "platform/os/clock.h"
#include "platform/os/last_error.h"
#include "platform/unicode.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kErrorNoMoreItems = 259;
constexpr std::uint32_t kErrorRevisionMismatch = 1306;

class Radio : public KernelObject {
 public:
  explicit Radio(std::string path) noexcept : path_(std::move(path)) {}
  const std::string& Path() const noexcept { return path_; }

 private:
  std::string path_;
};

class RadioSearch : public HandleObject {};
class DeviceSearch : public HandleObject {};

Handle FailToFind(std::uint32_t error) noexcept {
  SetLastError(error);
  return nullptr;
}

/// Puts as much of `text` as fits, and a zero.
void PutName(const std::string& text, std::span<char16_t> field) {
  std::u16string wide = unicode::Utf16FromUtf8(text).substr(0, field.size() - 1);
  const bool is_cut = !wide.empty() && wide.back() >= 0xD800 && wide.back() < 0xDC00;
  if (is_cut) wide.pop_back();  // the first half of a character
  std::fill(std::copy(wide.begin(), wide.end(), field.begin()), field.end(), u'\0');
}

bool IsLowEnergyOnly(const BluetoothDevice& device) {
  return device.address_type == "random" || !device.class_of_device;
}

bool IsWanted(const BluetoothDevice& device, const BluetoothSearchParameters& parameters) {
  const bool is_remembered = device.is_paired || device.is_trusted;
  if (device.is_connected && parameters.return_connected != 0) return true;
  if (is_remembered && parameters.return_remembered != 0) return true;
  if (device.is_paired && parameters.return_authenticated != 0) return true;
  const bool is_known = device.is_connected || is_remembered;
  return !is_known && device.is_in_sight && parameters.return_unknown != 0 && parameters.issue_inquiry != 0;
}

void Fill(const BluetoothDevice& device, std::uint64_t address, BluetoothDeviceInfo& info) {
  info.address = address;
  info.class_of_device = device.class_of_device.value_or(0);
  info.connected = device.is_connected ? 1 : 0;
  info.remembered = device.is_paired || device.is_trusted ? 1 : 0;
  info.authenticated = device.is_paired ? 1 : 0;
  PutName(device.alias, info.name);
}

/// What the service knows at the end of the inquiry, if one is wanted. The connection ends it at the latest.
std::optional<BluetoothObjects> Inquire(SystemBus* bus, const std::string& adapter,
                                        const BluetoothSearchParameters& parameters) {
  constexpr std::uint32_t kUnit = 1280;  // milliseconds
  if (parameters.issue_inquiry == 0) return ReadBluetoothObjects(bus);
  const bool is_started = StartInquiry(bus, adapter);
  Sleep(parameters.timeout_multiplier * kUnit);
  auto objects = ReadBluetoothObjects(bus);  // what was met is forgotten once the inquiry has stopped
  if (is_started) StopInquiry(bus, adapter);
  return objects;
}

}  // namespace

Handle BluetoothFindFirstRadio(const BluetoothFindRadioParameters& parameters, Handle& radio) {
  if (parameters.size != sizeof parameters) return FailToFind(kErrorRevisionMismatch);
  const Bus bus = ConnectToSystemBus();
  const auto objects = bus ? ReadBluetoothObjects(bus.get()) : std::nullopt;
  if (!objects) return FailToFind(kErrorNoMoreItems);
  const auto found = std::find_if(objects->adapters.begin(), objects->adapters.end(),
                                  [](const BluetoothAdapter& adapter) { return adapter.is_powered; });
  if (found == objects->adapters.end()) return FailToFind(kErrorNoMoreItems);
  auto search = std::make_unique<RadioSearch>();
  radio = HandleOf(std::make_unique<Radio>(found->path));
  return HandleOf(std::move(search));
}

bool BluetoothFindRadioClose(Handle find) { return CloseObject<RadioSearch>(find); }

std::uint32_t BluetoothGetRadioInfo(Handle handle, BluetoothRadioInfo& info) {
  const auto* radio = ObjectOf<Radio>(handle);
  if (radio == nullptr) return kErrorInvalidHandle;
  if (info.size != sizeof info) return kErrorRevisionMismatch;
  const Bus bus = ConnectToSystemBus();
  const auto objects = bus ? ReadBluetoothObjects(bus.get()) : std::nullopt;
  if (!objects) return kErrorDeviceNotExist;
  const auto found =
      std::find_if(objects->adapters.begin(), objects->adapters.end(),
                   [&](const BluetoothAdapter& adapter) { return adapter.path == radio->Path(); });
  if (found == objects->adapters.end()) return kErrorDeviceNotExist;
  const auto address = ParseBluetoothAddress(found->address);
  if (!address) return kErrorGeneralFailure;
  info.address = *address;
  info.class_of_device = found->class_of_device;
  info.lmp_subversion = 0;  // the service does not tell
  info.manufacturer = found->manufacturer;
  PutName(found->alias, info.name);
  return 0;
}

Handle BluetoothFindFirstDevice(const BluetoothSearchParameters& parameters, BluetoothDeviceInfo& info) {
  const auto* radio = ObjectOf<Radio>(parameters.radio);
  if (radio == nullptr) return FailToFind(kErrorInvalidHandle);
  if (parameters.size != sizeof parameters || info.size != sizeof info)
    return FailToFind(kErrorRevisionMismatch);
  const Bus bus = ConnectToSystemBus();
  const auto objects = bus ? Inquire(bus.get(), radio->Path(), parameters) : std::nullopt;
  if (!objects) return FailToFind(kErrorNoMoreItems);
  for (const BluetoothDevice& device : objects->devices) {
    const auto address = ParseBluetoothAddress(device.address);
    const bool is_candidate = address && device.adapter == radio->Path() && !IsLowEnergyOnly(device);
    if (!is_candidate || !IsWanted(device, parameters)) continue;
    auto search = std::make_unique<DeviceSearch>();
    Fill(device, *address, info);
    return HandleOf(std::move(search));
  }
  return FailToFind(kErrorNoMoreItems);
}

bool BluetoothFindDeviceClose(Handle find) { return CloseObject<DeviceSearch>(find); }

}  // namespace velmora::os
