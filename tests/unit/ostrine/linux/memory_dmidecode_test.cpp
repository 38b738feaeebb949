// Synthetic tables as dmidecode, an independent reader of the standard, describes them.
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "../memory_structure.h"
#include "../processor_structure.h"
#include "command.h"
#include "fake_root.h"
#include "ostrine/common/memory_module.h"
#include "ostrine/common/processor_firmware.h"

namespace ostrine {
namespace {

using test::ByteVector;

/// The key and value lines of one structure.
struct Block {
  std::vector<std::pair<std::string, std::string>> lines;

  std::string Value(std::string_view key) const {
    for (const auto& [name, value] : lines) {
      if (name == key) return value;
    }
    return "(no line)";
  }
};

/// What dmidecode says of the structures of `type`; nothing where it is not installed.
std::optional<std::vector<Block>> Describe(const ByteVector& table, int type) {
  // A dump begins with an entry point that says that the table follows it.
  constexpr std::size_t kTableAt = 0x20;
  ByteVector dump = test::EntryPoint64(static_cast<std::uint32_t>(table.size()));
  test::PutNumber(dump, 0x10, 8, kTableAt);
  test::FixChecksum(dump, 0, dump.size(), 5);
  dump.resize(kTableAt);
  dump.insert(dump.end(), table.begin(), table.end());
  const test::FakeRoot root;
  root.Write("dump", dump);
  const auto output = test::OutputOf("PATH=$PATH:/usr/sbin dmidecode --from-dump " +
                                     (root.Path() / "dump").string() + " -t " + std::to_string(type));
  if (!output) return std::nullopt;

  std::vector<Block> blocks;
  std::istringstream stream(*output);
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with("Handle ")) blocks.emplace_back();
    const std::size_t end = line.find(": ");
    if (blocks.empty() || !line.starts_with('\t') || end == std::string::npos) continue;
    blocks.back().lines.emplace_back(line.substr(1, end - 1), line.substr(end + 2));
  }
  return blocks;
}

/// Bytes of a size such as "16 GB".
std::uint64_t BytesOf(const std::string& text) {
  std::istringstream stream(text);
  std::uint64_t number = 0;
  std::string unit;
  stream >> number >> unit;
  constexpr std::string_view kUnits = "kMGT";
  const std::size_t power = kUnits.find(unit.substr(0, 1));
  return unit.size() != 2 || power == std::string_view::npos ? 0 : number << (10 * (power + 1));
}

/// The number of "3200 MT/s" or "100 MHz"; 0 of "Unknown".
std::uint32_t NumberOf(const std::string& text) {
  std::uint32_t number = 0;
  std::istringstream(text) >> number;
  return number;
}

std::string TextOf(const std::string& value) { return value == "Not Specified" ? "" : value; }

void ExpectSame(const std::vector<MemoryModule>& modules, const std::vector<Block>& blocks) {
  std::vector<const Block*> populated;
  for (const Block& block : blocks) {
    if (block.Value("Size") != "No Module Installed") populated.push_back(&block);
  }
  ASSERT_EQ(modules.size(), populated.size());
  for (std::size_t i = 0; i < modules.size(); ++i) {
    SCOPED_TRACE(i);
    const MemoryModule& module = modules[i];
    const Block& block = *populated[i];
    EXPECT_EQ(module.capacity.value_or(0), BytesOf(block.Value("Size"))) << block.Value("Size");
    EXPECT_EQ(module.locator, TextOf(block.Value("Locator")));
    EXPECT_EQ(module.manufacturer, TextOf(block.Value("Manufacturer")));
    EXPECT_EQ(module.serial_number, TextOf(block.Value("Serial Number")));
    EXPECT_EQ(module.part_number, TextOf(block.Value("Part Number")));
    const std::uint32_t configured = NumberOf(block.Value("Configured Memory Speed"));
    EXPECT_EQ(module.speed, configured != 0 ? configured : NumberOf(block.Value("Speed")));
  }
}

