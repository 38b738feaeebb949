// The table of modules, and what may be asked with its entries.
#include "ostrine/common/memory.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ostrine/device_record.h"
#include "platform/ostrine/hal.h"

namespace ostrine {
namespace {

using Table = std::unique_ptr<std::uint8_t, decltype(&std::free)>;

std::vector<MemoryModule> TwoModules() {
  return {{.slot = 0x1100,
           .locator = "ChannelA-DIMM0",
           .manufacturer = "Samsung",
           .serial_number = "416433E9",
           .part_number = "M471A1K43DB1-CWE    ",
           .capacity = std::uint64_t{8} << 30,
           .speed = 2933},
          {.slot = 0x1101, .locator = "ChannelB-DIMM0", .speed = 0}};
}

Table ModuleTable(const MemoryModules& modules) {
  void* table = nullptr;
  EXPECT_TRUE(MakeMemoryTable(modules, &table));
  return {static_cast<std::uint8_t*>(table), &std::free};
}

std::uint32_t NumberAt(const std::uint8_t* bytes) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

std::uint8_t* ModuleEntry(const Table& table, std::size_t number) {
  return table.get() + velmora::hal::kTableHeadSize + velmora::hal::kMemoryEntrySize * number;
}

std::optional<std::string> AskModuleText(const MemoryModules& modules, const void* device, unsigned int id) {
  std::array<char, 260> buffer{};
  Answer answer(buffer.data(), buffer.size(), nullptr);
  if (!AnswerMemory(modules, device, id, answer)) return std::nullopt;
  return std::string(buffer.data());
}

std::optional<std::uint64_t> AskModuleNumber(const MemoryModules& modules, const void* device,
                                             unsigned int id, unsigned int size) {
  std::array<std::uint8_t, 8> buffer{};
  Answer answer(buffer.data(), size, nullptr);
  if (!AnswerMemory(modules, device, id, answer)) return std::nullopt;
  std::uint64_t number = 0;
  std::memcpy(&number, buffer.data(), sizeof number);
  return number;
}

TEST(Memory, HandsOutATableWithTheCountAndANumberedEntryForEachModule) {
  const Table table = ModuleTable(TwoModules());
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(NumberAt(table.get() + 4), 2u);
  EXPECT_EQ(NumberAt(ModuleEntry(table, 0) + 8), 0u);
  EXPECT_EQ(NumberAt(ModuleEntry(table, 1) + 8), 1u);
}

TEST(Memory, HandsOutATableWithoutEntriesForAMachineWithoutModules) {
  const Table table = ModuleTable(std::vector<MemoryModule>());
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(NumberAt(table.get() + 4), 0u);
}

TEST(Memory, RefusesATableWhereTheModulesCannotBeRead) {
  void* table = nullptr;
  EXPECT_FALSE(MakeMemoryTable(std::nullopt, &table));
  EXPECT_EQ(table, nullptr);
  EXPECT_FALSE(MakeMemoryTable(TwoModules(), nullptr));
}

TEST(Memory, AnswersTheCountForNoDevice) {
  EXPECT_EQ(AskModuleNumber(TwoModules(), nullptr, 0, 4), 2u);
  EXPECT_EQ(AskModuleNumber(std::vector<MemoryModule>(), nullptr, 0, 4), 0u);
  EXPECT_EQ(AskModuleNumber(std::nullopt, nullptr, 0, 4), std::nullopt);
}

TEST(Memory, AnswersEveryFactOfAModule) {
  const Table table = ModuleTable(TwoModules());
  const void* const first = ModuleEntry(table, 0);
  EXPECT_EQ(AskModuleText(TwoModules(), first, 1), "ChannelA-DIMM0");
  EXPECT_EQ(AskModuleText(TwoModules(), first, 2), "Samsung");
  EXPECT_EQ(AskModuleText(TwoModules(), first, 3), "416433E9");
  EXPECT_EQ(AskModuleText(TwoModules(), first, 4), "M471A1K43DB1-CWE    ");
  EXPECT_EQ(AskModuleNumber(TwoModules(), first, 5, 8), std::uint64_t{8} << 30);
  EXPECT_EQ(AskModuleNumber(TwoModules(), first, 6, 4), 2933u);
}

TEST(Memory, SucceedsWithAnUnknownSpeedAndFailsForAnUnknownCapacity) {
  const Table table = ModuleTable(TwoModules());
  const void* const second = ModuleEntry(table, 1);
  EXPECT_EQ(AskModuleText(TwoModules(), second, 1), "ChannelB-DIMM0");
  EXPECT_EQ(AskModuleText(TwoModules(), second, 2), "");
  EXPECT_EQ(AskModuleNumber(TwoModules(), second, 5, 8), std::nullopt);
  EXPECT_EQ(AskModuleNumber(TwoModules(), second, 6, 4), 0u);
}

TEST(Memory, FailsForIdsThatTheClassDoesNotHave) {
  const Table table = ModuleTable(TwoModules());
  for (const unsigned int id : {7u, 8u, 0xFFFFFFFFu}) {
    EXPECT_EQ(AskModuleText(TwoModules(), ModuleEntry(table, 0), id), std::nullopt);
    EXPECT_EQ(AskModuleText(TwoModules(), nullptr, id), std::nullopt);
  }
}

TEST(Memory, AsksForTheCountWithoutAndForAllElseWithADevice) {
  const Table table = ModuleTable(TwoModules());
  EXPECT_EQ(AskModuleNumber(TwoModules(), ModuleEntry(table, 0), 0, 4), std::nullopt);
  for (unsigned int id = 1; id <= 6; ++id) EXPECT_EQ(AskModuleText(TwoModules(), nullptr, id), std::nullopt);
}

TEST(Memory, GivesNoCapacityToABufferOfFourBytes) {
  const Table table = ModuleTable(TwoModules());
  EXPECT_EQ(AskModuleNumber(TwoModules(), ModuleEntry(table, 0), 5, 4), std::nullopt);
}

TEST(Memory, FailsForAnEntryThatNoTableHas) {
  const Table table = ModuleTable(TwoModules());
  std::uint8_t* const entry = ModuleEntry(table, 0);
  for (const std::uint32_t number : {1u, 2u, 0xFFFFFFFFu}) {
    std::memcpy(entry + 8, &number, sizeof number);
    EXPECT_EQ(AskModuleText(TwoModules(), entry, 1), std::nullopt) << number;
  }
  const std::array<std::uint8_t, 16> zeros{};
  EXPECT_EQ(AskModuleText(TwoModules(), zeros.data(), 1), std::nullopt);
}

TEST(Memory, FailsForAModuleOfAMachineThatHasOtherModulesNow) {
  const Table table = ModuleTable(TwoModules());
  auto fewer = TwoModules();
  fewer.pop_back();
  EXPECT_EQ(AskModuleText(fewer, ModuleEntry(table, 0), 1), std::nullopt);
  auto elsewhere = TwoModules();
  elsewhere[0].slot = 0x1107;
  EXPECT_EQ(AskModuleText(elsewhere, ModuleEntry(table, 0), 1), std::nullopt);
  EXPECT_EQ(AskModuleText(elsewhere, ModuleEntry(table, 1), 1), "ChannelB-DIMM0");
  EXPECT_EQ(AskModuleText(std::nullopt, ModuleEntry(table, 0), 1), std::nullopt);
}

TEST(Memory, ReadsAnEntryAtAnyAddress) {
  const Table table = ModuleTable(TwoModules());
  std::array<std::uint8_t, 17> copy{};
  std::memcpy(copy.data() + 1, ModuleEntry(table, 1), 16);
  EXPECT_EQ(AskModuleText(TwoModules(), copy.data() + 1, 1), "ChannelB-DIMM0");
}

TEST(Memory, IsAnsweredThroughTheExportedFunctionsAsOnThisMachine) {
  constexpr unsigned int kMemoryClass = 13;
  const auto modules = ReadMemoryModulesOfMachine();
  for (int i = 0; i < 2; ++i) {
    void* raw = nullptr;
    EXPECT_EQ(HalInit(kMemoryClass, &raw) != 0, modules.has_value());
    const Table table(static_cast<std::uint8_t*>(raw), &std::free);
    EXPECT_EQ(table != nullptr, modules.has_value());
    std::uint32_t count = 0;
    const int succeeded = HalQueryInformation(kMemoryClass, nullptr, 0, &count, sizeof count, nullptr);
    EXPECT_EQ(succeeded != 0, modules.has_value());
    EXPECT_EQ(count, modules ? modules->size() : 0u);
    for (std::size_t number = 0; number < count; ++number) {
      std::array<char, 260> text{};
      EXPECT_NE(
          HalQueryInformation(kMemoryClass, ModuleEntry(table, number), 1, text.data(), text.size(), nullptr),
          0);
      EXPECT_EQ(text.data(), (*modules)[number].locator);
    }
  }
}

}  // namespace
}  // namespace ostrine
