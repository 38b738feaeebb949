#include "ostrine/common/memory_module.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "memory_structure.h"

namespace ostrine {
namespace {

using test::ByteVector;
using test::MemoryStructure;

constexpr std::uint64_t kGibibyte = std::uint64_t{1} << 30;

std::vector<MemoryModule> ModulesOf(const std::vector<MemoryStructure>& devices) {
  const ByteVector table = test::MemoryTable(devices);
  return ReadMemoryModules({.bytes = table});
}

std::optional<std::uint64_t> CapacityOf(const MemoryStructure& device) {
  const auto modules = ModulesOf({device});
  EXPECT_EQ(modules.size(), 1u);
  return modules.empty() ? std::nullopt : modules.front().capacity;
}

std::uint32_t SpeedOf(const MemoryStructure& device) {
  const auto modules = ModulesOf({device});
  EXPECT_EQ(modules.size(), 1u);
  return modules.empty() ? 0 : modules.front().speed;
}

TEST(MemoryModule, HasTheFirmwaresTextsWithPlaceholdersAndPadding) {
  const auto modules = ModulesOf({{.manufacturer = "To Be Filled By O.E.M.", .serial_number = "00000000  "}});
  ASSERT_EQ(modules.size(), 1u);
  EXPECT_EQ(modules[0].locator, "ChannelA-DIMM0");
  EXPECT_EQ(modules[0].manufacturer, "To Be Filled By O.E.M.");
  EXPECT_EQ(modules[0].serial_number, "00000000  ");
  EXPECT_EQ(modules[0].part_number, "M471A1K43DB1-CWE    ");
}

TEST(MemoryModule, HasEmptyTextsWhereTheFirmwareHasNone) {
  const auto modules =
      ModulesOf({{.locator = "", .manufacturer = "", .serial_number = "", .part_number = ""}});
  ASSERT_EQ(modules.size(), 1u);
  EXPECT_EQ(modules[0].locator + modules[0].manufacturer + modules[0].serial_number + modules[0].part_number,
            "");
}

TEST(MemoryModule, ExistsForPopulatedSlotsOnlyInTheFirmwaresOrder) {
  const auto modules = ModulesOf({{.size = 0, .locator = "empty"},
                                  {.locator = "first"},
                                  {.size = 0x8000, .locator = "empty, in KiB"},
                                  {.size = 0xFFFF, .locator = "of unknown size"},
                                  {.locator = "last"}});
  ASSERT_EQ(modules.size(), 3u);
  EXPECT_EQ(modules[0].locator, "first");
  EXPECT_EQ(modules[1].locator, "of unknown size");
  EXPECT_EQ(modules[2].locator, "last");
  EXPECT_NE(modules[0].slot, modules[1].slot);
}

TEST(MemoryModule, HasItsCapacityInMebibytesKibibytesOrTheExtendedField) {
  EXPECT_EQ(CapacityOf({.size = 8192}), 8 * kGibibyte);
  EXPECT_EQ(CapacityOf({.size = 1}), std::uint64_t{1} << 20);
  EXPECT_EQ(CapacityOf({.size = 0x7FFE}), std::uint64_t{0x7FFE} << 20);
  EXPECT_EQ(CapacityOf({.size = 0x8000 | 512}), 512u * 1024);
  EXPECT_EQ(CapacityOf({.size = 0xFFFE}), std::uint64_t{0x7FFE} << 10);
  EXPECT_EQ(CapacityOf({.size = 0x7FFF, .extended_size = 32768}), 32 * kGibibyte);
  EXPECT_EQ(CapacityOf({.size = 0x7FFF, .extended_size = 0x80000000 | 65536}), 64 * kGibibyte);
  EXPECT_EQ(CapacityOf({.size = 0x7FFF, .extended_size = 0x7FFFFFFF}), std::uint64_t{0x7FFFFFFF} << 20);
}

TEST(MemoryModule, HasNoCapacityThatTheFirmwareDoesNotKnow) {
  EXPECT_EQ(CapacityOf({.size = 0xFFFF}), std::nullopt);
  EXPECT_EQ(CapacityOf({.size = 0xFFFF, .extended_size = 8192}), std::nullopt);
  EXPECT_EQ(CapacityOf({.size = 0x7FFF, .extended_size = 0}), std::nullopt);
  EXPECT_EQ(CapacityOf({.size = 0x7FFF, .extended_size = 32768, .length = 0x1F}), std::nullopt);
}

TEST(MemoryModule, HasTheConfiguredSpeedOrElseItsOwn) {
  EXPECT_EQ(SpeedOf({.speed = 3200, .configured_speed = 2933}), 2933u);
  EXPECT_EQ(SpeedOf({.speed = 3200, .configured_speed = 0}), 3200u);
  EXPECT_EQ(SpeedOf({.speed = 3200, .length = 0x20}), 3200u);
  EXPECT_EQ(SpeedOf({.speed = 0, .configured_speed = 0}), 0u);
  EXPECT_EQ(SpeedOf({.length = 0x15}), 0u);
}

TEST(MemoryModule, HasSpeedsThatDoNotFitSixteenBits) {
  EXPECT_EQ(SpeedOf({.speed = 4800, .configured_speed = 0xFFFF, .extended_configured_speed = 70000}), 70000u);
  EXPECT_EQ(SpeedOf({.configured_speed = 0xFFFF, .extended_configured_speed = 0x80000000 | 70000}), 70000u);
  EXPECT_EQ(SpeedOf({.speed = 0xFFFF, .configured_speed = 0, .extended_speed = 80000}), 80000u);
  EXPECT_EQ(SpeedOf({.speed = 4800, .configured_speed = 0xFFFF, .extended_configured_speed = 0}), 4800u);
  EXPECT_EQ(SpeedOf({.speed = 0xFFFF, .configured_speed = 0xFFFF, .length = 0x54}), 0u);
}

TEST(MemoryModule, IsNoMemoryThatServesAnotherUse) {
  ByteVector table;
  test::AppendMemory(table, {.array = 0x2000, .locator = "BIOS chip"}, 0x10);
  test::AppendMemory(table, {.array = 0x1000, .locator = "module"}, 0x11);
  test::AppendMemory(table, {.array = 0x3000, .locator = "of an array that is missing"}, 0x12);
  test::AppendMemoryArray(table, 0x1000, 3);
  test::AppendMemoryArray(table, 0x2000, 5);
  const auto modules = ReadMemoryModules({.bytes = table});
  ASSERT_EQ(modules.size(), 2u);
  EXPECT_EQ(modules[0].locator, "module");
  EXPECT_EQ(modules[1].locator, "of an array that is missing");
}

TEST(MemoryModule, IsNotThereInAStructureTooShortForASize) {
  EXPECT_TRUE(ModulesOf({{.length = 0x0D}}).empty());
  EXPECT_EQ(ModulesOf({{.length = 0x0E}}).size(), 1u);
}

TEST(MemoryModule, IsNeverWorthMoreThanItsBytesWhateverTheTableHolds) {
  std::mt19937 random(20230314);
  for (int round = 0; round < 2000; ++round) {
    ByteVector table = test::MemoryTable({{}, {.size = 0x7FFF, .extended_size = 32768}});
    for (int i = 0; i < 8; ++i) table[random() % table.size()] = static_cast<std::uint8_t>(random());
    table.resize(table.size() - random() % table.size());
    for (const MemoryModule& module : ReadMemoryModules({.bytes = table})) {
      EXPECT_LE(module.locator.size(), table.size());
      EXPECT_LE(module.speed, 0x7FFFFFFFu);
      EXPECT_NE(module.capacity, 0u);
    }
  }
}

}  // namespace
}  // namespace ostrine
