#pragma once

#include <cstdint>
#include <string>

#include "velmora/export.h"

/// Kinds of devices, by which a host names the one that it means. The gaps in the numbering are part of the
/// interface; every operation treats them, and any other number, as a kind that it does not support.
enum stDEVICE_DRIVER_TYPE : std::uint32_t {
  emDEVICE_WIRELESS = 0,     ///< wireless network card (Wi-Fi); setup class Net
  emDEVICE_BLUETOOTH = 1,    ///< Bluetooth radio; setup class Bluetooth
  emDEVICE_RESERVED2 = 2,    ///< no device
  emDEVICE_FINGERPRINT = 3,  ///< fingerprint reader; setup class Biometric
  emDEVICE_RESERVED4 = 4,    ///< no device
  emDEVICE_AUDIO = 5,        ///< audio device; setup class Media
  emDEVICE_KEYBOARD = 6,     ///< built-in keyboard; setup class Keyboard
  emDEVICE_DISPLAY = 7,      ///< display adapter; setup class Display
  emDEVICE_RESERVED8 = 8,    ///< no device
  emDEVICE_USB = 9,          ///< USB host controllers and hubs; setup class USB
};

/// Version of the driver of the device that `kind` names, such as "22.80.1.1".
///
/// Which device is meant where there are several, and what differs from kind to kind (all part of the
/// interface):
/// - emDEVICE_WIRELESS: the one that CNetworkCard gives for NETWORK_CARD_WIRELESS.
/// - emDEVICE_BLUETOOTH: the last of the class whose hardware ID begins with "USB" or "QCA_SHB".
/// - emDEVICE_FINGERPRINT: the one that CBiometric gives.
/// - emDEVICE_AUDIO: the one that CAudioCard gives.
/// - emDEVICE_KEYBOARD: the first whose hardware ID begins with "ACPI", of which the hardware ID itself is
///   returned, such as "ACPI\LEN0071", and never a version.
/// - emDEVICE_DISPLAY: of the adapters whose hardware ID begins with "PCI" the only one; of exactly two the
///   first when WMI calls the converter of the adapter with the first one's description "Internal", else the
///   second; of more than two none.
/// Letter case counts in these beginnings.
///
/// Source: the classes named above, the system's device information, and WMI ("ROOT\CIMV2"). Failure: the
/// empty text, as for a device that is not there, for a kind that no device belongs to, emDEVICE_USB and
/// every greater number. Nothing throws. Log: nothing but what those classes log.
VELMORA_API std::wstring GetDeviceDriverVersion(stDEVICE_DRIVER_TYPE kind);
