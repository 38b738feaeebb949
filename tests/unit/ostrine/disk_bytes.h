/// What disks and the storage system say in bytes, as the tests make it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrine::test {

using DiskBytes = std::vector<std::uint8_t>;

inline void PutLittle(DiskBytes& bytes, std::size_t offset, std::uint64_t value, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) bytes.at(offset + i) = static_cast<std::uint8_t>(value >> (8 * i));
}

/// An ATA text field: padded with blanks, the two characters of each word the wrong way round.
inline void PutAtaText(DiskBytes& bytes, std::size_t offset, std::string text, std::size_t length) {
  text.resize(length, ' ');
  for (std::size_t i = 0; i + 1 < length; i += 2) {
    bytes.at(offset + i) = static_cast<std::uint8_t>(text[i + 1]);
    bytes.at(offset + i + 1) = static_cast<std::uint8_t>(text[i]);
  }
}

inline DiskBytes AtaIdentityBytes(std::string_view model, std::string_view serial,
                                  std::string_view firmware) {
  DiskBytes bytes(512);
  PutAtaText(bytes, 20, std::string(serial), 20);
  PutAtaText(bytes, 46, std::string(firmware), 8);
  PutAtaText(bytes, 54, std::string(model), 40);
  return bytes;
}

/// A SCSI page of vital product data around `payload`.
inline DiskBytes VitalPage(std::uint8_t number, const DiskBytes& payload) {
  DiskBytes page{0, number, static_cast<std::uint8_t>(payload.size() >> 8),
                 static_cast<std::uint8_t>(payload.size() & 0xFF)};
  page.insert(page.end(), payload.begin(), payload.end());
  return page;
}

inline DiskBytes AtaInformationPage(std::string_view model, std::string_view serial,
                                    std::string_view firmware) {
  DiskBytes payload(56);
  const DiskBytes identity = AtaIdentityBytes(model, serial, firmware);
  payload.insert(payload.end(), identity.begin(), identity.end());
  return VitalPage(0x89, payload);
}

inline DiskBytes SerialNumberPage(std::string_view serial) {
  return VitalPage(0x80, DiskBytes(serial.begin(), serial.end()));
}

/// A STORAGE_DEVICE_DESCRIPTOR whose texts stand one after another behind the fixed part.
struct DescriptorBytes {
  std::string vendor;
  std::string model;
  std::string firmware;
  std::string serial;
  std::uint8_t device_type = 0;
  bool is_removable = false;
  std::uint32_t bus_type = 0;

  DiskBytes Build() const {
    DiskBytes bytes(40);
    bytes[8] = device_type;
    bytes[10] = is_removable ? 1 : 0;
    PutLittle(bytes, 28, bus_type, 4);
    const auto add = [&](std::size_t offset_at, const std::string& text) {
      if (text.empty()) return;
      PutLittle(bytes, offset_at, bytes.size(), 4);
      bytes.insert(bytes.end(), text.begin(), text.end());
      bytes.push_back(0);
    };
    add(12, vendor);
    add(16, model);
    add(20, firmware);
    add(24, serial);
    PutLittle(bytes, 0, 40, 4);
    PutLittle(bytes, 4, bytes.size(), 4);
    return bytes;
  }
};

}  // namespace ostrine::test
