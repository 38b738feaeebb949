#include "velmora/cpu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "simulator/run.h"

namespace {

using testing::ElementsAre;

simulator::Machine MachineWithCpu() {
  auto machine = simulator::BlankMachine();
  machine.cpu = {.vendor = "GenuineIntel",
                 .name = "11th Gen Intel(R) Core(TM) i7-1165G7 @ 2.80GHz",
                 .address_bits = 39,
                 .current_clock = 1690,
                 .external_clock = 100,
                 .maximum_clock = 4700,
                 .cores = 4,
                 .threads = 8,
                 .l1_size = 320,
                 .l2_size = 5120,
                 .l3_size = 12288,
                 .l1_associativity = "12-way Set-Associative",
                 .l2_associativity = "20-way Set-Associative",
                 .l3_associativity = "12-way Set-Associative",
                 .load = 17,
                 .kind = 1};
  return machine;
}

std::wstring ManufacturerFor(const char* vendor) {
  auto machine = MachineWithCpu();
  machine.cpu->vendor = vendor;
  const auto run = simulator::Use(machine);
  return CCpu().GetCpuManufacturer();
}

TEST(Cpu, AsksEachTextWithItsOwnIdAndBuffer) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  CCpu cpu;
  cpu.GetCpuName();
  cpu.GetCpuManufacturer();
  cpu.GetL1Associativity();
  cpu.GetL2Associativity();
  cpu.GetL3Associativity();

  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(0, null)",                       //
                                       "HalQueryInformation(0, null, 1, 50)",    //
                                       "HalQueryInformation(0, null, 0, 260)",   //
                                       "HalQueryInformation(0, null, 13, 260)",  //
                                       "HalQueryInformation(0, null, 14, 260)",  //
                                       "HalQueryInformation(0, null, 15, 260)"));
}

TEST(Cpu, AsksEachNumberWithItsOwnId) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  CCpu cpu;
  cpu.GetPhysicalAddressBits();
  cpu.GetLinearAddressBits();
  cpu.GetCpuCurClock();
  cpu.GetCpuExtClock();
  cpu.GetCpuMaxClock();
  cpu.GetCpuCoreNumbers();
  cpu.GetCpuCoreThreads();
  cpu.GetL1CacheSize();
  cpu.GetL2CacheSize();
  cpu.GetL3CacheSize();
  cpu.GetCpuLoadPercent();
  cpu.GetCputype();

  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(0, null)",                     //
                                       "HalQueryInformation(0, null, 4, 4)",   //
                                       "HalQueryInformation(0, null, 4, 4)",   //
                                       "HalQueryInformation(0, null, 5, 4)",   //
                                       "HalQueryInformation(0, null, 6, 4)",   //
                                       "HalQueryInformation(0, null, 7, 4)",   //
                                       "HalQueryInformation(0, null, 8, 4)",   //
                                       "HalQueryInformation(0, null, 9, 4)",   //
                                       "HalQueryInformation(0, null, 10, 4)",  //
                                       "HalQueryInformation(0, null, 11, 4)",  //
                                       "HalQueryInformation(0, null, 12, 4)",  //
                                       "HalQueryInformation(0, null, 18, 4)",  //
                                       "HalQueryInformation(0, null, 19, 4)"));
}

