/// Free space of the volumes on a disk.
#pragma once

#include <cstdint>

namespace ostrine {

/// Free bytes on the physical drive: of each of its volumes that has a file system, and of one that lies on
/// several drives its share by the lengths of its pieces. 0 for a drive without a volume.
std::uint64_t FreeBytesOnDrive(std::uint32_t drive);

}  // namespace ostrine
