/// Device class 7: the disks.
///
/// Nothing here reads a disk's contents, sends a command to it or wakes it: all is what the system already
/// knows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ostrine/common/answer.h"

namespace ostrine {

/// The facts of the class; the numbers are its information ids. All but the count are facts of one disk.
enum class DiskFact : unsigned int {
  kMediaType = 0,  ///< text, as all up to the serial number
  kCaption = 1,
  kSerialNumber = 2,
  kTotal = 3,             ///< in bytes, a number of eight bytes, as all up to the megabytes
  kRemaining = 4,         ///< free space of the mounted file systems on the disk
  kNominal = 5,           ///< what the maker states: makers count every byte, so it is the total
  kNominalMegabytes = 6,  ///< in whole decimal megabytes
  kCount = 7,             ///< a number of four bytes
  kFirmware = 9,          ///< text
  kSolidState = 10,       ///< 1 or 0, a number of four bytes
};

/// Gives a table of the disks: eight bytes, the second four of which are the number of disks, then a device
/// record of sixteen bytes a disk, ready to be opened.
bool PrepareDisks(void** table);

/// Answers the information ids of DiskFact: the count for no device, the others for an opened device record.
/// Fails for what the disk does not tell.
bool QueryDisk(void* device, unsigned int information_id, Answer& answer);

/// Opens the disk whose number stands in the record, which must not be open. What is asked afterwards is
/// about that same disk, also when others have come or gone meanwhile.
bool OpenDisk(void* device_record);
bool CloseDisk(void* device_record);

// What each system has of its own.

/// How many disks the machine has now. They are numbered from 0, in an order that stays.
std::uint32_t CountDisks();

/// A handle for disk `number`, never 0; nothing when there is no such disk.
std::optional<std::uint64_t> OpenDiskHandle(std::uint32_t number);
bool CloseDiskHandle(std::uint64_t handle);

/// A text of the disk in UTF-8; nothing where it does not tell.
std::optional<std::string> ReadDiskText(std::uint64_t handle, DiskFact fact);

/// kTotal, kRemaining or kSolidState.
std::optional<std::uint64_t> ReadDiskNumber(std::uint64_t handle, DiskFact fact);

}  // namespace ostrine
