#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/ostrine/guid.h"

/// Facts about a device that CDeviceInformention can be asked for.
enum enmDEVICE_PROPERTY : std::uint32_t {
  PROP_DESCRIPTION = 0,   ///< device description, the caption that WMI's video and network classes report too
  PROP_MANUFACTURER = 1,  ///< manufacturer
  PROP_DRIVER_VERSION = 2,  ///< version of the installed driver, dotted text
  PROP_HARDWARE_ID = 3,     ///< first hardware ID (looked up by description)
  PROP_DEVICE_TYPE = 5,     ///< setup class name; on Linux, over Bluetooth, the kind of device
  PROP_DEVICE_NAME = 6,     ///< name under which a device reached over Bluetooth presents itself
  PROP_DISPLAY_NAME = 7,    ///< friendly name; empty when the device has none
  PROP_INF = 8,             ///< name of the driver's INF file
  PROP_INSTANCE_ID = 9,     ///< device instance ID
  PROP_PROBLEM_CODE = 10,   ///< configuration-manager problem code; 0 means that the device works
};

#pragma GCC visibility push(default)

/// The devices that the system has enumerated, by setup class. Made on the stack for one lookup.
///
/// An implementation owes: only devices that are present; enumeration order as the system has it, the same in
/// every operation; nothing thrown for a device that is missing, but an empty text or list. Descriptions and
/// hardware IDs are compared without regard to letter case, as whole texts; the first device in order that
/// matches is meant, and any of a device's hardware IDs names it. An empty description or hardware ID names
/// no device.
class CDeviceInformention {
 public:
  /// Descriptions of the devices of the class, one entry a device (empty for one without).
  std::vector<std::wstring> GetDeviceDesc(GUID setup_class);

  /// The first, most specific hardware ID of each device of the class. A device without one has no entry.
  std::vector<std::wstring> GetDeviceHardwareID(GUID setup_class);

  /// A property, as text, of the device of the class that has this description; empty if there is none.
  std::wstring GetDeviceStrInfoByDesc(std::wstring description, GUID setup_class,
                                      enmDEVICE_PROPERTY property);

  /// The same for the device with this hardware ID.
  std::wstring GetDeviceStrInfoByHardwareID(std::wstring hardware_id, GUID setup_class,
                                            enmDEVICE_PROPERTY property);

  /// A numeric property (the problem code) of the device of the class that has this description. For a device
  /// that is not there the problem code is 45, the system's own number for that; any other property gives 0.
  unsigned long GetDeviceULONGInfoByDesc(std::wstring description, GUID setup_class,
                                         enmDEVICE_PROPERTY property);

  /// The same for the device with this hardware ID.
  unsigned long GetDeviceULONGInfoByHardwareID(std::wstring hardware_id, GUID setup_class,
                                               enmDEVICE_PROPERTY property);

  /// When the device's driver was last installed, in milliseconds since 1970-01-01 00:00 UTC; 0 when that is
  /// not known or there is no such device. (The spelling is part of the interface.)
  std::uint64_t GetLastIntallTime(std::wstring hardware_id, GUID setup_class);

  /// First hardware IDs of the devices, of all classes, that have no working driver.
  std::vector<std::wstring> GetUnknownDeviceHardID();

  /// Removes the device of the class with this hardware ID, so that a later rescan installs it afresh. 0 on
  /// success, else the system's error code (0xE000020B, no such device, when there is none).
  unsigned long UnstallDeviceByHardwareID(std::wstring hardware_id, GUID setup_class);
};

#pragma GCC visibility pop
