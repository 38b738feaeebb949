#include "velmora/memory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "inventory/memory_load.h"
#include "simulator/run.h"

namespace {

using testing::ElementsAre;

constexpr std::uint64_t kGiB = std::uint64_t{1} << 30;

simulator::MemoryModule Module(const char* locator, std::uint64_t capacity) {
  return {.locator = locator,
          .manufacturer = "Samsung",
          .serial_number = "37D2AF01",
          .part_number = "M471A1K43DB1-CWE    ",
          .capacity = capacity,
          .speed = 3200};
}

simulator::Machine MachineWithModules(int count) {
  auto machine = simulator::BlankMachine();
  machine.memory_modules.emplace();
  for (int i = 0; i < count; ++i) {
    machine.memory_modules->push_back(
        Module(("DIMM " + std::to_string(i)).c_str(), kGiB << static_cast<unsigned>(i)));
  }
  return machine;
}

TEST(Memory, GivesTheFactsOfEachModule) {
  const auto run = simulator::Use(MachineWithModules(2));
  CMemory memory;
  unsigned int count = 7;
  std::wstring text;
  unsigned int speed = 7;
  std::uint64_t capacity = 7;

  EXPECT_EQ(memory.GetMemoryNums(count), 1);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(memory.GetLocatorbyIndex(text, 1), 1);
  EXPECT_EQ(text, L"DIMM 1");
  EXPECT_EQ(memory.GetManufacturerbyIndex(text, 1), 1);
  EXPECT_EQ(text, L"Samsung");
  EXPECT_EQ(memory.GetSerialNumberbyIndex(text, 1), 1);
  EXPECT_EQ(text, L"37D2AF01");
  EXPECT_EQ(memory.GetPartNumberbyIndex(text, 1), 1);
  EXPECT_EQ(text, L"M471A1K43DB1-CWE    ");
  EXPECT_EQ(memory.GetSpeedbyIndex(speed, 1), 1);
  EXPECT_EQ(speed, 3200U);
  EXPECT_EQ(memory.GetCapacitybyIndex(capacity, 1), 1);
  EXPECT_EQ(capacity, 2 * kGiB);
}

TEST(Memory, AsksModulesByTheirEntriesInTheTable) {
  const auto run = simulator::Use(MachineWithModules(3));
  CMemory memory;
  std::wstring text;
  std::uint64_t capacity = 0;
  unsigned int speed = 0;
  memory.GetLocatorbyIndex(text, 2);
  memory.GetCapacitybyIndex(capacity, 0);
  memory.GetSpeedbyIndex(speed, 1);

  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(13, pointer)",                      //
                                       "HalQueryInformation(13, null, 0, 4)",       //
                                       "HalQueryInformation(13, entry 2, 1, 260)",  //
                                       "MultiByteToWideChar(0, 0, 6, 260)",         //
                                       "HalQueryInformation(13, null, 0, 4)",       //
                                       "HalQueryInformation(13, entry 0, 5, 8)",    //
                                       "HalQueryInformation(13, null, 0, 4)",       //
                                       "HalQueryInformation(13, entry 1, 6, 4)"));
}

