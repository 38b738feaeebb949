/// The storage system's questions about a disk or a volume. Handles are opened without any right to the
/// contents: neither a right of the superuser nor a spinning disk is needed.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ostrine/common/disk_descriptor.h"

namespace ostrine {

/// A file handle that is closed with its owner.
class StorageHandle {
 public:
  /// Opens `path` to be asked, not read.
  explicit StorageHandle(const std::wstring& path) noexcept;
  StorageHandle(const StorageHandle&) = delete;
  StorageHandle& operator=(const StorageHandle&) = delete;
  ~StorageHandle() {
    if (IsOpen()) CloseHandle(handle_);
  }

  bool IsOpen() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const noexcept { return handle_; }
  HANDLE Release() noexcept { return std::exchange(handle_, INVALID_HANDLE_VALUE); }

 private:
  HANDLE handle_;
};

/// Path of the system's physical drive `drive`.
std::wstring DrivePath(std::uint32_t drive);

/// Numbers that the system has given to the physical drives present now, ascending. They may have gaps.
std::vector<std::uint32_t> PhysicalDrives();

std::optional<StorageDescriptor> DescribeDisk(HANDLE disk);

/// The physical drive behind the handle.
std::optional<std::uint32_t> DriveNumber(HANDLE disk);

/// Capacity in bytes.
std::optional<std::uint64_t> DiskLength(HANDLE disk);

/// Whether finding a place costs the disk time: a rotating one seeks.
std::optional<bool> HasSeekPenalty(HANDLE disk);

/// Where the volume lies; empty for one without disks, such as an optical drive.
std::vector<VolumeExtent> ExtentsOf(HANDLE volume);

}  // namespace ostrine
