#pragma once

#include <string>

#include "velmora/export.h"

/// Identity of the machine's baseboard (mainboard) and of its BIOS.
///
/// Source: the hardware-abstraction library, device class 4, which reads the firmware's SMBIOS tables. Every
/// call asks again and nothing is kept, so a firmware update shows on the next call.
/// Texts: exactly as the firmware holds them, without trimming or reformatting; at most 259 bytes are read.
/// What the system's narrow code page cannot express comes back as that code page's substitutes.
/// Failure: an empty string, also when the firmware holds an empty text; nothing throws, nothing is logged.
/// Threads: an object is used by one thread at a time; separate objects are independent.
/// Copies: an object holds nothing, so a copy is simply another object.
class VELMORA_API CBaseboard {
 public:
  /// Prepares the device class. An object whose class cannot be prepared answers empty strings.
  CBaseboard();
  ~CBaseboard();

  CBaseboard(const CBaseboard&) = default;
  CBaseboard& operator=(const CBaseboard&) = default;

  /// Product name of the baseboard, such as "20XW004AGE". SMBIOS type 2.
  std::wstring GetBaseboardProduct();

  /// Maker of the baseboard. SMBIOS type 2.
  std::wstring GetBaseboardManufacturer();

  /// Version of the baseboard. SMBIOS type 2.
  std::wstring GetBaseboardVersion();

  /// Serial number of the baseboard; on Linux the firmware shows it to root only. SMBIOS type 2.
  std::wstring GetBaseboardSerialNumber();

  /// Version of the BIOS, such as "N32ET75W (1.51 )". SMBIOS type 0.
  std::wstring GetBIOSVersion();

  /// Maker of the BIOS. SMBIOS type 0.
  std::wstring GetBIOSManufacturer();

  /// Release date of the BIOS as the firmware writes it, usually month/day/year such as "12/02/2021".
  /// SMBIOS type 0. (The spelling is part of the interface.)
  std::wstring GetBIOSReaseDate();
};
