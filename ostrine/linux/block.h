/// The disks as the kernel lists them below a root folder, and what it remembers of what they said when they
/// were found. Only attributes of sysfs are read: no device node is opened, and no disk is asked or woken.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ostrine/common/disk.h"
#include "ostrine/linux/sysfs.h"

namespace ostrine {

/// A block device's number, "major:minor" in sysfs.
struct BlockNumber {
  std::uint32_t major = 0;
  std::uint32_t minor = 0;

  bool operator==(const BlockNumber&) const = default;
};

/// Nothing unless `text` is two decimal numbers with a colon between them.
std::optional<BlockNumber> ParseBlockNumber(std::string_view text);

/// Whether a block device of this name may be a disk. The kernel's own devices never are (loop, RAM disks,
/// device mapper, RAID, network block devices), nor are the parts of an eMMC disk that it shows beside the
/// disk, nor the single paths of an NVMe disk that has several.
bool MayBeDisk(std::string_view name);

/// Names of the disks, optical and removable ones included, in the order of their numbers: natural order. A
/// disk is a block device behind which a real or a virtual machine's device stands.
std::vector<std::string> DiskNames(const Path& root);

/// The handle of disk `number` is its block number with a mark, so that no other disk answers in its place
/// when disks come and go.
std::optional<std::uint64_t> OpenBlockDisk(const Path& root, std::uint32_t number);

std::optional<std::string> ReadBlockText(const Path& root, std::uint64_t handle, DiskFact fact);

/// kTotal or kSolidState.
std::optional<std::uint64_t> ReadBlockNumber(const Path& root, std::uint64_t handle, DiskFact fact);

/// Where a block device stands in sysfs: the name is that of its folder, the parent that of the folder above,
/// which for a partition is its disk. Empty names when there is no such device.
struct BlockPlace {
  std::string name;
  std::string parent;
  bool is_on_usb = false;
  bool is_on_virtio = false;
};
BlockPlace PlaceOf(const Path& root, const BlockNumber& number);
BlockPlace PlaceOf(const Path& root, std::string_view name);

/// The block number in a handle.
BlockNumber NumberOf(std::uint64_t handle);

/// Bytes of the block device of this name; 0 when it does not say.
std::uint64_t BlockSize(const Path& root, std::string_view name);

}  // namespace ostrine
