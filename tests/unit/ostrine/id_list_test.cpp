#include "ostrine/common/id_list.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace ostrine {
namespace {

constexpr std::string_view kList =
    "# a list\n"
    "\n"
    "1022  Advanced Machines\n"
    "\t51f0  A device of another vendor\n"
    "8086  Intel Corporation\n"
    "\t46a6  Alder Lake-P GT2\n"
    "\t51f0  Alder Lake-P PCH CNVi WiFi\n"
    "\t\t8086 0094  Wi-Fi 6E AX211 160MHz\n"
    "\t51f1  The device after it\n"
    "\t\t8086 0095  Its subsystem\n"
    "9005  Adaptec\r\n"
    "C 02  Network controller\n"
    "\t80  Network controller\n";

TEST(IdList, KnowsVendorDeviceAndSubsystem) {
  const auto names = FindListedNames(kList, {0x8086, 0x51F0, 0x8086, 0x0094});
  EXPECT_EQ(names.vendor, "Intel Corporation");
  EXPECT_EQ(names.device, "Alder Lake-P PCH CNVi WiFi");
  EXPECT_EQ(names.subsystem, "Wi-Fi 6E AX211 160MHz");
}

TEST(IdList, KeepsToTheVendorsOwnDevices) {
  const auto names = FindListedNames(kList, {0x1022, 0x46A6, 0, 0});
  EXPECT_EQ(names.vendor, "Advanced Machines");
  EXPECT_EQ(names.device, "");
}

TEST(IdList, KeepsToTheDevicesOwnSubsystems) {
  EXPECT_EQ(FindListedNames(kList, {0x8086, 0x51F0, 0x8086, 0x0095}).subsystem, "");
}

TEST(IdList, GivesTheVendorOfAnUnknownDevice) {
  const auto names = FindListedNames(kList, {0x9005, 1, 0, 0});
  EXPECT_EQ(names.vendor, "Adaptec") << "without the carriage return";
  EXPECT_EQ(names.device, "");
}

TEST(IdList, HasNothingForAnUnknownVendor) {
  EXPECT_EQ(FindListedNames(kList, {0xFFFF, 0x51F0, 0, 0}).vendor, "");
  EXPECT_EQ(FindListedNames("", {0x8086, 0x51F0, 0, 0}).vendor, "");
}

TEST(IdList, PassesOverLinesOfAnotherForm) {
  constexpr std::string_view broken =
      "808\n8086\n8086x Vendor\n\t51f0  No vendor yet\n8086  Vendor\n\n\t51f\n\t\t\t8086 0094  Too deep\n"
      "\t51f0  Device\n\t\t8086\n\t\t8086 00\n\t\t8086 0094  Found";
  const auto names = FindListedNames(broken, {0x8086, 0x51F0, 0x8086, 0x0094});
  EXPECT_EQ(names.vendor, "Vendor");
  EXPECT_EQ(names.device, "Device");
  EXPECT_EQ(names.subsystem, "Found");
}

TEST(IdList, GivesTextsWithinTheListWhateverItHolds) {
  std::mt19937 random(7);
  for (int i = 0; i < 5000; ++i) {
    std::string list;
    for (auto length = random() % 80; length > 0; --length) list.push_back("\t\n 80\rx#"[random() % 8]);
    const auto names = FindListedNames(list, {0x8080, 0x0808, 0x8080, 0x0808});
    for (const std::string_view name : {names.vendor, names.device, names.subsystem}) {
      if (name.empty()) continue;
      EXPECT_GE(name.data(), list.data());
      EXPECT_LE(name.data() + name.size(), list.data() + list.size());
      EXPECT_EQ(name.find('\n'), std::string_view::npos);
    }
  }
}

}  // namespace
}  // namespace ostrine
