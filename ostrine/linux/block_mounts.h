/// The file systems that are mounted from block devices, as the kernel lists them. Pure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ostrine/linux/block.h"

namespace ostrine {

/// One file system, wherever and however often it is mounted.
struct MountedFileSystem {
  BlockNumber number;  ///< of its block device; major 0 for a kind that may lie on several (btrfs)
  std::string source;  ///< what was mounted, such as "/dev/mapper/home"
  std::vector<std::string> mount_points;  ///< those that no later mount covers
};

/// Reads /proc/self/mountinfo. File systems without a block device are left out, and so are lines of another
/// form, and those whose every mount point is covered by a later mount at the same place.
std::vector<MountedFileSystem> ParseMounts(std::string_view mountinfo);

/// `text` with the kernel's octal escapes ("\040") read; others stay as they are.
std::string UnescapeMountText(std::string_view text);

}  // namespace ostrine
