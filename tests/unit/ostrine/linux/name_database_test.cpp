#include "ostrine/linux/name_database.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/unit/ostrine/linux/fake_root.h"
#include "tests/unit/ostrine/linux/hardware_database.h"

namespace ostrine {
namespace {

const std::string kWirelessAlias = "pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00";

class Names : public testing::Test {
 protected:
  void WriteDatabase() const {
    test::HardwareDatabase database;
    database.Add("pci:v00008086*", {{"ID_VENDOR_FROM_DATABASE", "Intel Corporation"}});
    database.Add("pci:v00008086d000051F0*", {{"ID_MODEL_FROM_DATABASE", "CNVi WiFi"}});
    database.Add("pci:v00008086d000051F0sv00008086sd00000094*",
                 {{"ID_MODEL_FROM_DATABASE", "Wi-Fi 6E AX211 160MHz"}});
    database.Add("acpi:LEN*:", {{"ID_VENDOR_FROM_DATABASE", "A maker"}});
    root_.Write("usr/lib/udev/hwdb.bin", database.Bytes());
  }
  void WriteLists() const {
    root_.Write("usr/share/misc/pci.ids",
                "8086  Intel of the list\n\t51f0  Device of the list\n"
                "10ec  Realtek of the list\n\t8168  Ethernet of the list\n");
    root_.Write("usr/share/hwdata/usb.ids", "8087  Intel Corp.\n\t0033  AX211 Bluetooth\n");
  }

  test::FakeRoot root_;
};

TEST_F(Names, ComeFromTheHardwareDatabaseMostExactFirst) {
  WriteDatabase();
  WriteLists();
  NameDatabase names(root_.Path());
  EXPECT_EQ(names.Find(kWirelessAlias).vendor, "Intel Corporation");
  EXPECT_EQ(names.Find(kWirelessAlias).model, "Wi-Fi 6E AX211 160MHz");
  EXPECT_EQ(names.FindVendor("acpi:LEN0071:PNP0303:"), "A maker");
}

TEST_F(Names, ComeFromTheListsWhereTheDatabaseHasNone) {
  WriteDatabase();
  WriteLists();
  NameDatabase names(root_.Path());
  const auto ethernet = names.Find("pci:v000010ECd00008168sv000017AAsd00003902bc02sc00i00");
  EXPECT_EQ(ethernet.vendor, "Realtek of the list");
  EXPECT_EQ(ethernet.model, "Ethernet of the list");
}

TEST_F(Names, ComeFromTheListsAloneWithoutADatabase) {
  WriteLists();
  NameDatabase names(root_.Path());
  EXPECT_EQ(names.Find(kWirelessAlias).model, "Device of the list");
  EXPECT_EQ(names.Find("usb:v8087p0033d0000dcE0dsc01dp01icE0isc01ip01in00").model, "AX211 Bluetooth");
}

TEST_F(Names, ComeFromAListThatIsNotSorted) {
  std::string list;
  for (int vendor = 0x9000; vendor < 0x9400; ++vendor) {
    char line[32];
    std::snprintf(line, sizeof line, "%04x  A vendor\n", vendor);
    list += line;
  }
  root_.Write("usr/share/misc/pci.ids", list + "8086  Out of its place\n\t51f0  A device\n");
  NameDatabase names(root_.Path());
  EXPECT_EQ(names.Find(kWirelessAlias).vendor, "Out of its place");
  EXPECT_EQ(names.Find(kWirelessAlias).model, "A device");
}

TEST_F(Names, ComeFromALineThatIsLongerThanWhatIsReadAtOnce) {
  const std::string model(100'000, 'x');
  root_.Write("usr/share/misc/pci.ids", "8086  Intel\n\t51f0  " + model + "\n\t51f1  Another\n");
  NameDatabase names(root_.Path());
  EXPECT_EQ(names.Find(kWirelessAlias).model, model);
  EXPECT_EQ(names.Find("pci:v00008086d000051F1sv00008086sd00000094bc02sc80i00").model, "Another");
}

TEST_F(Names, AreEmptyWithoutAnySource) {
  NameDatabase names(root_.Path());
  EXPECT_EQ(names.Find(kWirelessAlias).vendor, "");
  EXPECT_EQ(names.Find(kWirelessAlias).model, "");
  EXPECT_EQ(names.Find("not a modalias").model, "");
}

TEST_F(Names, AreThoseOfTheListsWhenTheDatabaseIsNone) {
  WriteLists();
  for (const std::string& bytes : {std::string(), std::string("KSLPHHRH"), std::string(4096, '\xFF')}) {
    root_.Write("usr/lib/udev/hwdb.bin", bytes);
    NameDatabase names(root_.Path());
    EXPECT_EQ(names.Find(kWirelessAlias).model, "Device of the list") << bytes.size() << " bytes";
  }
}

}  // namespace
}  // namespace ostrine