TEST(MemoryDmidecode, ReadsTheSameModules) {
  const ByteVector table =
      test::MemoryTable({{},
                         {.size = 0, .locator = "empty"},
                         {.size = 0x8000 | 512, .locator = "in KiB"},
                         {.size = 0x7FFF, .extended_size = 32768, .configured_speed = 0},
                         {.size = 0x7FFF, .extended_size = 65536, .speed = 5600, .configured_speed = 4800},
                         {.size = 0xFFFF, .manufacturer = "To Be Filled By O.E.M."},
                         {.speed = 0, .configured_speed = 0},
                         {.configured_speed = 0xFFFF, .extended_configured_speed = 70000},
                         {.speed = 0xFFFF, .configured_speed = 0, .extended_speed = 80000},
                         {.locator = "", .manufacturer = "", .serial_number = "", .part_number = ""},
                         {.locator = "of SMBIOS 2.3", .length = 0x1B},
                         {.locator = "of SMBIOS 2.7", .length = 0x22}});
  const auto blocks = Describe(table, 17);
  if (!blocks) GTEST_SKIP() << "dmidecode is not there";
  ASSERT_EQ(blocks->size(), 12u);
  ExpectSame(ReadMemoryModules({.bytes = table}), *blocks);
}

TEST(MemoryDmidecode, ReadsTheSameFromRandomModules) {
  std::mt19937 random(17);
  std::vector<test::MemoryStructure> devices;
  for (int i = 0; i < 200; ++i) {
    test::MemoryStructure device;
    device.size = static_cast<std::uint16_t>(random());
    if (random() % 4 == 0) device.size = 0x7FFF;
    device.extended_size = static_cast<std::uint32_t>(1024 * (1 + random() % 1024));
    device.speed = static_cast<std::uint16_t>(random() % 3 == 0 ? 0xFFFF : random());
    device.configured_speed =
        static_cast<std::uint16_t>(random() % 3 == 0 ? 0xFFFF : random() % 2 * random());
    device.extended_speed = static_cast<std::uint32_t>(random() & 0x7FFFFFFF);
    device.extended_configured_speed = static_cast<std::uint32_t>(random() & 0x7FFFFFFF);
    device.part_number = "part " + std::to_string(random()) + std::string(random() % 4, ' ');
    // Zero KiB is a size to dmidecode, and an empty slot here.
    if (device.size == 0x8000) device.size = 0;
    devices.push_back(device);
  }
  const ByteVector table = test::MemoryTable(devices);
  const auto blocks = Describe(table, 17);
  if (!blocks) GTEST_SKIP() << "dmidecode is not there";
  ASSERT_EQ(blocks->size(), 200u);
  ExpectSame(ReadMemoryModules({.bytes = table}), *blocks);
}

TEST(MemoryDmidecode, ReadsTheSameProcessor) {
  for (const test::ProcessorStructure& processor :
       {test::ProcessorStructure{}, test::ProcessorStructure{.external_clock = 0, .maximum_clock = 65535},
        test::ProcessorStructure{.manufacturer = "Advanced Micro Devices, Inc.", .current_clock = 0}}) {
    ByteVector table;
    test::AppendProcessor(table, processor);
    test::AppendEnd(table);
    const auto blocks = Describe(table, 4);
    if (!blocks) GTEST_SKIP() << "dmidecode is not there";
    ASSERT_EQ(blocks->size(), 1u);
    const Block& block = blocks->front();
    const auto ours = ReadFirmwareProcessor({.bytes = table});
    ASSERT_TRUE(ours);
    EXPECT_EQ(ours->manufacturer, block.Value("Manufacturer"));
    EXPECT_EQ(ours->name, block.Value("Version"));
    EXPECT_EQ(ours->external_clock.value_or(0), NumberOf(block.Value("External Clock")));
    EXPECT_EQ(ours->maximum_clock.value_or(0), NumberOf(block.Value("Max Speed")));
    EXPECT_EQ(ours->current_clock.value_or(0), NumberOf(block.Value("Current Speed")));
  }
}

}  // namespace
}  // namespace ostrine
