#include "ostrine/common/disk.h"

#include "ostrine/linux/block.h"
#include "ostrine/linux/block_space.h"
#include "ostrine/linux/system_root.h"

namespace ostrine {

std::uint32_t CountDisks() { return static_cast<std::uint32_t>(DiskNames(SystemRoot()).size()); }

std::optional<std::uint64_t> OpenDiskHandle(std::uint32_t number) {
  return OpenBlockDisk(SystemRoot(), number);
}

// A handle is a number, with nothing behind it to give back.
bool CloseDiskHandle(std::uint64_t /*handle*/) { return true; }

std::optional<std::string> ReadDiskText(std::uint64_t handle, DiskFact fact) {
  return ReadBlockText(SystemRoot(), handle, fact);
}

std::optional<std::uint64_t> ReadDiskNumber(std::uint64_t handle, DiskFact fact) {
  if (fact == DiskFact::kRemaining) return FreeBytesOnDisk(SystemRoot(), handle, MountedFreeSpace);
  return ReadBlockNumber(SystemRoot(), handle, fact);
}

}  // namespace ostrine
