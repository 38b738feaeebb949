#pragma once

#include <string>
#include <vector>

#include "velmora/export.h"

/// The fingerprint reader, and devices of the platform: serial IO controllers, the management engine's
/// interface (MEI) and the device of the software guard extensions (SGX).
///
/// The fingerprint reader is the first device of the setup class Biometric whose hardware ID begins with
/// "ACPI"; a reader on another bus, such as USB, is not looked for. The others are found in the setup class
/// System by their descriptions, in which the letter case does not count.
///
/// Source: the system's device information. Every call looks the device up again and nothing is kept.
/// Failure: a text or list is empty; a problem code is what the device information gives for a device that
/// does not exist, 45 as a rule and never 0, or 0xFFFFFFFF when memory runs out. Nothing throws. Log: where
/// an operation says so. Threads: an object is used by one thread at a time; separate objects are
/// independent. Copies: an object holds nothing, so a copy is simply another object.
class VELMORA_API CBiometric {
 public:
  CBiometric();
  ~CBiometric();

  CBiometric(const CBiometric&) = default;
  CBiometric& operator=(const CBiometric&) = default;

  /// Hardware ID of the fingerprint reader, such as "ACPI\VEN_GXFP&DEV_5187".
  std::wstring GetHardwareID();

  /// Name of the fingerprint reader.
  std::wstring GetDeviceName();

  /// Manufacturer of the fingerprint reader.
  std::wstring GetManufacturer();

  /// Version of the fingerprint reader's driver.
  std::wstring GetDriverVersion();

  /// Problem code of the fingerprint reader: 0 when it works.
  unsigned long GetErrorCode();

  /// Descriptions of the serial IO controllers, in the system's order.
  std::vector<std::wstring> GetSerialIODesc();

  /// Version of the driver of the System device with this description. Writes a debug line.
  std::wstring GetSerialIODriverVersionByDesc(std::wstring description);

  /// Problem code of the System device with this description: 0 when it works. Writes a debug line.
  unsigned long GetSystemDeviceErrorCodeByDesc(std::wstring description);

  /// The same. In spite of the operation's name `hardware_id` is taken for a description: a hardware ID finds
  /// a device only where some device has it as its description. Writes a debug line.
  unsigned long GetSystemDeviceErrorCodeByHardId(std::wstring hardware_id);

  /// Description of the first interface to the management engine. Writes a debug line.
  std::wstring GetMEIDesc();

  /// Hardware ID of the first device of the software guard extensions, such as "ACPI\INT0E0C". Writes a debug
  /// line.
  std::wstring GetSGXHardId();
};
