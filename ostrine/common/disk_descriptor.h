/// What disks and the storage system say about themselves in bytes. Pure readers over bytes that they neither
/// own nor trust: every offset and length is checked against the bytes that are there.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ostrine {

/// Texts of a disk, clean; empty where it states none.
struct DiskIdentity {
  std::string vendor;
  std::string model;
  std::string serial;
  std::string firmware;

  bool operator==(const DiskIdentity&) const = default;
};

/// What an ATA disk answers to IDENTIFY DEVICE: 512 bytes, whose texts have the two characters of each 16-bit
/// word the wrong way round. Nothing for fewer bytes.
std::optional<DiskIdentity> ParseAtaIdentity(std::span<const std::uint8_t> data);

/// The same out of the SCSI page 0x89, in which a SATA disk's translator passes it on. The plain SCSI texts
/// are cut: 16 characters of the model and 4 of the firmware's revision.
std::optional<DiskIdentity> ParseAtaInformationPage(std::span<const std::uint8_t> page);

/// The serial number in the SCSI page 0x80; empty when the disk states none, nothing when that is no such
/// page.
std::optional<std::string> ParseSerialNumberPage(std::span<const std::uint8_t> page);

/// Windows's STORAGE_DEVICE_DESCRIPTOR.
struct StorageDescriptor {
  std::uint8_t device_type = 0;  ///< SCSI's peripheral type: 0 disk, 5 optical drive
  bool has_removable_medium = false;
  std::uint32_t bus_type = 0;
  DiskIdentity identity;
};

/// Nothing when the fixed part is not there in full. A text whose offset points nowhere is empty.
std::optional<StorageDescriptor> ParseStorageDescriptor(std::span<const std::uint8_t> descriptor);

/// A serial number as the storage system states it, made readable. Older Windows gives that of an ATA disk as
/// the field itself in hexadecimal: exactly 40 digits for 20 characters, two of each word the wrong way
/// round. So text of 40 hexadecimal digits that stand for 20 printable characters is decoded and turned; any
/// other text is only cleaned. (Text that is turned but not coded cannot be told from text that is not, and
/// stays as it is.)
std::string ReadableSerial(std::string_view text);

/// One piece of a volume: on which disk it lies, and its length in bytes.
struct VolumeExtent {
  std::uint32_t disk = 0;
  std::uint64_t length = 0;

  bool operator==(const VolumeExtent&) const = default;
};

/// Windows's VOLUME_DISK_EXTENTS: as many extents as it counts and as the bytes hold. One of negative length
/// is left out.
std::vector<VolumeExtent> ParseVolumeExtents(std::span<const std::uint8_t> extents);

}  // namespace ostrine
