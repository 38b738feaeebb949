#include "ostrine/windows/disk_volumes.h"

#include <windows.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "ostrine/common/disk_rules.h"
#include "ostrine/windows/disk_query.h"

namespace ostrine {
namespace {

constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();

std::uint64_t SaturatingSum(std::uint64_t left, std::uint64_t right) {
  return right > kMost - left ? kMost : left + right;
}

/// The names of the machine's volumes, as "\\?\Volume{...}\".
class VolumeNames {
 public:
  VolumeNames() : search_(FindFirstVolumeW(name_, kNameSize)) {}
  VolumeNames(const VolumeNames&) = delete;
  VolumeNames& operator=(const VolumeNames&) = delete;
  ~VolumeNames() {
    if (search_ != INVALID_HANDLE_VALUE) FindVolumeClose(search_);
  }

  template <class Visit>
  void ForEach(Visit visit) {
    if (search_ == INVALID_HANDLE_VALUE) return;
    do {
      visit(std::wstring(name_));
    } while (FindNextVolumeW(search_, name_, kNameSize));
  }

 private:
  static constexpr DWORD kNameSize = MAX_PATH + 1;
  wchar_t name_[kNameSize] = {};
  HANDLE search_;
};

/// While it lives, a drive without a medium fails instead of asking the user for one.
class QuietErrors {
 public:
  QuietErrors() { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before_); }
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors() { SetThreadErrorMode(before_, nullptr); }

 private:
  DWORD before_ = 0;
};

/// Free bytes of the volume that fall to `drive`.
std::uint64_t FreeBytesOfVolume(const std::wstring& name, std::uint32_t drive) {
  // The volume itself is named without the backslash that names its root folder.
  const StorageHandle volume(name.substr(0, name.find_last_not_of(L'\\') + 1));
  if (!volume.IsOpen()) return 0;
  std::uint64_t on_drive = 0;
  std::uint64_t everywhere = 0;
  for (const VolumeExtent& extent : ExtentsOf(volume.Get())) {
    everywhere = SaturatingSum(everywhere, extent.length);
    if (extent.disk == drive) on_drive = SaturatingSum(on_drive, extent.length);
  }
  ULARGE_INTEGER free_bytes{};
  if (on_drive == 0 || !GetDiskFreeSpaceExW(name.c_str(), nullptr, nullptr, &free_bytes)) return 0;
  return ShareOf(free_bytes.QuadPart, on_drive, everywhere);
}

}  // namespace

std::uint64_t FreeBytesOnDrive(std::uint32_t drive) {
  const QuietErrors quiet;
  std::uint64_t sum = 0;
  VolumeNames().ForEach(
      [&](const std::wstring& name) { sum = SaturatingSum(sum, FreeBytesOfVolume(name, drive)); });
  return sum;
}

}  // namespace ostrine
