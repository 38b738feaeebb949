// What the storage system gives on the machine that runs the tests.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>

#include "ostrine/common/disk.h"
#include "ostrine/windows/disk_query.h"
#include "ostrine/windows/disk_volumes.h"

namespace ostrine {
namespace {

TEST(DiskWindows, CountsThePhysicalDrivesThatOpen) {
  const auto drives = PhysicalDrives();
  EXPECT_EQ(CountDisks(), drives.size());
  EXPECT_TRUE(std::is_sorted(drives.begin(), drives.end()));
  for (const std::uint32_t drive : drives) EXPECT_TRUE(StorageHandle(DrivePath(drive)).IsOpen()) << drive;
}

TEST(DiskWindows, TellsTheLengthThatTheGeometryHas) {
  const auto handle = OpenDiskHandle(0);
  if (!handle) GTEST_SKIP() << "this machine has no disk";
  const auto total = ReadDiskNumber(*handle, DiskFact::kTotal);
  ASSERT_TRUE(total);
  EXPECT_GT(*total, 0u);
  EXPECT_EQ(*total % 512, 0u);
  EXPECT_TRUE(CloseDiskHandle(*handle));
}

TEST(DiskWindows, DescribesADiskThatIsAskedFor) {
  const auto handle = OpenDiskHandle(0);
  if (!handle) GTEST_SKIP() << "this machine has no disk";
  const auto media = ReadDiskText(*handle, DiskFact::kMediaType);
  const auto descriptor = DescribeDisk(reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(*handle)));
  EXPECT_EQ(media.has_value(), descriptor.has_value());
  EXPECT_TRUE(CloseDiskHandle(*handle));
}

TEST(DiskWindows, DoesNotOpenADriveThatIsNotThere) {
  EXPECT_FALSE(StorageHandle(DrivePath(4711)).IsOpen());
  EXPECT_FALSE(OpenDiskHandle(4711));
}

TEST(DiskWindows, CountsNoMoreFreeSpaceThanTheVolumesHaveAndNoneOnADriveThatIsNotThere) {
  EXPECT_EQ(FreeBytesOnDrive(4711), 0u);
  std::uint64_t most = 0;
  wchar_t name[MAX_PATH + 1];
  const HANDLE search = FindFirstVolumeW(name, MAX_PATH);
  if (search == INVALID_HANDLE_VALUE) GTEST_SKIP() << "this machine has no volume";
  do {
    ULARGE_INTEGER free_bytes{};
    if (GetDiskFreeSpaceExW(name, nullptr, nullptr, &free_bytes)) most += free_bytes.QuadPart;
  } while (FindNextVolumeW(search, name, MAX_PATH));
  FindVolumeClose(search);
  std::uint64_t sum = 0;
  for (const std::uint32_t drive : PhysicalDrives()) sum += FreeBytesOnDrive(drive);
  EXPECT_LE(sum, most + (most / 10));  // others write meanwhile
}

TEST(DiskWindows, LeavesTheThreadsErrorModeAsItWas) {
  DWORD before = 0;
  SetThreadErrorMode(SEM_NOOPENFILEERRORBOX, &before);
  FreeBytesOnDrive(0);
  EXPECT_EQ(GetThreadErrorMode(), static_cast<DWORD>(SEM_NOOPENFILEERRORBOX));
  SetThreadErrorMode(before, nullptr);
}

}  // namespace
}  // namespace ostrine
