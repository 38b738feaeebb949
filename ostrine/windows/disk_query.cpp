#include "ostrine/windows/disk_query.h"

#include <winioctl.h>

#include <cstddef>
#include <cstring>

namespace ostrine {
namespace {

/// What the system answers to `code`; nothing when it fails, but the beginning of an answer that is longer
/// than `room` counts as one.
std::optional<std::vector<std::uint8_t>> AskDevice(HANDLE device, DWORD code,
                                                   std::vector<std::uint8_t> question, std::size_t room) {
  std::vector<std::uint8_t> answer(room);
  DWORD size = 0;
  const BOOL succeeded = DeviceIoControl(device, code, question.empty() ? nullptr : question.data(),
                                         static_cast<DWORD>(question.size()), answer.data(),
                                         static_cast<DWORD>(room), &size, nullptr);
  if (!succeeded && GetLastError() != ERROR_MORE_DATA) return std::nullopt;
  answer.resize(size < room ? size : room);
  return answer;
}

std::optional<std::vector<std::uint8_t>> AskProperty(HANDLE disk, STORAGE_PROPERTY_ID property,
                                                     std::size_t room) {
  STORAGE_PROPERTY_QUERY query{};
  query.PropertyId = property;
  query.QueryType = PropertyStandardQuery;
  std::vector<std::uint8_t> question(sizeof query);
  std::memcpy(question.data(), &query, sizeof query);
  return AskDevice(disk, IOCTL_STORAGE_QUERY_PROPERTY, std::move(question), room);
}

template <class Record>
std::optional<Record> AskRecord(HANDLE device, DWORD code) {
  const auto bytes = AskDevice(device, code, {}, sizeof(Record));
  Record record{};
  if (!bytes || bytes->size() < sizeof record) return std::nullopt;
  std::memcpy(&record, bytes->data(), sizeof record);
  return record;
}

}  // namespace

StorageHandle::StorageHandle(const std::wstring& path) noexcept
    : handle_(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                          nullptr)) {}

std::wstring DrivePath(std::uint32_t drive) { return L"\\\\.\\PhysicalDrive" + std::to_wstring(drive); }

std::vector<std::uint32_t> PhysicalDrives() {
  // A name that nobody has fails at once, so the names are tried. Laptops stay far below this.
  constexpr std::uint32_t kMostDrives = 32;
  std::vector<std::uint32_t> drives;
  for (std::uint32_t drive = 0; drive < kMostDrives; ++drive) {
    if (StorageHandle(DrivePath(drive)).IsOpen()) drives.push_back(drive);
  }
  return drives;
}

std::optional<StorageDescriptor> DescribeDisk(HANDLE disk) {
  constexpr std::size_t kRoom = 4096;
  const auto bytes = AskProperty(disk, StorageDeviceProperty, kRoom);
  return bytes ? ParseStorageDescriptor(*bytes) : std::nullopt;
}

std::optional<std::uint32_t> DriveNumber(HANDLE disk) {
  const auto number = AskRecord<STORAGE_DEVICE_NUMBER>(disk, IOCTL_STORAGE_GET_DEVICE_NUMBER);
  if (!number) return std::nullopt;
  return number->DeviceNumber;
}

std::optional<std::uint64_t> DiskLength(HANDLE disk) {
  // The geometry tells the exact length too, and needs no right to read as the plain question does.
  constexpr std::size_t kRoom = 1024;  // partitions follow
  constexpr std::size_t kSizeOffset = offsetof(DISK_GEOMETRY_EX, DiskSize);
  const auto geometry = AskDevice(disk, IOCTL_DISK_GET_DRIVE_GEOMETRY_EX, {}, kRoom);
  std::int64_t size = 0;
  if (!geometry || geometry->size() < kSizeOffset + sizeof size) return std::nullopt;
  std::memcpy(&size, geometry->data() + kSizeOffset, sizeof size);
  if (size < 0) return std::nullopt;
  return static_cast<std::uint64_t>(size);
}

std::optional<bool> HasSeekPenalty(HANDLE disk) {
  constexpr std::size_t kFlagOffset = offsetof(DEVICE_SEEK_PENALTY_DESCRIPTOR, IncursSeekPenalty);
  const auto bytes =
      AskProperty(disk, StorageDeviceSeekPenaltyProperty, sizeof(DEVICE_SEEK_PENALTY_DESCRIPTOR));
  if (!bytes || bytes->size() <= kFlagOffset) return std::nullopt;
  return (*bytes)[kFlagOffset] != 0;
}

std::vector<VolumeExtent> ExtentsOf(HANDLE volume) {
  constexpr std::size_t kRoom = 4096;  // some 170 extents
  const auto bytes = AskDevice(volume, IOCTL_VOLUME_GET_VOLUME_DISK_EXTENTS, {}, kRoom);
  return bytes ? ParseVolumeExtents(*bytes) : std::vector<VolumeExtent>();
}

}  // namespace ostrine
