#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "velmora/export.h"

/// The machine's fixed disks: identity, kind and capacities.
///
/// Source: the hardware-abstraction library, device class 7, which opens the disk for each question, asks the
/// system about it and never reads its contents. Disks are numbered from 0 in the library's order, fixed ones
/// only: those whose media type is exactly "Fixed hard disk media". How many disks there are is read when the
/// object is made; which of them are fixed is found on first use and kept for the object's life, except that
/// a machine without a fixed disk is looked through again each time. Failure: a text is empty, a number 0, as
/// for an index that no fixed disk has; nothing throws, nothing is logged. Units: bytes, unless said
/// otherwise. Threads: an object is used by one thread at a time; separate objects are independent. Copies: a
/// copy knows the same disks and owns a disk table of its own.
class VELMORA_API CDisk {
 public:
  /// Counts the disks.
  CDisk();
  CDisk(const CDisk& other);
  CDisk& operator=(const CDisk& other);
  ~CDisk();

  /// Number of fixed disks.
  int GetPhysicDiskNumbers();

  /// Name of the disk's model, such as "SAMSUNG MZVLB512HBJQ-000L7".
  std::wstring GetCaption(int index);

  /// Serial number, without the blanks that pad it.
  std::wstring GetSerialNumber(int index);

  /// Revision of the disk's firmware.
  std::wstring GetFirmwareRevision(int index);

  /// Media type, "Fixed hard disk media" for every disk that has an index.
  std::wstring GetMediaType(int index);

  /// Capacity of the disk.
  std::uint64_t GetTotalCapacity(int index);

  /// Free space of the disk's mounted file systems together.
  std::uint64_t GetRemainCapacity(int index);

  /// Capacity less free space, with wrap-around when the system reports more free space than capacity.
  std::uint64_t GetUsedCapacity(int index);

  /// The maker's nominal capacity.
  std::uint64_t GetTotalVendorCapacity(int index);

  /// The maker's nominal capacity in whole decimal megabytes (1,000,000 bytes).
  std::uint64_t GetTotalVendorCapacityM(int index);

  /// Writes 1 (solid state) or 0 (rotating) to `is_ssd` and returns nonzero. On failure 0 is returned;
  /// `is_ssd` is untouched for a bad index or a disk that does not open.
  int JudgeSSd(int index, int& is_ssd);

  /// Sums over all fixed disks; a disk that fails counts as 0. They are 0 until an operation with an index,
  /// or GetPhysicDiskNumbers, has found the fixed disks: ask for the number of disks first.
  std::uint64_t GetAllTotalCapacity();
  std::uint64_t GetAllRemainCapacity();
  std::uint64_t GetAllTotalVendorCapcity();  // (The spelling is part of the interface.)
  std::uint64_t GetAllUsedCapacity();

 private:
  void ComputeDiskCount();

  void* disk_table_ = nullptr;
  std::int32_t fixed_disk_count_ = 0;
  std::uint32_t raw_disk_count_ = 0;
  std::vector<std::uint32_t> fixed_disks_;  ///< disk numbers, ascending; the position is the index
};
