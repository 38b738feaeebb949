// What is read of the memory modules below a root folder.
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

#include "../memory_structure.h"
#include "fake_root.h"
#include "ostrine/linux/memory.h"

namespace ostrine {
namespace {

using test::FakeRoot;

constexpr const char* kProperties =
    "I:1234567\n"
    "E:ID_VENDOR=LENOVO\n"
    "E:MEMORY_ARRAY_LOCATION=System Board Or Motherboard\n"
    "E:MEMORY_ARRAY_NUM_DEVICES=4\n"
    "E:MEMORY_DEVICE_0_TOTAL_WIDTH=64\n"
    "E:MEMORY_DEVICE_0_SIZE=8589934592\n"
    "E:MEMORY_DEVICE_0_FORM_FACTOR=SODIMM\n"
    "E:MEMORY_DEVICE_0_LOCATOR=ChannelA-DIMM0\n"
    "E:MEMORY_DEVICE_0_BANK_LOCATOR=BANK 0\n"
    "E:MEMORY_DEVICE_0_SPEED_MTS=3200\n"
    "E:MEMORY_DEVICE_0_MANUFACTURER=Samsung\n"
    "E:MEMORY_DEVICE_0_SERIAL_NUMBER=416433E9\n"
    "E:MEMORY_DEVICE_0_PART_NUMBER=M471A1K43DB1-CWE\n"
    "E:MEMORY_DEVICE_0_CONFIGURED_SPEED_MTS=2933\n"
    "E:MEMORY_DEVICE_1_PRESENT=0\n"
    "E:MEMORY_DEVICE_1_LOCATOR=ChannelA-DIMM1\n"
    "E:MEMORY_DEVICE_10_LOCATOR=ChannelB-DIMM0\n"
    "E:MEMORY_DEVICE_10_SPEED_MTS=3200\n"
    "E:MEMORY_DEVICE_10_MANUFACTURER=Not Specified\n"
    "E:MEMORY_DEVICE_10_SERIAL_NUMBER=<BAD INDEX>\n"
    "E:MEMORY_DEVICE_2_SIZE=4294967296\n"
    "E:MEMORY_DEVICE_2_SPEED_MTS=65535\n"
    "V:1\n";

void WriteMemoryTables(const FakeRoot& root) {
  const auto table = test::MemoryTable({{.size = 0}, {.locator = "of the table"}});
  root.Write("sys/firmware/dmi/tables/smbios_entry_point",
             test::EntryPoint64(static_cast<std::uint32_t>(table.size())));
  root.Write("sys/firmware/dmi/tables/DMI", table);
}

TEST(MemoryLinux, ReadsTheFirmwaresTableWhereItMay) {
  const FakeRoot root;
  WriteMemoryTables(root);
  root.Write("run/udev/data/+dmi:id", kProperties);
  const auto modules = ReadMemoryModulesBelow(root.Path());
  ASSERT_TRUE(modules);
  ASSERT_EQ(modules->size(), 1u);
  EXPECT_EQ(modules->front().locator, "of the table");
}

TEST(MemoryLinux, ReadsTheDeviceManagersPropertiesForAUserWithoutRights) {
  const FakeRoot root;
  WriteMemoryTables(root);
  root.Write("run/udev/data/+dmi:id", kProperties);
  root.Forbid("sys/firmware/dmi/tables/DMI");
  const test::WithoutRights without_rights;
  const auto modules = ReadMemoryModulesBelow(root.Path());
  ASSERT_TRUE(modules);
  EXPECT_EQ(modules->size(), 3u);
}

TEST(MemoryLinux, FindsEveryPopulatedSlotAmongTheProperties) {
  const auto modules = ParseMemoryProperties(kProperties);
  ASSERT_TRUE(modules);
  ASSERT_EQ(modules->size(), 3u);
  const MemoryModule& whole = (*modules)[0];
  EXPECT_EQ(whole.locator, "ChannelA-DIMM0");
  EXPECT_EQ(whole.manufacturer, "Samsung");
  EXPECT_EQ(whole.serial_number, "416433E9");
  EXPECT_EQ(whole.part_number, "M471A1K43DB1-CWE");
  EXPECT_EQ(whole.capacity, std::uint64_t{8} << 30);
  EXPECT_EQ(whole.speed, 2933u);
  EXPECT_EQ(whole.slot, 0u);
  // Neither speed is known: the number means that the firmware has it in another place.
  EXPECT_EQ((*modules)[1].slot, 2u);
  EXPECT_EQ((*modules)[1].speed, 0u);
  const MemoryModule& of_unknown_size = (*modules)[2];
  EXPECT_EQ(of_unknown_size.slot, 10u);
  EXPECT_EQ(of_unknown_size.capacity, std::nullopt);
  EXPECT_EQ(of_unknown_size.speed, 3200u);
  EXPECT_EQ(of_unknown_size.manufacturer, "");
  EXPECT_EQ(of_unknown_size.serial_number, "");
}

TEST(MemoryLinux, KnowsNothingFromPropertiesWithoutSlots) {
  EXPECT_FALSE(ParseMemoryProperties(""));
  EXPECT_FALSE(ParseMemoryProperties("I:1\nE:ID_VENDOR=LENOVO\nE:MEMORY_ARRAY_NUM_DEVICES=4\n"));
  for (const char* bad :
       {"E:MEMORY_DEVICE_", "E:MEMORY_DEVICE_=1", "E:MEMORY_DEVICE_0=1", "E:MEMORY_DEVICE_x_SIZE=1",
        "E:MEMORY_DEVICE_-1_SIZE=1", "E:MEMORY_DEVICE_65535_SIZE=1", "E:MEMORY_DEVICE_0_SIZE",
        "E:MEMORY_DEVICE_0=A_B", "MEMORY_DEVICE_0_SIZE=1"}) {
    EXPECT_FALSE(ParseMemoryProperties(bad)) << bad;
  }
}

TEST(MemoryLinux, KnowsAMachineWithNothingButEmptySlots) {
  const auto modules = ParseMemoryProperties("E:MEMORY_DEVICE_0_PRESENT=0\nE:MEMORY_DEVICE_1_PRESENT=0");
  ASSERT_TRUE(modules);
  EXPECT_TRUE(modules->empty());
}

TEST(MemoryLinux, CannotReadModulesOfAMachineWithoutAnyOfIt) {
  const FakeRoot root;
  EXPECT_FALSE(ReadMemoryModulesBelow(root.Path()));
}

}  // namespace
}  // namespace ostrine
