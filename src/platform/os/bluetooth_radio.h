/// What Velmora requires of the Bluetooth interface: radios of this machine and remote devices around it.
/// Radio handles are closed with CloseHandle, find handles with their own call.
#pragma once

#include <cstdint>

#include "platform/os/handle.h"

namespace velmora::os {

/// BLUETOOTH_FIND_RADIO_PARAMS, 4 bytes.
struct BluetoothFindRadioParameters {
  std::uint32_t size;
};

/// BLUETOOTH_RADIO_INFO, 520 bytes.
struct BluetoothRadioInfo {
  std::uint32_t size;
  std::uint32_t padding;
  std::uint64_t address;
  char16_t name[248];
  std::uint32_t class_of_device;
  std::uint16_t lmp_subversion;
  std::uint16_t manufacturer;
};
static_assert(sizeof(BluetoothRadioInfo) == 520);

/// BLUETOOTH_DEVICE_SEARCH_PARAMS, 40 bytes.
struct BluetoothSearchParameters {
  std::uint32_t size;
  std::int32_t return_authenticated;
  std::int32_t return_remembered;
  std::int32_t return_unknown;
  std::int32_t return_connected;
  std::int32_t issue_inquiry;
  std::uint8_t timeout_multiplier;  ///< length of the inquiry in units of 1.28 seconds
  std::uint8_t padding[7];
  Handle radio;
};
static_assert(sizeof(void*) != 8 || sizeof(BluetoothSearchParameters) == 40);

/// BLUETOOTH_DEVICE_INFO, 560 bytes.
struct BluetoothDeviceInfo {
  std::uint32_t size;
  std::uint32_t padding;
  std::uint64_t address;
  std::uint32_t class_of_device;
  std::int32_t connected;
  std::int32_t remembered;
  std::int32_t authenticated;
  std::uint16_t last_seen[8];
  std::uint16_t last_used[8];
  char16_t name[248];
};
static_assert(sizeof(BluetoothDeviceInfo) == 560);

/// Finds the first radio that is switched on and opens it as `radio`. Null, with the last error, when there
/// is none; `radio` is then left as it was, unless the system opened one all the same.
Handle BluetoothFindFirstRadio(const BluetoothFindRadioParameters& parameters, Handle& radio);
bool BluetoothFindRadioClose(Handle find);

/// Fills `info`, whose size field is set, with facts about `radio`; 0 on success, else the error.
std::uint32_t BluetoothGetRadioInfo(Handle radio, BluetoothRadioInfo& info);

/// Begins to list the remote devices that `parameters` selects and fills `info`, whose size field is set,
/// with the first. Blocks for the length of the inquiry. Null, with the last error, when there is none.
Handle BluetoothFindFirstDevice(const BluetoothSearchParameters& parameters, BluetoothDeviceInfo& info);
bool BluetoothFindDeviceClose(Handle find);

}  // namespace velmora::os
