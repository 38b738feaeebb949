/// Where the firmware's command method stands. No class for it is common to all machines: a maker whose
/// firmware has such a method maps it to these names (docs/firmware-methods.md), and only here are they told.
#pragma once

namespace ostrine::firmware_method {

inline constexpr wchar_t kClass[] = L"VelmoraFirmware";  ///< in "ROOT\WMI"; its first instance is asked
inline constexpr wchar_t kMethod[] = L"Evaluate";
inline constexpr wchar_t kInput[] = L"InData";    ///< the command word, uint64
inline constexpr wchar_t kOutput[] = L"OutData";  ///< the reply, uint8 array

/// What is read for temperatures on machines without that class.
inline constexpr wchar_t kThermalZones[] = L"MSAcpi_ThermalZoneTemperature";
inline constexpr wchar_t kZoneTemperature[] = L"CurrentTemperature";  ///< tenths of a kelvin, uint32

}  // namespace ostrine::firmware_method
