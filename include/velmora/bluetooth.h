#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "velmora/export.h"

/// The Bluetooth adapter, its lost and failing states, its repair, and the remote devices paired with it.
///
/// Source: the device-information service, setup classes Bluetooth and USB, and for IsFindBtDevice the
/// system's Bluetooth interface. Everything turns on the adapter's hardware ID: while no adapter stands in
/// the Bluetooth class it is empty, and the adapter counts as lost. A lost adapter is mostly still there, as
/// an unknown device or as a failing one of the USB class. Every call asks again and nothing is kept.
/// Failure: an empty text or list, 0, `false`, or what the operation says; nothing throws. Results and steps
/// are logged at debug level. Threads: an object is used by one thread at a time; separate objects are
/// independent. Copies: an object holds nothing, so a copy is simply another object.
class VELMORA_API CBluetooth {
 public:
  CBluetooth();
  ~CBluetooth();

  CBluetooth(const CBluetooth&) = default;
  CBluetooth& operator=(const CBluetooth&) = default;

  /// The first hardware ID of the Bluetooth class that begins with "USB" or "QCA_SHB", such as
  /// "USB\VID_8087&PID_0026&REV_0002". Empty while no adapter stands there.
  std::wstring GetHardwareID();

  /// The adapter's description, such as "Intel(R) Wireless Bluetooth(R)".
  std::wstring GetDeviceName();

  /// The adapter's maker.
  std::wstring GetManufacturer();

  /// Version of the adapter's driver.
  std::wstring GetDriverVersion();

  /// The adapter's problem code: 0 works, 22 disabled, anything else failing. 0xFFFFFFFF without an adapter.
  unsigned long GetDeviceErrorState();

  /// 1 when the adapter is lost, is no unknown device of its maker, and a device of the USB class fails; the
  /// problem code of the first that does goes to `error_code`. Otherwise 0, and 0 in `error_code`.
  int IsInUSBClassEx(unsigned long& error_code);

  /// The same without the code.
  int IsInUSBClass();

  /// 1 when the adapter is lost and stands among the unknown devices, otherwise 0. (The spelling is part of
  /// the interface.)
  int IsInUnKownClass();

  /// Whether there is a radio that is switched on and a classic remote device that it finds: what has low
  /// energy alone does not count. Only the first radio is asked. Blocks for an inquiry of about 2.6 seconds.
  bool IsFindBtDevice();

  /// Milliseconds since the last installation of the driver of the Bluetooth device `hardware_id`; 0 when
  /// that lies in the future. A time that is not known counts as 1970-01-01.
  std::uint64_t GetLastInstallTimeById(const std::wstring& hardware_id);

  /// Repairs an adapter that has become a failing device of the USB class: uninstalls the first device there
  /// that fails, and has the system look for hardware again. At most one device a call. Blocks for about 4
  /// seconds. 0 when an adapter stands in the Bluetooth class afterwards; 0xFFFFFFFF when no device fails;
  /// otherwise what uninstalling gave, which is 0 when that alone succeeded.
  unsigned long RepairInUSBDriver();

  /// Asks the radio's reset driver to switch the adapter off and on. `address` is read as hexadecimal
  /// digits up to the first other character, so "1A2B" is 0x1A2B and "00:1A" is 0; what is too large is
  /// 0xFFFFFFFF. `error` becomes 0 on success and for an empty address, which asks for nothing; otherwise the
  /// system's error number. On Linux the first adapter is reset, whatever the number.
  void RepairBtByReHard(std::string address, unsigned long& error);

  /// Hardware IDs of the remote devices, classic ("BTHENUM\Dev...") and low energy ("BTHLE\Dev..."), in the
  /// system's order.
  std::vector<std::wstring> GetExternalDeviceHardID();

  /// The name under which the remote device presents itself.
  std::wstring GetExternalDeviceNameByHardID(const std::wstring& hardware_id);

  /// What kind of device it is, such as "Mouse", as far as the system tells: Windows tells the setup class.
  std::wstring GetExternalDeviceTypeByHardId(const std::wstring& hardware_id);

  /// The device's address as its hardware ID has it: all after the first underscore.
  std::wstring GetExternalDeviceAddressByHardId(const std::wstring& hardware_id);

  /// Always empty: remote devices do not tell their maker.
  std::wstring GetExternalDeviceManufacturer();

  /// Hardware IDs of the low-energy devices whose type says "mouse" in either letter case. (The spelling is
  /// part of the interface.)
  std::vector<std::wstring> GetExternalBlteMouseHardID();
};

/// Name of the signed driver of the Bluetooth adapter on USB, as WMI has it; empty when it has none.
VELMORA_API std::wstring GetBlueToothDriverName();