TEST(Memory, ResetsItsOutputAndFailsForAnIndexThatNoModuleHas) {
  const auto run = simulator::Use(MachineWithModules(2));
  CMemory memory;
  for (const int index : {-1, 2, 1000000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    std::wstring text = L"old";
    unsigned int speed = 7;
    std::uint64_t capacity = 7;
    EXPECT_EQ(memory.GetLocatorbyIndex(text, index), 0);
    EXPECT_EQ(text, L"");
    EXPECT_EQ(memory.GetSpeedbyIndex(speed, index), 0);
    EXPECT_EQ(speed, 0U);
    EXPECT_EQ(memory.GetCapacitybyIndex(capacity, index), 0);
    EXPECT_EQ(capacity, 0U);
  }
}

TEST(Memory, CountsItsModulesButReadsNoneWithoutATable) {
  auto run = simulator::Use(MachineWithModules(2));
  run.Inject(simulator::Fault::kFail, 0);
  CMemory memory;
  unsigned int count = 0;
  std::wstring text = L"old";
  std::uint64_t total = 7;

  EXPECT_EQ(memory.GetMemoryNums(count), 1);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(memory.GetManufacturerbyIndex(text, 0), 0);
  EXPECT_EQ(text, L"");
  EXPECT_EQ(memory.GetTotalMemoryNums(total), 1);
  EXPECT_EQ(total, 0U);
}

TEST(Memory, AddsUpTheCapacitiesOfAllModules) {
  const auto run = simulator::Use(MachineWithModules(4));
  std::uint64_t total = 0;
  EXPECT_EQ(CMemory().GetTotalMemoryNums(total), 1);
  EXPECT_EQ(total, 15 * kGiB);
}

TEST(Memory, StopsAddingAtTheFirstModuleThatFailsAndStillSucceeds) {
  auto machine = MachineWithModules(4);
  (*machine.memory_modules)[2].capacity.reset();
  const auto run = simulator::Use(machine);
  std::uint64_t total = 0;

  EXPECT_EQ(CMemory().GetTotalMemoryNums(total), 1);
  EXPECT_EQ(total, 3 * kGiB);
}

TEST(Memory, HasNoTotalWithoutModules) {
  const auto run = simulator::Use(MachineWithModules(0));
  std::uint64_t total = 7;
  EXPECT_EQ(CMemory().GetTotalMemoryNums(total), 0);
  EXPECT_EQ(total, 0U);
}

TEST(Memory, HasNoTotalWhenTheCountCannotBeRead) {
  auto run = simulator::Use(MachineWithModules(2));
  run.Inject(simulator::Fault::kFail, 1);
  std::uint64_t total = 7;
  unsigned int count = 7;
  CMemory memory;
  EXPECT_EQ(memory.GetTotalMemoryNums(total), 0);
  EXPECT_EQ(total, 0U);

  run.Inject(simulator::Fault::kFail, 2);
  EXPECT_EQ(memory.GetMemoryNums(count), 0);
  EXPECT_EQ(count, 0U);
}

TEST(Memory, GivesEachCopyATableOfItsOwn) {
  const auto run = simulator::Use(MachineWithModules(2));
  CMemory memory;
  CMemory copy(memory);
  CMemory assigned;
  assigned = copy;
  assigned = *&assigned;
  std::wstring text;

  EXPECT_EQ(run.Calls("HalInit"), 4) << "one for each object, one for the assignment, none for itself";
  EXPECT_EQ(copy.GetLocatorbyIndex(text, 1), 1);
  EXPECT_EQ(assigned.GetLocatorbyIndex(text, 1), 1);
}

TEST(Memory, AsksTheSystemForItsLoad) {
  auto machine = simulator::EmptyMachine();
  machine.memory_status = {.load_percent = 63, .total_physical = 16 * kGiB, .available_physical = 4 * kGiB};
  const auto run = simulator::Use(machine);
  CMemory memory;

  EXPECT_EQ(memory.GetMemoryLoad(), 63U);
  EXPECT_FLOAT_EQ(memory.GetMemoryLoadF(), 0.75F);
  EXPECT_THAT(run.Trace(),
              ElementsAre("HalInit(13, pointer)", "GlobalMemoryStatusEx(64)", "GlobalMemoryStatusEx(64)"));
}

TEST(Memory, HasNoLoadWhenTheSystemDoesNotAnswer) {
  auto machine = simulator::EmptyMachine();
  machine.memory_status = {.load_percent = 63, .total_physical = 16 * kGiB, .available_physical = 4 * kGiB};
  auto run = simulator::Use(machine);
  run.Inject(simulator::Fault::kFail, 1, true);
  CMemory memory;

  EXPECT_EQ(memory.GetMemoryLoad(), 0U);
  EXPECT_EQ(memory.GetMemoryLoadF(), 0.0F);
}

TEST(MemoryLoad, IsTheUsedFractionToFourPlaces) {
  EXPECT_FLOAT_EQ(velmora::UsedFraction(16 * kGiB, 4 * kGiB), 0.75F);
  EXPECT_FLOAT_EQ(velmora::UsedFraction(16 * kGiB, 16 * kGiB), 0.0F);
  EXPECT_FLOAT_EQ(velmora::UsedFraction(16 * kGiB, 0), 1.0F);
  EXPECT_FLOAT_EQ(velmora::UsedFraction(30000, 1), 1.0F) << "less than a whole step counts as nothing";
  EXPECT_FLOAT_EQ(velmora::UsedFraction(30000, 3), 0.9999F);
  EXPECT_FLOAT_EQ(velmora::UsedFraction(39999, 3), 0.9999F) << "the step is rounded down";
}

TEST(MemoryLoad, IsZeroForTenThousandBytesOrLess) {
  EXPECT_EQ(velmora::UsedFraction(10000, 5000), 0.0F);
  EXPECT_EQ(velmora::UsedFraction(0, 0), 0.0F);
  EXPECT_FLOAT_EQ(velmora::UsedFraction(10001, 5000), 0.5F);
}

TEST(MemoryLoad, KeepsTheLow32BitsOfTheFreeSteps) {
  EXPECT_FLOAT_EQ(velmora::UsedFraction(10001, (std::uint64_t{1} << 32) + 2500), 0.75F);
}

}  // namespace
