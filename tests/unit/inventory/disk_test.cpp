#include "velmora/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "simulator/run.h"

namespace {

using testing::ElementsAre;

simulator::Disk FixedDisk(const char* caption) {
  return {.media_type = "Fixed hard disk media",
          .caption = caption,
          .serial_number = "S4EVNF0M123456",
          .firmware = "2B2QEXM7",
          .total = 512110190592,
          .remaining = 123456789012,
          .vendor_total = 512000000000,
          .vendor_megabytes = 512000,
          .is_ssd = 1};
}

simulator::Disk RemovableDisk() {
  auto disk = FixedDisk("USB stick");
  disk.media_type = "Removable Media";
  return disk;
}

simulator::Machine MachineWithDisks(std::vector<simulator::Disk> disks) {
  auto machine = simulator::BlankMachine();
  machine.disks = std::move(disks);
  return machine;
}

/// What `operation` calls on an object whose disks are known already.
std::vector<std::string> TraceOf(void (*operation)(CDisk&)) {
  const auto run = simulator::Use(MachineWithDisks({FixedDisk("A")}));
  CDisk disk;
  disk.GetPhysicDiskNumbers();
  const auto before = run.Trace().size();
  operation(disk);
  const auto trace = run.Trace();
  return {trace.begin() + static_cast<std::ptrdiff_t>(before), trace.end()};
}

TEST(Disk, GivesTheFactsOfAFixedDisk) {
  const auto run = simulator::Use(MachineWithDisks({FixedDisk("SAMSUNG MZVLB512")}));
  CDisk disk;
  int is_ssd = 7;

  EXPECT_EQ(disk.GetPhysicDiskNumbers(), 1);
  EXPECT_EQ(disk.GetCaption(0), L"SAMSUNG MZVLB512");
  EXPECT_EQ(disk.GetSerialNumber(0), L"S4EVNF0M123456");
  EXPECT_EQ(disk.GetFirmwareRevision(0), L"2B2QEXM7");
  EXPECT_EQ(disk.GetMediaType(0), L"Fixed hard disk media");
  EXPECT_EQ(disk.GetTotalCapacity(0), 512110190592U);
  EXPECT_EQ(disk.GetRemainCapacity(0), 123456789012U);
  EXPECT_EQ(disk.GetUsedCapacity(0), 512110190592U - 123456789012U);
  EXPECT_EQ(disk.GetTotalVendorCapacity(0), 512000000000U);
  EXPECT_EQ(disk.GetTotalVendorCapacityM(0), 512000U);
  EXPECT_NE(disk.JudgeSSd(0, is_ssd), 0);
  EXPECT_EQ(is_ssd, 1);
}

TEST(Disk, OpensAsksAndClosesTheDiskForEachQuestion) {
  const auto asked = [](const char* query) {
    return ElementsAre("HalOpenDevice(7, 0)", query, "HalCloseDevice(7, 0)");
  };
  EXPECT_THAT(TraceOf([](CDisk& disk) { disk.GetMediaType(0); }),
              asked("HalQueryInformation(7, record 0, 0, 520)"));
  EXPECT_THAT(TraceOf([](CDisk& disk) { disk.GetCaption(0); }),
              asked("HalQueryInformation(7, record 0, 1, 520)"));
  EXPECT_THAT(TraceOf([](CDisk& disk) { disk.GetSerialNumber(0); }),
              asked("HalQueryInformation(7, record 0, 2, 520)"));
  EXPECT_THAT(TraceOf([](CDisk& disk) { disk.GetTotalCapacity(0); }),
              asked("HalQueryInformation(7, record 0, 3, 8)"));
  EXPECT_THAT(TraceOf([](CDisk& disk) { disk.GetRemainCapacity(0); }),
              asked("HalQueryInformation(7, record 0, 4, 8)"));
  EXPECT_THAT(TraceOf([](CDisk& disk) { disk.GetTotalVendorCapacity(0); }),
              asked("HalQueryInformation(7, record 0, 5, 8)"));
  EXPECT_THAT(TraceOf([](CDisk& disk) { disk.GetTotalVendorCapacityM(0); }),
              asked("HalQueryInformation(7, record 0, 6, 8)"));
  EXPECT_THAT(TraceOf([](CDisk& disk) { disk.GetFirmwareRevision(0); }),
              asked("HalQueryInformation(7, record 0, 9, 520)"));
  EXPECT_THAT(TraceOf([](CDisk& disk) {
                int flag = 0;
                disk.JudgeSSd(0, flag);
              }),
              asked("HalQueryInformation(7, record 0, 10, 4)"));
}

TEST(Disk, CountsTheDisksOnlyWhenTheClassCouldBePrepared) {
  const auto prepared = [] {
    const auto run = simulator::Use(MachineWithDisks({FixedDisk("A")}));
    CDisk disk;
    return run.Trace();
  }();
  EXPECT_THAT(prepared, ElementsAre("HalInit(7, pointer)", "HalQueryInformation(7, null, 7, 4)"));

  auto run = simulator::Use(MachineWithDisks({FixedDisk("A")}));
  run.Inject(simulator::Fault::kFail, 0);
  CDisk disk;
  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(7, pointer)"));
  EXPECT_EQ(disk.GetPhysicDiskNumbers(), 0);
}

TEST(Disk, SkipsEveryDiskWhoseMediaTypeIsNotExactlyFixed) {
  auto upper = FixedDisk("B");
  upper.media_type = "FIXED HARD DISK MEDIA";
  auto longer = FixedDisk("C");
  longer.media_type = "Fixed hard disk media ";
  auto silent = FixedDisk("D");
  silent.media_type.reset();
  const auto run = simulator::Use(
      MachineWithDisks({RemovableDisk(), FixedDisk("A"), upper, longer, silent, FixedDisk("E")}));
  CDisk disk;

  EXPECT_EQ(disk.GetPhysicDiskNumbers(), 2);
  EXPECT_EQ(disk.GetCaption(0), L"A");
  EXPECT_EQ(disk.GetCaption(1), L"E");
  EXPECT_EQ(disk.GetCaption(2), L"");
}

TEST(Disk, FailsForAnIndexThatNoFixedDiskHas) {
  const auto run = simulator::Use(MachineWithDisks({FixedDisk("A")}));
  CDisk disk;
  for (const int index : {-1, 1, 2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    int flag = 7;
    EXPECT_EQ(disk.GetCaption(index), L"");
    EXPECT_EQ(disk.GetTotalCapacity(index), 0U);
    EXPECT_EQ(disk.GetUsedCapacity(index), 0U);
    EXPECT_EQ(disk.JudgeSSd(index, flag), 0);
    EXPECT_EQ(flag, 7) << "the flag of a bad index is untouched";
  }
}

TEST(Disk, DoesNotCloseADiskThatDoesNotOpen) {
  auto run = simulator::Use(MachineWithDisks({FixedDisk("A")}));
  CDisk disk;
  disk.GetPhysicDiskNumbers();
  (*run.machine().disks)[0].refuses_opening = true;
  const int closes = run.Calls("HalCloseDevice");
  int flag = 7;

  EXPECT_EQ(disk.GetCaption(0), L"");
  EXPECT_EQ(disk.GetTotalCapacity(0), 0U);
  EXPECT_EQ(disk.JudgeSSd(0, flag), 0);
  EXPECT_EQ(flag, 7);
  EXPECT_EQ(run.Calls("HalCloseDevice"), closes);
}

TEST(Disk, ClosesADiskWhoseQueryFails) {
  auto disk_without_serial = FixedDisk("A");
  disk_without_serial.serial_number.reset();
  const auto run = simulator::Use(MachineWithDisks({disk_without_serial}));

  EXPECT_EQ(CDisk().GetSerialNumber(0), L"");
  EXPECT_EQ(run.Calls("HalCloseDevice"), run.Calls("HalOpenDevice"));
}

TEST(Disk, SumsToZeroUntilTheFixedDisksHaveBeenLookedFor) {
  const auto run = simulator::Use(MachineWithDisks({FixedDisk("A"), FixedDisk("B")}));
  CDisk disk;
  EXPECT_EQ(disk.GetAllTotalCapacity(), 0U);
  EXPECT_EQ(disk.GetAllRemainCapacity(), 0U);
  EXPECT_EQ(disk.GetAllTotalVendorCapcity(), 0U);
  EXPECT_EQ(disk.GetAllUsedCapacity(), 0U);
  EXPECT_EQ(run.Calls("HalOpenDevice"), 0);

  EXPECT_EQ(disk.GetPhysicDiskNumbers(), 2);
  EXPECT_EQ(disk.GetAllTotalCapacity(), 2 * 512110190592U);
  EXPECT_EQ(disk.GetAllRemainCapacity(), 2 * 123456789012U);
  EXPECT_EQ(disk.GetAllTotalVendorCapcity(), 2 * 512000000000U);
  EXPECT_EQ(disk.GetAllUsedCapacity(), 2 * (512110190592U - 123456789012U));
}

TEST(Disk, LeavesADiskThatFailsOutOfTheSums) {
  auto broken = FixedDisk("B");
  broken.total.reset();
  const auto run = simulator::Use(MachineWithDisks({FixedDisk("A"), broken}));
  CDisk disk;
  disk.GetPhysicDiskNumbers();

  EXPECT_EQ(disk.GetAllTotalCapacity(), 512110190592U);
}

TEST(Disk, WrapsTheUsedCapacityAroundWhenMoreIsFreeThanThere) {
  auto odd = FixedDisk("A");
  odd.total = 100;
  odd.remaining = 101;
  const auto run = simulator::Use(MachineWithDisks({odd, FixedDisk("B")}));
  CDisk disk;

  EXPECT_EQ(disk.GetUsedCapacity(0), std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(disk.GetAllUsedCapacity(), 512110190592U - 123456789012U - 1);
}

TEST(Disk, FindsTheFixedDisksOnce) {
  auto run = simulator::Use(MachineWithDisks({FixedDisk("A")}));
  CDisk disk;
  EXPECT_EQ(disk.GetPhysicDiskNumbers(), 1);
  const int calls = run.Calls();
  EXPECT_EQ(disk.GetPhysicDiskNumbers(), 1);
  EXPECT_EQ(run.Calls(), calls);

  run.machine().disks->push_back(FixedDisk("B"));
  EXPECT_EQ(disk.GetPhysicDiskNumbers(), 1) << "a disk attached later is not seen";
}

TEST(Disk, LooksAgainAsLongAsThereIsNoFixedDisk) {
  auto run = simulator::Use(MachineWithDisks({RemovableDisk()}));
  CDisk disk;
  EXPECT_EQ(disk.GetPhysicDiskNumbers(), 0);
  (*run.machine().disks)[0].media_type = "Fixed hard disk media";
  EXPECT_EQ(disk.GetPhysicDiskNumbers(), 1);
}

TEST(Disk, GivesBackTheQuerysOwnResultAsTheVerdict) {
  auto silent = FixedDisk("A");
  silent.is_ssd.reset();
  const auto run = simulator::Use(MachineWithDisks({silent, FixedDisk("B")}));
  CDisk disk;
  int flag = 7;
  EXPECT_EQ(disk.JudgeSSd(0, flag), 0);
  EXPECT_EQ(disk.JudgeSSd(1, flag), 1);
}

TEST(Disk, CopiesKnowTheSameDisksAndOwnTheirTables) {
  auto run = simulator::Use(MachineWithDisks({FixedDisk("A")}));
  CDisk disk;
  disk.GetPhysicDiskNumbers();
  CDisk copy(disk);
  CDisk assigned;
  assigned = disk;
  run.machine().disks->push_back(FixedDisk("B"));

  EXPECT_EQ(copy.GetPhysicDiskNumbers(), 1);
  EXPECT_EQ(copy.GetAllTotalCapacity(), 512110190592U);
  EXPECT_EQ(assigned.GetCaption(0), L"A");
}

}  // namespace