TEST(Cpu, GivesTheValuesOfTheProcessor) {
  const auto run = simulator::Use(MachineWithCpu());
  CCpu cpu;

  EXPECT_EQ(cpu.GetCpuName(), L"11th Gen Intel(R) Core(TM) i7-1165G7 @ 2.80GHz");
  EXPECT_EQ(cpu.GetPhysicalAddressBits(), 39U);
  EXPECT_EQ(cpu.GetCpuCurClock(), 1690U);
  EXPECT_EQ(cpu.GetCpuExtClock(), 100U);
  EXPECT_EQ(cpu.GetCpuMaxClock(), 4700U);
  EXPECT_EQ(cpu.GetCpuCoreNumbers(), 4U);
  EXPECT_EQ(cpu.GetCpuCoreThreads(), 8U);
  EXPECT_EQ(cpu.GetL1CacheSize(), 320U);
  EXPECT_EQ(cpu.GetL2CacheSize(), 5120U);
  EXPECT_EQ(cpu.GetL3CacheSize(), 12288U);
  EXPECT_EQ(cpu.GetL1Associativity(), L"12-way Set-Associative");
  EXPECT_EQ(cpu.GetL2Associativity(), L"20-way Set-Associative");
  EXPECT_EQ(cpu.GetL3Associativity(), L"12-way Set-Associative");
  EXPECT_EQ(cpu.GetCpuLoadPercent(), 17U);
  EXPECT_EQ(cpu.GetCputype(), CPU_TYPE_INTEL);
}

TEST(Cpu, CallsGenuineIntelIntel) { EXPECT_EQ(ManufacturerFor("GenuineIntel"), L"Intel"); }

TEST(Cpu, GivesEveryOtherVendorAsItIs) {
  EXPECT_EQ(ManufacturerFor("AuthenticAMD"), L"AuthenticAMD");
  EXPECT_EQ(ManufacturerFor("GenuineIntel "), L"GenuineIntel ");
  EXPECT_EQ(ManufacturerFor("GenuineInte"), L"GenuineInte");
  EXPECT_EQ(ManufacturerFor("genuineintel"), L"genuineintel");
  EXPECT_EQ(ManufacturerFor("GENUINEINTEL"), L"GENUINEINTEL");
  EXPECT_EQ(ManufacturerFor(""), L"");
}

TEST(Cpu, CutsANameAfter49Characters) {
  auto machine = MachineWithCpu();
  machine.cpu->name = std::string(60, 'x');
  const auto run = simulator::Use(machine);

  EXPECT_EQ(CCpu().GetCpuName(), std::wstring(49, L'x'));
}

TEST(Cpu, ReportsOneWidthForPhysicalAndLinearAddresses) {
  auto machine = MachineWithCpu();
  machine.cpu->address_bits = 0x3027;
  const auto run = simulator::Use(machine);
  CCpu cpu;

  EXPECT_EQ(cpu.GetLinearAddressBits(), cpu.GetPhysicalAddressBits());
  EXPECT_EQ(cpu.GetLinearAddressBits(), 0x3027U);
}

TEST(Cpu, ReportsNoUsageWhateverTheLoadAndAsksNothing) {
  auto machine = MachineWithCpu();
  machine.cpu->load = 100;
  const auto run = simulator::Use(machine);
  CCpu cpu;

  EXPECT_EQ(cpu.GetCpuUsage(), 0.0F);
  EXPECT_EQ(run.Calls("HalQueryInformation"), 0);
}

TEST(Cpu, PassesAKindThatItDoesNotKnowOn) {
  auto machine = MachineWithCpu();
  machine.cpu->kind = 77;
  const auto run = simulator::Use(machine);

  EXPECT_EQ(static_cast<std::uint32_t>(CCpu().GetCputype()), 77U);
}

TEST(Cpu, GivesItsFailureValuesWhenQueriesFail) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  CCpu cpu;

  EXPECT_EQ(cpu.GetCputype(), CPU_TYPE_UNKNOWN);
  EXPECT_EQ(cpu.GetCpuLoadPercent(), 0U);
  EXPECT_EQ(cpu.GetCpuMaxClock(), 0U);
  EXPECT_EQ(cpu.GetCpuName(), L"");
  EXPECT_EQ(cpu.GetCpuManufacturer(), L"");
}

TEST(Cpu, AsksAgainOnEveryCall) {
  auto run = simulator::Use(MachineWithCpu());
  CCpu cpu;
  EXPECT_EQ(cpu.GetCpuCurClock(), 1690U);
  run.machine().cpu->current_clock = 3100;
  EXPECT_EQ(cpu.GetCpuCurClock(), 3100U);
}

}  // namespace
