#include "platform/linux/system_status.h"

#include <gtest/gtest.h>
#include <sys/sysinfo.h>

#include "platform/linux/meminfo.h"
#include "platform/os/last_error.h"
#include "tests/unit/ostrine/linux/fake_root.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeRoot;
using ostrine::test::WithoutRights;

TEST(Meminfo, GivesSizesInBytes) {
  const auto facts = ParseMeminfo(
      "MemTotal:       16 kB\nMemFree: 1 kB\nMemAvailable:\t4 kB\nSwapTotal: 8 kB\nSwapFree: 6 kB\n");
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->total, 16u * 1024);
  EXPECT_EQ(facts->available, 4u * 1024);
  EXPECT_EQ(facts->swap_total, 8u * 1024);
  EXPECT_EQ(facts->swap_free, 6u * 1024);
}

TEST(Meminfo, EstimatesWhatAnOldKernelDoesNotState) {
  const auto facts =
      ParseMeminfo("MemTotal: 100 kB\nMemFree: 10 kB\nBuffers: 5 kB\nCached: 20 kB\nSwapCached: 7 kB\n");
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->available, 35u * 1024);
}

TEST(Meminfo, IsRefusedWhereItStatesNoMemory) {
  for (const char* text :
       {"", "MemTotal: 0 kB\nMemFree: 0 kB\n", "MemAvailable: 5 kB\n", "MemTotal: 5 kB\n",
        "MemTotal: x kB\nMemFree: 1 kB\n", "MemTotal: -5 kB\nMemFree: 1 kB\n",
        "MemTotal: 5 MB\nMemFree: 1 kB\n", "MemTotal:", "MemTotal: 18446744073709551615 kB\nMemFree: 1 kB\n",
        "MemTotal: 99999999999999999999 kB\nMemFree: 1 kB\n"}) {
    EXPECT_FALSE(ParseMeminfo(text)) << text;
  }
}

TEST(Meminfo, NeverLeavesMoreThanThereIs) {
  const auto facts = ParseMeminfo("MemTotal: 5 kB\nMemAvailable: 9 kB\nSwapTotal: 1 kB\nSwapFree: 2 kB");
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->available, facts->total);
  EXPECT_EQ(facts->swap_free, facts->swap_total);
}

TEST(MemoryStatusOnLinux, TellsLoadAndSizes) {
  const FakeRoot root;
  root.Write("proc/meminfo",
             "MemTotal: 16777216 kB\nMemAvailable: 4194304 kB\nSwapTotal: 1024 kB\nSwapFree: 512 kB\n");
  root.Write("proc/self/statm", "1000 500 100 1 0 100 0\n");
  MemoryStatus status{.length = 64};
  ASSERT_TRUE(ReadMemoryStatus(root.Path(), status));
  EXPECT_EQ(status.length, 64u);
  EXPECT_EQ(status.memory_load, 75u);
  EXPECT_EQ(status.total_physical, std::uint64_t{16} << 30);
  EXPECT_EQ(status.available_physical, std::uint64_t{4} << 30);
  EXPECT_EQ(status.total_page_file, (std::uint64_t{16} << 30) + (1024 << 10));
  EXPECT_EQ(status.available_page_file, (std::uint64_t{4} << 30) + (512 << 10));
  EXPECT_EQ(status.total_virtual - status.available_virtual, 1000u * 4096);
  EXPECT_EQ(status.available_extended_virtual, 0u);
}

TEST(MemoryStatusOnLinux, RefusesARecordOfAnotherLength) {
  for (const std::uint32_t length : {0u, 63u, 65u, 0xFFFFFFFFu}) {
    MemoryStatus status{.length = length};
    EXPECT_FALSE(GlobalMemoryStatusEx(status));
    EXPECT_EQ(LastError(), 87u);
  }
}

TEST(MemoryStatusOnLinux, FailsWhereTheSystemDoesNotTell) {
  const FakeRoot root;
  MemoryStatus status{.length = 64};
  EXPECT_FALSE(ReadMemoryStatus(root.Path(), status));
  EXPECT_EQ(LastError(), 2u);
  root.Write("proc/meminfo", "nonsense");
  EXPECT_FALSE(ReadMemoryStatus(root.Path(), status));
  EXPECT_EQ(LastError(), 31u);
}

