#include "velmora/disk.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/guard.h"
#include "platform/halquery.h"

using velmora::hal::DeviceClass;

namespace {

constexpr auto kDisk = DeviceClass::kDisk;

/// Information ids of the class.
enum DiskId : std::uint32_t {
  kMediaType = 0,
  kCaption = 1,
  kSerialNumber = 2,
  kTotal = 3,
  kRemaining = 4,
  kVendorTotal = 5,
  kVendorTotalMegabytes = 6,
  kDiskCount = 7,
  kFirmware = 9,
  kSolidState = 10,
};

/// More disks than any machine has: a greater count comes from a broken library and is not walked to its end.
constexpr std::uint32_t kMostDisks = 4096;

/// The number of the disk at a position of the list; nothing when the list has no such position.
std::optional<std::uint32_t> NumberAt(const std::vector<std::uint32_t>& disks, int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= disks.size()) return std::nullopt;
  return disks[static_cast<std::size_t>(index)];
}

std::wstring Text(const std::vector<std::uint32_t>& disks, int index, DiskId id) {
  const auto number = NumberAt(disks, index);
  return number ? velmora::hal::WideTextOf(kDisk, *number, id) : std::wstring();
}

std::uint64_t Capacity(const std::vector<std::uint32_t>& disks, int index, DiskId id) {
  const auto number = NumberAt(disks, index);
  return number ? velmora::hal::LargeNumberOf(kDisk, *number, id) : 0;
}

/// A capacity summed over all disks of the list.
std::uint64_t Sum(const std::vector<std::uint32_t>& disks, DiskId id) {
  std::uint64_t sum = 0;
  for (const std::uint32_t number : disks) sum += velmora::hal::LargeNumberOf(kDisk, number, id);
  return sum;
}

}  // namespace

CDisk::CDisk() {
  if (velmora::hal::PrepareTable(kDisk, disk_table_))
    raw_disk_count_ = velmora::hal::Number(kDisk, kDiskCount);
}

CDisk::CDisk(const CDisk& other) : raw_disk_count_(other.raw_disk_count_) {
  velmora::hal::PrepareTable(kDisk, disk_table_);
  velmora::Attempt([&] {
    fixed_disks_ = other.fixed_disks_;  // without memory for the list, the copy looks for the disks itself
    fixed_disk_count_ = other.fixed_disk_count_;
  });
}

CDisk& CDisk::operator=(const CDisk& other) {
  CDisk copy(other);
  std::swap(disk_table_, copy.disk_table_);
  std::swap(fixed_disk_count_, copy.fixed_disk_count_);
  std::swap(raw_disk_count_, copy.raw_disk_count_);
  fixed_disks_.swap(copy.fixed_disks_);
  return *this;
}

CDisk::~CDisk() { velmora::hal::ReleaseTable(disk_table_); }

void CDisk::ComputeDiskCount() {
  if (fixed_disk_count_ != 0) return;
  velmora::Attempt([&] {
    std::vector<std::uint32_t> found;
    const std::uint32_t count = std::min(raw_disk_count_, kMostDisks);
    for (std::uint32_t number = 0; number < count; ++number) {
      if (velmora::hal::WideTextOf(kDisk, number, kMediaType) == L"Fixed hard disk media")
        found.push_back(number);
    }
    fixed_disks_ = std::move(found);
    fixed_disk_count_ = static_cast<std::int32_t>(fixed_disks_.size());
  });
}

int CDisk::GetPhysicDiskNumbers() {
  ComputeDiskCount();
  return fixed_disk_count_;
}

std::wstring CDisk::GetCaption(int index) {
  ComputeDiskCount();
  return Text(fixed_disks_, index, kCaption);
}

std::wstring CDisk::GetSerialNumber(int index) {
  ComputeDiskCount();
  return Text(fixed_disks_, index, kSerialNumber);
}

std::wstring CDisk::GetFirmwareRevision(int index) {
  ComputeDiskCount();
  return Text(fixed_disks_, index, kFirmware);
}

std::wstring CDisk::GetMediaType(int index) {
  ComputeDiskCount();
  return Text(fixed_disks_, index, kMediaType);
}

std::uint64_t CDisk::GetTotalCapacity(int index) {
  ComputeDiskCount();
  return Capacity(fixed_disks_, index, kTotal);
}

std::uint64_t CDisk::GetRemainCapacity(int index) {
  ComputeDiskCount();
  return Capacity(fixed_disks_, index, kRemaining);
}

std::uint64_t CDisk::GetUsedCapacity(int index) { return GetTotalCapacity(index) - GetRemainCapacity(index); }

std::uint64_t CDisk::GetTotalVendorCapacity(int index) {
  ComputeDiskCount();
  return Capacity(fixed_disks_, index, kVendorTotal);
}

std::uint64_t CDisk::GetTotalVendorCapacityM(int index) {
  ComputeDiskCount();
  return Capacity(fixed_disks_, index, kVendorTotalMegabytes);
}

int CDisk::JudgeSSd(int index, int& is_ssd) {
  ComputeDiskCount();
  const auto number = NumberAt(fixed_disks_, index);
  return number ? velmora::hal::QueryInto(kDisk, *number, kSolidState, is_ssd) : 0;
}

std::uint64_t CDisk::GetAllTotalCapacity() { return Sum(fixed_disks_, kTotal); }
std::uint64_t CDisk::GetAllRemainCapacity() { return Sum(fixed_disks_, kRemaining); }
std::uint64_t CDisk::GetAllTotalVendorCapcity() { return Sum(fixed_disks_, kVendorTotal); }

std::uint64_t CDisk::GetAllUsedCapacity() {
  std::uint64_t sum = 0;
  for (int index = 0; index < fixed_disk_count_; ++index) sum += GetUsedCapacity(index);
  return sum;
}
