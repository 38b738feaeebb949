#pragma once

#include <cstdint>

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
