#include <gtest/gtest.h>

#include <string>

#include "ostrine/common/hardware_id.h"

namespace ostrine {
namespace {

TEST(NumberedIds, AreReadFromPciAndUsbIds) {
  const auto pci = ParseNumberedId(L"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01");
  ASSERT_TRUE(pci);
  EXPECT_EQ(pci->bus, NumberedId::Bus::kPci);
  EXPECT_EQ(pci->vendor, 0x8086);
  EXPECT_EQ(pci->device, 0x51F0);
  const auto usb = ParseNumberedId(L"usb\\vid_8087&pid_0aaa");
  ASSERT_TRUE(usb);
  EXPECT_EQ(usb->bus, NumberedId::Bus::kUsb);
  EXPECT_EQ(usb->vendor, 0x8087);
  EXPECT_EQ(usb->device, 0x0AAA);
  EXPECT_TRUE(ParseNumberedId(L"USB\\VID_8087&PID_0AAA\\5&1234&0&14"));
}

TEST(NumberedIds, AreNoneForOtherTexts) {
  for (const wchar_t* id :
       {L"", L"PCI", L"PCI\\VEN_8086", L"PCI\\VEN_8086&DEV_51F", L"PCI\\VEN_8086&DEV_51F0X",
        L"PCI\\VEN_808G&DEV_51F0", L"PCI\\VID_8086&PID_51F0", L"USB\\VEN_8087&DEV_0026", L"USB\\ROOT_HUB30",
        L"HID\\VID_04F3&PID_3169", L"XPCI\\VEN_8086&DEV_51F0", L"PCI\\CC_0280",
        L"USB\\VID_8087&PID_\uFF10\uFF10\uFF12\uFF16"}) {
    EXPECT_FALSE(ParseNumberedId(id)) << testing::PrintToString(std::wstring(id));
  }
}

}  // namespace
}  // namespace ostrine
