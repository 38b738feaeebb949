/// Free space of the file systems on a disk, below a root folder.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ostrine/linux/block_mounts.h"

namespace ostrine {

/// Free bytes of the file system that is seen at `mount_point`; nothing when that is not the one on block
/// device `number` (where its major number is not 0).
using FreeSpace =
    std::function<std::optional<std::uint64_t>(const Path& mount_point, const BlockNumber& number)>;

/// What the kernel knows about the mounted file system, without going to its disk.
std::optional<std::uint64_t> MountedFreeSpace(const Path& mount_point, const BlockNumber& number);

/// Names of the disks on which a file system lies: through partitions, encryption, volumes and RAID, each
/// disk once. A loop in what the kernel lists is walked once.
std::vector<std::string> DisksUnder(const Path& root, const MountedFileSystem& system);

/// Free bytes on the disk of this handle. Each file system counts once, and one on several disks is shared
/// out among them by their sizes. 0 for a disk from which nothing is mounted.
std::optional<std::uint64_t> FreeBytesOnDisk(const Path& root, std::uint64_t handle,
                                             const FreeSpace& free_space);

}  // namespace ostrine
