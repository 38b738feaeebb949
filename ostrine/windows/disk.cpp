#include "ostrine/common/disk.h"

#include <windows.h>

#include <cstddef>

#include "ostrine/common/disk_rules.h"
#include "ostrine/windows/disk_query.h"
#include "ostrine/windows/disk_volumes.h"

namespace ostrine {
namespace {

/// The system's bus types that say something about a disk's kind.
enum BusType : std::uint32_t {
  kFireWire = 4,
  kUsb = 7,
  kNvme = 17,
  kMemoryCard = 12,
  kFileBacked = 15,
};

/// SCSI's peripheral types of drives for discs that are read by light. (Magneto-optical drives have one of
/// their own, but their cartridges behave as removable disks.)
bool IsOptical(std::uint8_t device_type) {
  constexpr std::uint8_t kWriteOnce = 4;
  constexpr std::uint8_t kCdRom = 5;
  return device_type == kWriteOnce || device_type == kCdRom;
}

std::string MediaType(const StorageDescriptor& disk) {
  const DiskTraits traits{.is_optical = IsOptical(disk.device_type),
                          .is_image = disk.bus_type == kFileBacked,
                          .is_memory_card = disk.bus_type == kMemoryCard,
                          .has_removable_medium = disk.has_removable_medium,
                          .is_on_usb = disk.bus_type == kUsb || disk.bus_type == kFireWire};
  return std::string(DiskMediaText(ChooseDiskMedia(traits)));
}

std::string DescriptorText(const StorageDescriptor& disk, DiskFact fact) {
  if (fact == DiskFact::kMediaType) return MediaType(disk);
  if (fact == DiskFact::kCaption) return DiskCaption(disk.identity.vendor, disk.identity.model);
  if (fact == DiskFact::kSerialNumber) return disk.identity.serial;
  return fact == DiskFact::kFirmware ? disk.identity.firmware : std::string();
}

/// The handle travels as the number that it is.
HANDLE ToHandle(std::uint64_t handle) {
  return reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(handle));
}

std::optional<std::uint64_t> SolidState(HANDLE disk) {
  if (const auto seeks = HasSeekPenalty(disk)) return *seeks ? 0 : 1;
  // A driver that does not answer leaves only what cannot rotate.
  const auto descriptor = DescribeDisk(disk);
  if (descriptor && descriptor->bus_type == kNvme) return 1;
  return std::nullopt;
}

}  // namespace

std::uint32_t CountDisks() { return static_cast<std::uint32_t>(PhysicalDrives().size()); }

std::optional<std::uint64_t> OpenDiskHandle(std::uint32_t number) {
  const auto drives = PhysicalDrives();
  if (number >= drives.size()) return std::nullopt;
  StorageHandle disk(DrivePath(drives[number]));
  if (!disk.IsOpen()) return std::nullopt;
  return reinterpret_cast<std::uintptr_t>(disk.Release());
}

bool CloseDiskHandle(std::uint64_t handle) { return CloseHandle(ToHandle(handle)) != FALSE; }

std::optional<std::string> ReadDiskText(std::uint64_t handle, DiskFact fact) {
  const auto disk = DescribeDisk(ToHandle(handle));
  if (!disk) return std::nullopt;
  std::string text = DescriptorText(*disk, fact);
  if (text.empty()) return std::nullopt;
  return text;
}

std::optional<std::uint64_t> ReadDiskNumber(std::uint64_t handle, DiskFact fact) {
  const HANDLE disk = ToHandle(handle);
  if (fact == DiskFact::kTotal) return DiskLength(disk);
  if (fact == DiskFact::kSolidState) return SolidState(disk);
  if (fact != DiskFact::kRemaining) return std::nullopt;
  const auto drive = DriveNumber(disk);
  if (!drive) return std::nullopt;
  return FreeBytesOnDrive(*drive);
}

}  // namespace ostrine
