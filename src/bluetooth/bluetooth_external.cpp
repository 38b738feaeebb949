/// The remote devices.
#include "bluetooth/device_questions.h"
#include "bluetooth/remote_device.h"
#include "platform/guard.h"
#include "platform/logging.h"
#include "velmora/bluetooth.h"

using velmora::Answer;
using velmora::LogDebug;
using velmora::Within;

namespace bluetooth = velmora::bluetooth;

namespace {

/// False when memory runs out.
bool Append(std::vector<std::wstring>& list, const std::wstring& text) {
  return Answer(false, [&] {
    list.push_back(text);
    return true;
  });
}

}  // namespace

std::vector<std::wstring> CBluetooth::GetExternalDeviceHardID() {
  constexpr Within kHere("CBluetooth::GetExternalDeviceHardID");
  std::vector<std::wstring> remotes;
  for (const std::wstring& id : bluetooth::HardwareIds()) {
    LogDebug(
        [&](auto& line) { line << "CBluetooth::GetExternalDeviceHardID: vecHardwareID=" << id << kHere; });
    if (bluetooth::IsRemote(id) && !Append(remotes, id)) return {};
  }
  return remotes;
}

// The label of the two getters is neither's name, and that of the mice is the whole list's, with no brackets
// round the name at its end: support tools know the lines so.
std::wstring CBluetooth::GetExternalDeviceNameByHardID(const std::wstring& hardware_id) {
  std::wstring name;
  if (!hardware_id.empty()) name = bluetooth::TextOf(hardware_id, PROP_DEVICE_NAME);
  LogDebug([&](auto& line) {
    line << "CBluetooth::GetExternalDeviceDescription: strHardID=" << hardware_id << ", strDesc=" << name
         << Within("CBluetooth::GetExternalDeviceNameByHardID");
  });
  return name;
}

std::wstring CBluetooth::GetExternalDeviceTypeByHardId(const std::wstring& hardware_id) {
  std::wstring type;
  if (!hardware_id.empty()) type = bluetooth::TextOf(hardware_id, PROP_DEVICE_TYPE);
  LogDebug([&](auto& line) {
    line << "CBluetooth::GetExternalDeviceDescription: strHardID=" << hardware_id
         << ", strDeviceType=" << type << Within("CBluetooth::GetExternalDeviceTypeByHardId");
  });
  return type;
}

std::wstring CBluetooth::GetExternalDeviceAddressByHardId(const std::wstring& hardware_id) {
  return Answer(std::wstring(), [&] { return std::wstring(bluetooth::AddressIn(hardware_id)); });
}

std::wstring CBluetooth::GetExternalDeviceManufacturer() { return {}; }

std::vector<std::wstring> CBluetooth::GetExternalBlteMouseHardID() {
  std::vector<std::wstring> mice;
  for (const std::wstring& id : bluetooth::HardwareIds()) {
    const std::wstring type = GetExternalDeviceTypeByHardId(id);
    LogDebug([&](auto& line) {
      line << "CBluetooth::GetExternalDeviceHardID: vecHardwareID=" << id << ", Type=" << type
           << "CBluetooth::GetExternalBlteMouseHardID";
    });
    const bool is_mouse = bluetooth::IsLowEnergy(id) && bluetooth::SaysMouse(type);
    if (is_mouse && !Append(mice, id)) return {};
  }
  return mice;
}
