#include "ostrine/linux/block_space.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <limits>
#include <string_view>

#include "ostrine/common/disk_rules.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

/// More devices than lie under one file system of any machine.
constexpr std::size_t kMostDevices = 256;
constexpr std::size_t kMountListLimit = std::size_t{4} << 20;

void AddOnce(std::vector<std::string>& names, std::string name) {
  const bool is_new = std::find(names.begin(), names.end(), name) == names.end();
  if (is_new && !name.empty() && names.size() < kMostDevices) names.push_back(std::move(name));
}

/// Name of the device that the device mapper calls `mapped`; empty when there is none.
std::string MapperDevice(const Path& root, std::string_view mapped) {
  for (std::string& name : EntryNames(root / "sys/block", "dm-")) {
    if (CleanAttribute(root / "sys/block" / name / "dm/name") == mapped) return std::move(name);
  }
  return {};
}

std::string DeviceOfSource(const Path& root, std::string_view source) {
  constexpr std::string_view kMapper = "/dev/mapper/";
  if (source.starts_with(kMapper)) return MapperDevice(root, source.substr(kMapper.size()));
  return std::string(source.substr(source.find_last_of('/') + 1));
}

/// All devices of the btrfs file system of which `device` is one; none when the kernel has no such.
std::vector<std::string> BtrfsDevices(const Path& root, const std::string& device) {
  const Path systems = root / "sys/fs/btrfs";
  if (device.empty()) return {};
  for (const std::string& system : EntryNames(systems)) {
    std::vector<std::string> devices = EntryNames(systems / system / "devices");
    if (std::find(devices.begin(), devices.end(), device) != devices.end()) return devices;
  }
  return {};
}

/// Names of the disks on which the file system lies. `disk` is known to be one, with that number: nothing
/// more is looked up of it.
std::vector<std::string> FindDisks(const Path& root, const MountedFileSystem& system, const std::string& disk,
                                   const BlockNumber& number) {
  std::vector<std::string> devices;  // grows while it is walked
  if (!disk.empty() && system.number == number) return {disk};
  if (system.number.major != 0) {
    AddOnce(devices, PlaceOf(root, system.number).name);
  } else {
    devices = BtrfsDevices(root, DeviceOfSource(root, system.source));
  }
  std::vector<std::string> disks;
  for (std::size_t i = 0; i < devices.size(); ++i) {
    const std::string name = devices[i];
    if (name == disk) {
      AddOnce(disks, name);
      continue;
    }
    const Path folder = root / "sys/class/block" / name;
    if (Exists(folder / "partition")) {
      AddOnce(devices, PlaceOf(root, name).parent);
      continue;
    }
    const std::vector<std::string> slaves = EntryNames(folder / "slaves");
    for (const std::string& slave : slaves) AddOnce(devices, slave);
    if (slaves.empty()) AddOnce(disks, name);
  }
  return disks;
}

std::uint64_t SumOfSizes(const Path& root, const std::vector<std::string>& disks) {
  std::uint64_t sum = 0;
  for (const std::string& disk : disks) {
    const std::uint64_t size = BlockSize(root, disk);
    sum = size > std::numeric_limits<std::uint64_t>::max() - sum ? std::numeric_limits<std::uint64_t>::max()
                                                                 : sum + size;
  }
  return sum;
}

std::uint64_t FreeBytesOf(const MountedFileSystem& system, const FreeSpace& free_space) {
  for (const std::string& mount_point : system.mount_points) {
    if (const auto bytes = free_space(mount_point, system.number)) return *bytes;
  }
  return 0;
}

}  // namespace

std::optional<std::uint64_t> MountedFreeSpace(const Path& mount_point, const BlockNumber& number) {
  struct stat status{};
  if (stat(mount_point.c_str(), &status) != 0) return std::nullopt;
  // A mount somewhere above may cover this one. (Each part of a btrfs has a number of its own here.)
  if (number.major != 0 && status.st_dev != makedev(number.major, number.minor)) return std::nullopt;
  struct statvfs space{};
  if (statvfs(mount_point.c_str(), &space) != 0) return std::nullopt;
  const std::uint64_t block = space.f_frsize != 0 ? space.f_frsize : space.f_bsize;
  if (block != 0 && space.f_bavail > std::numeric_limits<std::uint64_t>::max() / block) return std::nullopt;
  return space.f_bavail * block;
}

std::vector<std::string> DisksUnder(const Path& root, const MountedFileSystem& system) {
  return FindDisks(root, system, {}, {});
}

std::optional<std::uint64_t> FreeBytesOnDisk(const Path& root, std::uint64_t handle,
                                             const FreeSpace& free_space) {
  const BlockNumber number = NumberOf(handle);
  const std::string disk = PlaceOf(root, number).name;
  const auto list = ReadBytes(root / "proc/self/mountinfo", kMountListLimit);
  if (disk.empty() || !list) return std::nullopt;
  std::uint64_t sum = 0;
  for (const auto& system : ParseMounts({reinterpret_cast<const char*>(list->data()), list->size()})) {
    const std::vector<std::string> disks = FindDisks(root, system, disk, number);
    if (std::find(disks.begin(), disks.end(), disk) == disks.end()) continue;
    const std::uint64_t bytes = FreeBytesOf(system, free_space);
    const std::uint64_t share =
        disks.size() == 1 ? bytes : ShareOf(bytes, BlockSize(root, disk), SumOfSizes(root, disks));
    if (share > std::numeric_limits<std::uint64_t>::max() - sum) return std::nullopt;
    sum += share;
  }
  return sum;
}

}  // namespace ostrine
