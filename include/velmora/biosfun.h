#pragma once

#include "velmora/devicekind.h"
#include "velmora/export.h"

/// Whether the firmware (BIOS) has a built-in device switched on. A device that is switched off there is not
/// seen by the operating system at all, so this tells a disabled device from one that is missing or faulty.
///
/// Source: the firmware's WMI method in "ROOT\WMI"; on Linux the kernel's firmware attributes
/// (docs/firmware-methods.md). Only on machines with an Intel or AMD processor. Every call asks again,
/// nothing is kept. Failure: false; nothing throws. The steps are logged at debug level, except that an
/// unsupported processor is not. Threads: an object is used by one thread at a time; separate objects are
/// independent. Copies: an object holds nothing, so a copy is simply another object.
class VELMORA_API CBiosFun {
 public:
  CBiosFun();
  ~CBiosFun();

  /// Reads the switch of the wireless card, the Bluetooth radio, the fingerprint reader or the audio device
  /// into `on`. False when it cannot be read: another kind of device, another processor, no such switch; `on`
  /// is true then, whatever it was before.
  bool GetBiosSwitch(bool& on, stDEVICE_DRIVER_TYPE kind);

 private:
  bool GetItemCodeByDeviceType(unsigned char& code, stDEVICE_DRIVER_TYPE kind);
};