TEST(MemoryStatusOnLinux, AgreesWithTheKernelOnThisMachine) {
  struct sysinfo info{};
  ASSERT_EQ(sysinfo(&info), 0);
  MemoryStatus status{.length = 64};
  ASSERT_TRUE(GlobalMemoryStatusEx(status));
  EXPECT_EQ(status.total_physical, std::uint64_t{info.totalram} * info.mem_unit);
  EXPECT_GT(status.available_physical, 0u);
  EXPECT_LE(status.available_physical, status.total_physical);
  EXPECT_LE(status.memory_load, 100u);
  EXPECT_LT(status.available_virtual, status.total_virtual);
}

TEST(PowerStatusOnLinux, IsReadFromThePowerSupplies) {
  const FakeRoot root;
  root.Write("sys/class/power_supply/AC/type", "Mains\n");
  root.Write("sys/class/power_supply/AC/online", "0\n");
  root.Write("sys/class/power_supply/BAT0/type", "Battery\n");
  root.Write("sys/class/power_supply/BAT0/present", "1\n");
  root.Write("sys/class/power_supply/BAT0/status", "Discharging\n");
  root.Write("sys/class/power_supply/BAT0/energy_now", "30000000\n");
  root.Write("sys/class/power_supply/BAT0/energy_full", "40000000\n");
  root.Write("sys/class/power_supply/BAT0/power_now", "15000000\n");
  root.Write("sys/class/power_supply/BAT1/type", "Battery\n");
  root.Write("sys/class/power_supply/BAT1/present", "0\n");
  PowerStatus status{};
  ASSERT_TRUE(ReadPowerStatus(root.Path(), status));
  EXPECT_EQ(status.ac_line_status, 0);
  EXPECT_EQ(status.battery_flag, 1);
  EXPECT_EQ(status.battery_life_percent, 75);
  EXPECT_EQ(status.battery_life_time, 7200u);
}

TEST(PowerStatusOnLinux, SurvivesSuppliesThatTellNonsense) {
  const FakeRoot root;
  root.Write("sys/class/power_supply/BAT0/type", "Battery\n");
  root.Write("sys/class/power_supply/BAT0/capacity", "fifty\n");
  root.Write("sys/class/power_supply/BAT0/energy_now", std::string(100000, '9'));
  std::filesystem::create_directories(root.Path() / "sys/class/power_supply/BAT0/energy_full");
  root.Write("sys/class/power_supply/file", "not a supply");
  PowerStatus status{};
  ASSERT_TRUE(ReadPowerStatus(root.Path(), status));
  EXPECT_EQ(status.battery_life_percent, 255);
}

TEST(PowerStatusOnLinux, IsUnknownWhereTheKernelShowsNoSupplies) {
  const FakeRoot root;
  PowerStatus status{};
  ASSERT_TRUE(ReadPowerStatus(root.Path(), status));
  EXPECT_EQ(status.ac_line_status, 255);
  EXPECT_EQ(status.battery_flag, 255);
  EXPECT_EQ(status.battery_life_percent, 255);
  EXPECT_EQ(status.battery_life_time, 0xFFFFFFFFu);
}

TEST(PowerStatusOnLinux, FailsWhereTheSuppliesMayNotBeRead) {
  const FakeRoot root;
  std::filesystem::create_directories(root.Path() / "sys/class/power_supply");
  root.Forbid("sys/class/power_supply");
  const WithoutRights without_rights;
  PowerStatus status{};
  EXPECT_FALSE(ReadPowerStatus(root.Path(), status));
  EXPECT_EQ(LastError(), 5u);
}

TEST(PowerStatusOnLinux, IsToldForThisMachine) {
  PowerStatus status{};
  ASSERT_TRUE(GetSystemPowerStatus(status));
  EXPECT_TRUE(status.battery_life_percent <= 100 || status.battery_life_percent == 255);
  EXPECT_TRUE(status.ac_line_status <= 1 || status.ac_line_status == 255);
}

}  // namespace
}  // namespace velmora::os
