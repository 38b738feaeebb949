// What is read of the processor below a root folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "../processor_structure.h"
#include "fake_root.h"
#include "ostrine/common/processor_firmware.h"
#include "ostrine/linux/processor.h"
#include "processor_tree.h"

namespace ostrine {
namespace {

using test::FakeRoot;

std::optional<std::uint32_t> CacheSize(const FakeRoot& root, unsigned int level) {
  return TotalCacheSize(LinuxProcessor(root.Path()).Caches(level, CacheExtent::kMachine));
}

std::optional<std::string> Associativity(const FakeRoot& root, unsigned int level) {
  const auto caches = LinuxProcessor(root.Path()).Caches(level, CacheExtent::kFirst);
  const Cache* const main = MainCache(caches);
  return main == nullptr ? std::nullopt : AssociativityText(main->ways);
}

TEST(ProcessorLinux, CountsCoresOfEveryKindAndTheirThreads) {
  const FakeRoot root;
  test::WriteHybridLaptop(root);
  const LinuxProcessor processor(root.Path());
  EXPECT_EQ(processor.Cores(), 6u);
  EXPECT_EQ(processor.Threads(), 8u);
}

TEST(ProcessorLinux, CountsOnlyWhatIsInUse) {
  const FakeRoot root;
  test::WriteHybridLaptop(root);
  root.Write("sys/devices/system/cpu/online", "0,2,4-5\n");
  const LinuxProcessor processor(root.Path());
  EXPECT_EQ(processor.Cores(), 4u);
  EXPECT_EQ(processor.Threads(), 4u);
}

TEST(ProcessorLinux, DoesNotGuessCoresWithoutTopology) {
  const FakeRoot root;
  test::WriteHybridLaptop(root);
  std::filesystem::remove_all(root.Path() / "sys/devices/system/cpu/cpu5/topology");
  const LinuxProcessor processor(root.Path());
  EXPECT_EQ(processor.Cores(), std::nullopt);
  EXPECT_EQ(processor.Threads(), 8u);
}

TEST(ProcessorLinux, AddsUpEachCacheOnceHoweverManyShareIt) {
  const FakeRoot root;
  test::WriteHybridLaptop(root);
  EXPECT_EQ(CacheSize(root, 1), 2u * (48 + 32) + 4u * (32 + 64));
  EXPECT_EQ(CacheSize(root, 2), 2u * 1280 + 2048);
  EXPECT_EQ(CacheSize(root, 3), 18432u);
  EXPECT_EQ(CacheSize(root, 4), std::nullopt);
}

TEST(ProcessorLinux, CountsPrivateCachesBesideASharedOneOfTheSameLevel) {
  const FakeRoot root;
  test::WriteOldLaptop(root);
  EXPECT_EQ(CacheSize(root, 1), 16u + 16 + 64);
  EXPECT_EQ(CacheSize(root, 2), 2048u);
  EXPECT_EQ(CacheSize(root, 3), std::nullopt);
}

TEST(ProcessorLinux, TakesTheWaysOfTheFirstProcessorsDataCache) {
  const FakeRoot root;
  test::WriteHybridLaptop(root);
  EXPECT_EQ(Associativity(root, 1), "12-way Set-Associative");
  EXPECT_EQ(Associativity(root, 2), "10-way Set-Associative");
  EXPECT_EQ(Associativity(root, 3), "12-way Set-Associative");
  EXPECT_EQ(Associativity(root, 4), std::nullopt);
}

TEST(ProcessorLinux, TakesTheWaysOfALevelThatTheFirstProcessorLacksFromAnother) {
  const FakeRoot root;
  test::WriteCores(root, "0-1\n", {{0}, {1}});
  test::WriteCaches(root, {{1, "Data", "32K", 8, 64, {0}},
                           {1, "Data", "48K", 12, 64, {1}},
                           {3, "Unified", "8192K", 16, 8192, {1}}});
  EXPECT_EQ(Associativity(root, 3), "16-way Set-Associative");
  EXPECT_EQ(CacheSize(root, 3), 8192u);
}

TEST(ProcessorLinux, KnowsACacheOfOneSetAsFullyAssociative) {
  const FakeRoot root;
  test::WriteCores(root, "0\n", {{0}});
  test::WriteCaches(root, {{1, "Unified", "16K", 256, 1, {0}}, {2, "Unified", "64K", 1, 1024, {0}}});
  EXPECT_EQ(Associativity(root, 1), "Fully Associative");
  EXPECT_EQ(Associativity(root, 2), "Direct Mapped");
}

TEST(ProcessorLinux, GivesACacheWithoutWaysWithItsSize) {
  const FakeRoot root;
  test::WriteOldLaptop(root);
  std::filesystem::remove(root.Path() / "sys/devices/system/cpu/cpu0/cache/index0/ways_of_associativity");
  EXPECT_EQ(Associativity(root, 1), std::nullopt);
  EXPECT_EQ(CacheSize(root, 1), 96u);
}

TEST(ProcessorLinux, GivesNoLevelOfWhichACacheIsDescribedInPart) {
  for (const char* file : {"type", "size", "shared_cpu_list"}) {
    SCOPED_TRACE(file);
    const FakeRoot root;
    test::WriteOldLaptop(root);
    std::filesystem::remove(root.Path() / "sys/devices/system/cpu/cpu1/cache/index0" / file);
    EXPECT_EQ(CacheSize(root, 1), std::nullopt);
    EXPECT_EQ(CacheSize(root, 2), 2048u);
  }
}

TEST(ProcessorLinux, RunsAtTheHighestOfTheScaledClocks) {
  const FakeRoot root;
  test::WriteHybridLaptop(root);
  const LinuxProcessor processor(root.Path());
  EXPECT_EQ(processor.CurrentClock(), 4389u);
  EXPECT_EQ(processor.MaximumClock(), 4700u);
  EXPECT_EQ(processor.NominalClock(), std::nullopt);
}

TEST(ProcessorLinux, HasTheListedClockWhereNoneIsScaled) {
  const FakeRoot root;
  test::WriteOldLaptop(root);
  const LinuxProcessor processor(root.Path());
  EXPECT_EQ(processor.CurrentClock(), std::nullopt);
  EXPECT_EQ(processor.MaximumClock(), std::nullopt);
  EXPECT_EQ(processor.NominalClock(), 2700u);
}

TEST(ProcessorLinux, ReadsNameAndVendorOfTheKernelsList) {
  const FakeRoot root;
  test::WriteOldLaptop(root);
  const LinuxProcessor processor(root.Path());
  EXPECT_EQ(processor.Vendor(), "AuthenticAMD");
  EXPECT_EQ(processor.Name(), "AMD A6-4400M APU with Radeon(tm) HD Graphics");
}

TEST(ProcessorLinux, NamesAnArmProcessorsDesigner) {
  const FakeRoot root;
  root.Write("proc/cpuinfo",
             "processor\t: 0\nBogoMIPS\t: 38.40\nCPU implementer\t: 0x51\nCPU part\t: 0x001\n\n");
  EXPECT_EQ(LinuxProcessor(root.Path()).Vendor(), "Qualcomm");
  EXPECT_EQ(LinuxProcessor(root.Path()).Name(), std::nullopt);
  root.Write("proc/cpuinfo", "CPU implementer\t: 0xff\nHardware\t: Qualcomm Technologies, Inc SC7180\n");
  EXPECT_EQ(LinuxProcessor(root.Path()).Vendor(), std::nullopt);
  EXPECT_EQ(LinuxProcessor(root.Path()).Name(), "Qualcomm Technologies, Inc SC7180");
}

TEST(ProcessorLinux, ReadsTheTimeSinceTheSystemsStart) {
  const FakeRoot root;
  test::WriteHybridLaptop(root);
  const auto time = LinuxProcessor(root.Path()).Time();
  ASSERT_TRUE(time);
  EXPECT_EQ(time->busy, 1500u);
  EXPECT_EQ(time->total, 10000u);
}

TEST(ProcessorLinux, ReadsTheFirmwaresTable) {
  const FakeRoot root;
  test::ByteVector table;
  test::AppendProcessor(table, {.external_clock = 133});
  root.Write("sys/firmware/dmi/tables/smbios_entry_point",
             test::EntryPoint64(static_cast<std::uint32_t>(table.size())));
  root.Write("sys/firmware/dmi/tables/DMI", table);
  const auto firmware = LinuxProcessor(root.Path()).Firmware();
  ASSERT_TRUE(firmware);
  EXPECT_EQ(ReadFirmwareProcessor(firmware->View())->external_clock, 133u);
}

/// Whether a system tells nothing at all about the processor.
void ExpectNothing(const LinuxProcessor& processor) {
  EXPECT_EQ(processor.Vendor(), std::nullopt);
  EXPECT_EQ(processor.Name(), std::nullopt);
  EXPECT_EQ(processor.CurrentClock(), std::nullopt);
  EXPECT_EQ(processor.MaximumClock(), std::nullopt);
  EXPECT_EQ(processor.NominalClock(), std::nullopt);
  EXPECT_EQ(processor.Cores(), std::nullopt);
  EXPECT_EQ(processor.Threads(), std::nullopt);
  EXPECT_FALSE(processor.Time());
  EXPECT_FALSE(processor.Firmware());
  for (unsigned int level = 0; level <= 4; ++level) {
    EXPECT_TRUE(processor.Caches(level, CacheExtent::kMachine).empty());
    EXPECT_TRUE(processor.Caches(level, CacheExtent::kFirst).empty());
  }
}

TEST(ProcessorLinux, TellsNothingOfAnEmptyMachine) {
  const FakeRoot root;
  ExpectNothing(LinuxProcessor(root.Path()));
}

TEST(ProcessorLinux, TellsNothingOfAHostileMachine) {
  const FakeRoot root;
  root.Write("sys/devices/system/cpu/online", "0-4294967295\n");
  root.Write("proc/stat", "cpu 99999999999999999999 1 1 1\n");
  root.Write("proc/cpuinfo", std::string(100000, ':') + "\ncpu MHz : 99999999999999999999\n");
  ExpectNothing(LinuxProcessor(root.Path()));

  root.Write("sys/devices/system/cpu/online", "0\n");
  std::filesystem::create_directories(root.Path() / "sys/devices/system/cpu/cpu0/topology/core_cpus_list");
  root.Write("sys/devices/system/cpu/cpu0/cpufreq/scaling_cur_freq", "18446744073709551615\n");
  root.Write("sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq", "<unknown>\n");
  test::WriteCaches(root, {{1, "Data", "99999999999999999999K", 8, 64, {0}},
                           {2, "Unified", "-1K", 8, 64, {0}},
                           {3, "Sideways", "1K", 8, 64, {0}}});
  const LinuxProcessor processor(root.Path());
  EXPECT_EQ(processor.Cores(), std::nullopt);
  EXPECT_EQ(processor.CurrentClock(), std::nullopt);
  EXPECT_EQ(processor.MaximumClock(), std::nullopt);
  for (unsigned int level = 1; level <= 3; ++level) EXPECT_EQ(CacheSize(root, level), std::nullopt);
}

TEST(ProcessorLinux, CountsAProcessorThatTheKernelForgetsToListInItsOwnCore) {
  const FakeRoot root;
  test::WriteCores(root, "0-1\n", {{0, 1}});
  root.Write(test::FolderOf(0) + "topology/core_cpus_list", "5-7\n");
  root.Write(test::FolderOf(1) + "topology/core_cpus_list", "8191\n");
  EXPECT_EQ(LinuxProcessor(root.Path()).Cores(), 2u);
}

}  // namespace
}  // namespace ostrine
