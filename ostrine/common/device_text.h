/// Texts about devices that no database of the machine holds. Pure functions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrine {

/// What a firmware-described device is, by the first of its IDs that is generally known ("PNP0303" for a
/// keyboard); empty when none is. IDs are in capitals.
std::string_view FirmwareDeviceName(const std::vector<std::string>& ids) noexcept;

/// Whether a firmware-described device with these IDs works without a driver of its own: parts of the board
/// that the kernel itself serves (interrupt controller, timers, bus roots), or that only reserve addresses.
bool NeedsNoDriver(const std::vector<std::string>& ids) noexcept;

/// Whether USB functions of this base class are driven by programs, by design, and have no driver in the
/// kernel: cameras and players that are browsed, smart-card readers, firmware updates.
bool IsDrivenByPrograms(std::uint8_t base_class) noexcept;

/// What a PCI function is, by its class code (0x028000: "Network controller").
std::string_view PciClassName(std::uint32_t class_code) noexcept;

/// What a USB function is, by its base class.
std::string_view UsbClassName(std::uint8_t base_class) noexcept;

/// Whether the device is a fingerprint reader: by its name in the database or its own, or, for one that says
/// nothing, by the beginnings of firmware IDs that such readers have. `names` may be empty.
bool IsFingerprintReader(std::string_view names, const std::vector<std::string>& firmware_ids) noexcept;

/// A version of dotted numbers, at most four, from the beginning of a kernel release: "6.1.0-18-amd64" is
/// 6.1.0.18. Empty if `release` does not begin with a number.
std::string DottedVersion(std::string_view release);

/// `text` in lower case without regard to the locale: ASCII letters only.
std::string LowerCase(std::string_view text);

}  // namespace ostrine
