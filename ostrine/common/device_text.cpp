#include "ostrine/common/device_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

namespace ostrine {
namespace {

struct KnownFirmware {
  std::string_view start;
  std::string_view name;
};

constexpr KnownFirmware kFirmwareNames[] = {
    {"PNP0000", "Programmable interrupt controller"},
    {"PNP0100", "System timer"},
    {"PNP0103", "High precision event timer"},
    {"PNP0200", "Direct memory access controller"},
    {"PNP030", "Standard PS/2 Keyboard"},
    {"PNP031", "Standard PS/2 Keyboard"},
    {"PNP032", "Standard PS/2 Keyboard"},
    {"PNP034", "Standard PS/2 Keyboard"},
    {"PNP0501", "Communications Port"},
    {"PNP0800", "System speaker"},
    {"PNP0A03", "PCI Bus"},
    {"PNP0A05", "ACPI Module Device"},
    {"PNP0A06", "ACPI Module Device"},
    {"PNP0A08", "PCI Express Root Complex"},
    {"PNP0B00", "System CMOS/real time clock"},
    {"PNP0C01", "System board"},
    {"PNP0C02", "Motherboard resources"},
    {"PNP0C04", "Numeric data processor"},
    {"PNP0C08", "ACPI System"},
    {"PNP0C09", "ACPI-Compliant Embedded Controller"},
    {"PNP0C0A", "ACPI-Compliant Control Method Battery"},
    {"PNP0C0B", "ACPI Fan"},
    {"PNP0C0C", "ACPI Power Button"},
    {"PNP0C0D", "ACPI Lid"},
    {"PNP0C0E", "ACPI Sleep Button"},
    {"PNP0C0F", "PCI interrupt link"},
    {"PNP0C14", "Windows Management Interface for ACPI"},
    {"PNP0C50", "I2C HID Device"},
    {"PNP0F", "PS/2 Compatible Mouse"},
    {"ACPI0003", "AC Adapter"},
    {"ACPI0007", "Processor"},
    {"ACPI000E", "ACPI Wake Alarm"},
    {"ACPI0C50", "I2C HID Device"},
    {"INT0E0C", "Software Guard Extensions Device"},
    {"INT33A1", "Power Engine Plug-in"},
    {"MSFT0101", "Trusted Platform Module 2.0"},
};

constexpr std::string_view kDriverless[] = {
    "PNP00",   "PNP01",   "PNP02",   "PNP0800", "PNP0A",    "PNP0B",    "PNP0C01",  "PNP0C02",  "PNP0C04",
    "PNP0C08", "PNP0C0F", "PNP0C33", "PNP0C80", "ACPI0004", "ACPI0006", "ACPI0010", "ACPI0013",
};

struct PciClass {
  std::uint32_t code;
  std::uint32_t mask;
  std::string_view name;
};

constexpr PciClass kPciClasses[] = {
    {0x010000, 0xFF0000, "Storage controller"},
    {0x020000, 0xFF0000, "Network controller"},
    {0x030000, 0xFF0000, "Display adapter"},
    {0x040000, 0xFF0000, "Multimedia controller"},
    {0x050000, 0xFF0000, "Memory controller"},
    {0x060000, 0xFF0000, "Bridge"},
    {0x070000, 0xFF0000, "Communication controller"},
    {0x080000, 0xFF0000, "System peripheral"},
    {0x0C0300, 0xFFFF00, "USB controller"},
    {0x0C0500, 0xFFFF00, "SMBus controller"},
    {0x0C0000, 0xFF0000, "Serial bus controller"},
    {0x0D0000, 0xFF0000, "Wireless controller"},
    {0x110000, 0xFF0000, "Signal processing controller"},
};

/// Beginnings of the firmware IDs of fingerprint readers on a serial bus.
constexpr std::string_view kFingerprintStarts[] = {"FPC",    "FPNT",   "GDIX51", "GXFP",
                                                   "ELAN70", "SYNA80", "EGIS",   "CDFP"};

bool StartsLike(const std::vector<std::string>& ids, std::string_view start) {
  return std::any_of(ids.begin(), ids.end(), [&](const std::string& id) { return id.starts_with(start); });
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::string_view FirmwareDeviceName(const std::vector<std::string>& ids) noexcept {
  for (const std::string& id : ids) {
    for (const KnownFirmware& known : kFirmwareNames) {
      if (id.starts_with(known.start)) return known.name;
    }
  }
  return {};
}

bool NeedsNoDriver(const std::vector<std::string>& ids) noexcept {
  return std::any_of(std::begin(kDriverless), std::end(kDriverless),
                     [&](std::string_view start) { return StartsLike(ids, start); });
}

bool IsDrivenByPrograms(std::uint8_t base_class) noexcept {
  constexpr std::uint8_t kStillImage = 0x06;
  constexpr std::uint8_t kSmartCard = 0x0B;
  constexpr std::uint8_t kApplicationSpecific = 0xFE;
  return base_class == kStillImage || base_class == kSmartCard || base_class == kApplicationSpecific;
}

std::string_view PciClassName(std::uint32_t class_code) noexcept {
  const auto* const found =
      std::find_if(std::begin(kPciClasses), std::end(kPciClasses),
                   [&](const PciClass& known) { return (class_code & known.mask) == known.code; });
  return found == std::end(kPciClasses) ? "PCI device" : found->name;
}

std::string_view UsbClassName(std::uint8_t base_class) noexcept {
  switch (base_class) {
    case 0x01:
      return "USB audio device";
    case 0x03:
      return "USB input device";
    case 0x07:
      return "USB printer";
    case 0x08:
      return "USB mass storage device";
    case 0x09:
      return "USB hub";
    case 0x0E:
      return "USB video device";
    case 0xE0:
      return "USB wireless device";
    default:
      return "USB device";
  }
}

bool IsFingerprintReader(std::string_view names, const std::vector<std::string>& firmware_ids) noexcept {
  constexpr std::string_view kWord = "fingerprint";
  const auto same = [](char in_name, char in_word) {
    return in_name == in_word || (in_name >= 'A' && in_name <= 'Z' && in_name - 'A' + 'a' == in_word);
  };
  if (std::search(names.begin(), names.end(), kWord.begin(), kWord.end(), same) != names.end()) return true;
  return std::any_of(std::begin(kFingerprintStarts), std::end(kFingerprintStarts),
                     [&](std::string_view start) { return StartsLike(firmware_ids, start); });
}

std::string DottedVersion(std::string_view release) {
  constexpr int kParts = 4;
  std::string version;
  for (int part = 0; part < kParts; ++part) {
    const auto end = std::find_if_not(release.begin(), release.end(), IsDigit);
    const auto digits = static_cast<std::size_t>(end - release.begin());
    if (digits == 0) break;
    if (part > 0) version.push_back('.');
    version.append(release.substr(0, digits));
    release.remove_prefix(digits);
    if (release.empty() || (release.front() != '.' && release.front() != '-')) break;
    release.remove_prefix(1);
  }
  return version;
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

}  // namespace ostrine
