#include "ostrine/windows/video_rules.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace ostrine {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(AdapterHardwareId, TellsWhatKindOfCardItIs) {
  EXPECT_EQ(TraitsOfHardwareId(L"PCI\\VEN_10DE&DEV_25A0&SUBSYS_22E617AA&REV_A1").vendor, 0x10DE);
  EXPECT_FALSE(TraitsOfHardwareId(L"PCI\\VEN_10DE&DEV_25A0").is_virtual);
  EXPECT_TRUE(IsEmulatedCard(TraitsOfHardwareId(L"VMBUS\\{da0a7802-e377-4aac-8e77-0558eb1073f8}")));
  EXPECT_TRUE(IsIntegratedCard(TraitsOfHardwareId(L"acpi\\qcom0c36")));
  for (const wchar_t* id : {L"", L"ROOT\\BasicRender", L"ROOT\\BasicDisplay", L"SWD\\RemoteDisplayEnum",
                            L"USB\\VID_17E9&PID_4301", L"PCI", L"ACPI"}) {
    EXPECT_TRUE(TraitsOfHardwareId(id).is_virtual) << id;
  }
}

TEST(AdapterMemory, IsTheLongValueBeforeTheShortOne) {
  const Bytes eight_gibibytes{0, 0, 0, 0, 2, 0, 0, 0};
  const Bytes most_of_four{0, 0, 0xF0, 0xFF};
  EXPECT_EQ(MemoryOfDriverValues(eight_gibibytes, most_of_four), std::uint64_t{8} << 30);
  EXPECT_EQ(MemoryOfDriverValues({}, most_of_four), 0xFFF00000u);
  EXPECT_EQ(MemoryOfDriverValues(Bytes(8), most_of_four), 0xFFF00000u);
  EXPECT_EQ(MemoryOfDriverValues(Bytes{1, 0, 0, 0}, most_of_four), 0xFFF00000u)
      << "a long value of four bytes";
  EXPECT_EQ(MemoryOfDriverValues({}, {}), std::nullopt);
  EXPECT_EQ(MemoryOfDriverValues(Bytes(9, 1), Bytes(3, 1)), std::nullopt);
}

TEST(DriverDateText, IsYearMonthDay) {
  EXPECT_EQ(DateText(132'892'704'000'000'000), "2022-02-14");
  EXPECT_EQ(DateText(132'892'704'000'000'000 + 863'999'999'999), "2022-02-14");
  EXPECT_EQ(DateText(1), "1601-01-01");
  EXPECT_EQ(DateText(0), "");
  EXPECT_EQ(DateText(std::numeric_limits<std::uint64_t>::max()), "");
  EXPECT_EQ(DateText(2'650'467'743'999'999'999), "9999-12-31");
  EXPECT_EQ(DateText(2'650'467'744'000'000'000), "");
}

TEST(MonitorInterfaceName, LeadsToTheMonitorsInstance) {
  EXPECT_EQ(
      MonitorInstance(L"\\\\?\\DISPLAY#AUO3DED#4&1234&0&UID265988#{e6f07b5f-ee97-4a90-b076-33f57bf4eaa7}"),
      L"DISPLAY\\AUO3DED\\4&1234&0&UID265988");
  for (const wchar_t* name :
       {L"", L"DISPLAY#A#B#{c}", L"\\\\?\\DISPLAY#A#{c}", L"\\\\?\\DISPLAY#A#B#C#{d}", L"\\\\?\\USB#A#B#{c}",
        L"\\\\?\\DISPLAY#..\\x#B#{c}", L"\\\\?\\DISPLAY", L"MONITOR\\AUO3DED\\{4d36e96e}\\0001"}) {
    EXPECT_EQ(MonitorInstance(name), L"") << name;
  }
}

}  // namespace
}  // namespace ostrine
