#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// A Bluetooth radio of this machine that is switched on.
struct BluetoothRadio {
  std::uint64_t address = 0;
  std::string name;
  std::uint32_t class_of_device = 0;
  std::uint32_t manufacturer = 0;
  Error info_error = 0;

  bool operator==(const BluetoothRadio&) const = default;
};

template <class Archive>
void Fields(Archive& archive, BluetoothRadio& radio) {
  archive.Field("address", radio.address);
  archive.Field("name", radio.name);
  archive.Field("class_of_device", radio.class_of_device);
  archive.Field("manufacturer", radio.manufacturer);
  archive.Field("info_error", radio.info_error);
}

/// A remote device. One that is neither connected, remembered nor authenticated is found by an inquiry only.
struct BluetoothRemote {
  std::uint64_t address = 0;
  std::string name;
  std::uint32_t class_of_device = 0;
  bool connected = false;
  bool remembered = false;
  bool authenticated = false;

  bool operator==(const BluetoothRemote&) const = default;
};

template <class Archive>
void Fields(Archive& archive, BluetoothRemote& remote) {
  archive.Field("address", remote.address);
  archive.Field("name", remote.name);
  archive.Field("class_of_device", remote.class_of_device);
  archive.Field("connected", remote.connected);
  archive.Field("remembered", remote.remembered);
  archive.Field("authenticated", remote.authenticated);
}

/// The radios and what is around them. File key `bluetooth`.
struct Bluetooth {
  std::vector<BluetoothRadio> radios;
  std::vector<BluetoothRemote> remote_devices;

  bool operator==(const Bluetooth&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Bluetooth& bluetooth) {
  archive.Field("radios", bluetooth.radios);
  archive.Field("remote_devices", bluetooth.remote_devices);
}

}  // namespace simulator
