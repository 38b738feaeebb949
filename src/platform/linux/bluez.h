/// The adapters and remote devices that the Bluetooth service knows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/system_bus.h"

namespace velmora::os {

struct BluetoothAdapter {
  std::string path;
  std::string address;
  std::string alias;
  std::uint32_t class_of_device = 0;
  std::uint16_t manufacturer = 0;
  bool is_powered = false;
};

struct BluetoothDevice {
  std::string path;
  std::string adapter;  ///< path of the adapter through which it was met
  std::string address;
  std::string address_type;  ///< "random" for what only low energy has
  std::string alias;
  std::optional<std::uint32_t> class_of_device;  ///< what only classic devices have
  bool is_paired = false;
  bool is_trusted = false;
  bool is_connected = false;
  bool is_in_sight = false;  ///< an inquiry that still runs has met it
};

struct BluetoothObjects {
  std::vector<BluetoothAdapter> adapters;  ///< in the order of their numbers
  std::vector<BluetoothDevice> devices;    ///< in the order of their paths
};

/// What the service knows now; nothing when it does not run or does not answer. It is not started for the
/// question. More devices than 4096 are not looked at.
std::optional<BluetoothObjects> ReadBluetoothObjects(SystemBus* bus);

/// Has the adapter look for classic devices around it, until it is stopped or the connection ends; false when
/// it refuses.
bool StartInquiry(SystemBus* bus, const std::string& adapter);
void StopInquiry(SystemBus* bus, const std::string& adapter) noexcept;

/// The number that "AA:BB:CC:DD:EE:FF" stands for, 0xAABBCCDDEEFF; nothing for any other text. Pure.
std::optional<std::uint64_t> ParseBluetoothAddress(std::string_view text) noexcept;

}  // namespace velmora::os
