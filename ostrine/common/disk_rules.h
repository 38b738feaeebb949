/// Of which kind a disk is, how its texts read, and the arithmetic of capacities. Pure; the same on every
/// system.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ostrine {

enum class DiskMedia { kFixed, kRemovable, kOptical, kImage };

/// What the system says about a disk, as far as its kind depends on it.
struct DiskTraits {
  bool is_optical = false;
  bool is_image = false;              ///< a file that the system shows as a disk
  bool is_memory_card = false;        ///< not the same thing soldered in
  bool has_removable_medium = false;  ///< the medium can leave the drive
  bool is_on_usb = false;             ///< the drive itself can leave the machine
};

/// A disk is fixed unless something says otherwise: the disk of a virtual machine is one too.
DiskMedia ChooseDiskMedia(const DiskTraits& traits) noexcept;

/// The text for a kind of media: "Fixed hard disk media" for a fixed disk, and only for such.
std::string_view DiskMediaText(DiskMedia media) noexcept;

/// `text` up to its first zero, without what is no printable ASCII character and without blanks at its ends.
/// Drives have their texts in fields of fixed width, padded with blanks, zeros or worse.
std::string CleanDiskText(std::string_view text);

/// Name of the disk: the model, with the vendor before it unless the model begins with it, or the "vendor"
/// only names the bus ("ATA", "NVMe") or is a number ("0x1af4"). Empty without a model.
std::string DiskCaption(std::string_view vendor, std::string_view model);

/// Bytes of so many sectors of 512 bytes, the unit in which Linux counts whatever the disk's own sectors
/// have; nothing when they are more than 64 bits hold.
std::optional<std::uint64_t> BytesOfSectors(std::uint64_t sectors) noexcept;

/// Whole decimal megabytes, in which makers count.
std::uint64_t WholeMegabytes(std::uint64_t bytes) noexcept;

/// The part of `bytes` that falls to one of several disks which a file system lies on, as `part` of its
/// `whole` does: over all disks together a file system's free space counts once. Never more than `bytes`.
std::uint64_t ShareOf(std::uint64_t bytes, std::uint64_t part, std::uint64_t whole) noexcept;

}  // namespace ostrine
