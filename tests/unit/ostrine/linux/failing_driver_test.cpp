#include "ostrine/linux/failing_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/linux/fake_machine.h"

namespace ostrine {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr auto kSystemClass = "{4d36e97d-e325-11ce-bfc1-08002be10318}";
constexpr const char* kWirelessPlace = "pci0000:00/0000:00:14.3";

class FailingOnLinux : public testing::Test {
 protected:
  std::vector<std::string> Ids() const {
    std::vector<std::string> ids;
    for (const FailingDriver& driver : ReadFailingDrivers(machine_.Path())) ids.push_back(driver.device_id);
    return ids;
  }
  FailingDriver Find(const std::string& device_id) const {
    const auto drivers = ReadFailingDrivers(machine_.Path());
    const auto found = std::ranges::find(drivers, device_id, &FailingDriver::device_id);
    if (found != drivers.end()) return *found;
    ADD_FAILURE() << device_id << " is not listed";
    return {};
  }

  test::FakeMachine machine_;
};

TEST_F(FailingOnLinux, AreNoneOnAMachineWithoutDevices) { EXPECT_THAT(Ids(), IsEmpty()); }

TEST_F(FailingOnLinux, AreTheDevicesWithoutAWorkingDriverOverAllClasses) {
  test::BuildLaptop(machine_);
  EXPECT_THAT(Ids(),
              ElementsAre("PCI\\VEN_10DE&DEV_25A0&SUBSYS_22E617AA&REV_A1\\0000:01:00.0",
                          "USB\\VID_05E3&PID_0610&REV_0660\\1-2", "USB\\VID_06CB&PID_00F9&REV_0000\\1-5",
                          "ACPI\\XYZ0001\\XYZ0001:00", "ACPI\\XYZ0004\\XYZ0004:00"))
      << "without the host bridge, and without what the firmware calls absent (XYZ0002) or has switched off "
         "(XYZ0003)";
}

TEST_F(FailingOnLinux, TellWhatTheyAre) {
  test::BuildLaptop(machine_);
  const auto card = Find("PCI\\VEN_10DE&DEV_25A0&SUBSYS_22E617AA&REV_A1\\0000:01:00.0");
  EXPECT_EQ(card.caption, "Display adapter 10DE:25A0");
  EXPECT_EQ(card.class_guid, "{4d36e968-e325-11ce-bfc1-08002be10318}");
  EXPECT_EQ(card.service, "") << "it has no driver";
  EXPECT_EQ(card.status, "Error");
  EXPECT_EQ(card.error_code, 28U);

  const auto hub = Find("USB\\VID_05E3&PID_0610&REV_0660\\1-2");
  EXPECT_EQ(hub.caption, "USB2.1 Hub");
  EXPECT_EQ(hub.manufacturer, "GenesysLogic");
  EXPECT_EQ(hub.service, "usb");
  EXPECT_EQ(hub.error_code, 22U) << "somebody has switched it off";

  const auto unknown = Find("ACPI\\XYZ0001\\XYZ0001:00");
  EXPECT_EQ(unknown.class_guid, kSystemClass);
  EXPECT_EQ(unknown.error_code, 28U);
  EXPECT_EQ(Find("ACPI\\XYZ0004\\XYZ0004:00").error_code, 10U) << "the firmware calls it broken";
}

TEST_F(FailingOnLinux, IncludeADeviceOnceItHasLostItsDriver) {
  test::BuildLaptop(machine_);
  const std::string id = "PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01\\0000:00:14.3";
  EXPECT_THAT(Ids(), Not(Contains(id)));
  std::filesystem::remove(machine_.Device(kWirelessPlace) / "driver");
  EXPECT_EQ(Find(id).error_code, 28U);
}

TEST_F(FailingOnLinux, IncludeADeviceWhosePowerManagementHasFailed) {
  test::BuildLaptop(machine_);
  machine_.Write(kWirelessPlace, {{"power/runtime_status", "error"}});
  const auto wireless = Find("PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01\\0000:00:14.3");
  EXPECT_EQ(wireless.error_code, 10U);
  EXPECT_EQ(wireless.service, "iwlwifi");
}

TEST_F(FailingOnLinux, DoNotIncludeWhatTheKernelHasMadeUp) {
  machine_.Add("usb", "virtual/vhci/usb9",
               {{"idVendor", "1d6b"},
                {"idProduct", "0002"},
                {"bcdDevice", "0601"},
                {"bDeviceClass", "09"},
                {"bDeviceSubClass", "00"},
                {"bDeviceProtocol", "00"},
                {"bNumInterfaces", " 1"},
                {"bNumConfigurations", "1"},
                {"authorized", "0"}});
  EXPECT_THAT(Ids(), IsEmpty());
}

}  // namespace
}  // namespace ostrine
