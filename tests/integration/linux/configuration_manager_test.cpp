#include "platform/linux/configuration_manager.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/unit/ostrine/linux/fake_root.h"

namespace velmora::os {
namespace {

using ostrine::test::ContentOf;
using ostrine::test::FakeRoot;
using ostrine::test::WithoutRights;

TEST(Rescan, AsksThePciBus) {
  const FakeRoot root;
  root.Write("sys/bus/pci/rescan", "");
  EXPECT_EQ(RescanHardware(root.Path()), kConfigSuccess);
  EXPECT_EQ(ContentOf(root.Path() / "sys/bus/pci/rescan"), "1");
}

TEST(Rescan, FailsAndMakesNoFileWhereTheBusTakesNoRequest) {
  const FakeRoot root;
  std::filesystem::create_directories(root.Path() / "sys/bus/pci/devices");
  EXPECT_EQ(RescanHardware(root.Path()), kConfigFailure);
  EXPECT_FALSE(std::filesystem::exists(root.Path() / "sys/bus/pci/rescan"));
}

TEST(Rescan, FailsWithoutTheRight) {
  const FakeRoot root;
  root.Write("sys/bus/pci/rescan", "");
  root.Forbid("sys/bus/pci/rescan");
  const WithoutRights without_rights;
  EXPECT_EQ(RescanHardware(root.Path()), kConfigFailure);
}

TEST(Rescan, FailsOnASystemWithoutBuses) {
  const FakeRoot root;
  EXPECT_EQ(RescanHardware(root.Path()), kConfigFailure);
}

TEST(Rescan, DoesWithTheUsbBusOnAMachineWithoutPci) {
  const FakeRoot root;
  std::filesystem::create_directories(root.Path() / "sys/bus/usb/devices");
  EXPECT_EQ(RescanHardware(root.Path()), kConfigSuccess);
}

TEST(Rescan, OffersOnlyDriverlessDevicesToTheDrivers) {
  const FakeRoot root;
  root.Write("sys/bus/pci/rescan", "");
  root.Write("sys/bus/usb/drivers_probe", "");
  root.Write("sys/bus/usb/devices/1-2:1.0/uevent", "");
  root.Write("sys/bus/usb/devices/1-3:1.0/uevent", "");
  std::filesystem::create_directories(root.Path() / "sys/bus/usb/drivers/btusb");
  std::filesystem::create_symlink("../../drivers/btusb", root.Path() / "sys/bus/usb/devices/1-3:1.0/driver");
  EXPECT_EQ(RescanHardware(root.Path()), kConfigSuccess);
  EXPECT_EQ(ContentOf(root.Path() / "sys/bus/usb/drivers_probe"), "1-2:1.0");
}

TEST(ConfigurationManagerOnLinux, KnowsTheRootOfTheTreeOnly) {
  DevNode root = 0;
  EXPECT_EQ(CM_Locate_DevNodeW(root, nullptr, 0), kConfigSuccess);
  EXPECT_NE(root, 0u);
  DevNode untouched = 77;
  EXPECT_EQ(CM_Locate_DevNodeW(untouched, L"PCI\\VEN_8086", 0), kConfigNoSuchDevNode);
  EXPECT_EQ(untouched, 77u);
  EXPECT_EQ(CM_Reenumerate_DevNode(root + 1, 4), kConfigNoSuchDevNode);
}

}  // namespace
}  // namespace velmora::os
