#include "ostrine/linux/device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "access_recorder.h"
#include "ostrine/linux/device_query.h"
#include "platform/ostrine/setup_class.h"
#include "tests/support/linux/fake_machine.h"

namespace ostrine {
namespace {

using test::FakeMachine;

std::vector<Path> NodesOf(const std::vector<Device>& devices) {
  std::vector<Path> nodes;
  for (const Device& device : devices) nodes.push_back(device.node);
  return nodes;
}

TEST(DevicesOfAClass, AreThoseOfThatClassAmongAllDevicesWhateverTheirBus) {
  const FakeMachine machine;
  test::BuildLaptop(machine);
  const auto all = ListDevices(machine.Path());
  for (const auto setup_class :
       {SetupClass::kNone, SetupClass::kNet, SetupClass::kBiometric, SetupClass::kMedia,
        SetupClass::kKeyboard, SetupClass::kDisplay, SetupClass::kUsb, SetupClass::kSystem}) {
    auto expected = all;
    std::erase_if(expected, [&](const Device& device) { return device.setup_class != setup_class; });
    EXPECT_FALSE(expected.empty()) << static_cast<int>(setup_class);
    EXPECT_EQ(NodesOf(ListDevices(machine.Path(), setup_class)), NodesOf(expected))
        << static_cast<int>(setup_class);
  }
}

/// The files that are opened while `ask` runs.
template <class Ask>
std::set<std::string> OpenedBy(const FakeMachine& machine, Ask ask) {
  test::AccessRecorder recorder(machine.Path());
  ask();
  return recorder.Opened();
}

std::string FileName(const std::string& path) { return Path(path).filename().string(); }

class LookingForNetworkCards : public testing::Test {
 protected:
  LookingForNetworkCards() { test::BuildLaptop(machine_); }
  DeviceQuery Query() const { return {machine_.Path(), velmora::setup_class::kNet}; }

  FakeMachine machine_;
};

TEST_F(LookingForNetworkCards, ReadsNoMoreOfAnotherFunctionThanWhatItIs) {
  const auto opened = OpenedBy(machine_, [&] { EXPECT_EQ(Query().HardwareIds().size(), 2u); });
  EXPECT_TRUE(opened.contains("sys/devices/pci0000:00/0000:00:02.0/modalias"));
  EXPECT_TRUE(opened.contains("sys/devices/pci0000:00/0000:00:14.3/revision"));
  for (const std::string& path : opened) {
    const bool is_card =
        path.find("0000:00:14.3/") != std::string::npos || path.find("0000:00:1f.6/") != std::string::npos;
    const bool is_on_usb = path.find("/usb") != std::string::npos;
    if (!is_card && !is_on_usb) {
      EXPECT_EQ(FileName(path), "modalias") << path;
    }
    EXPECT_EQ(path.find("LNXSYSTM"), std::string::npos) << path << " is the firmware's, which has no cards";
  }
}

TEST_F(LookingForNetworkCards, DoesNotAskUsbDevicesForTheirNames) {
  for (const std::string& path : OpenedBy(machine_, [&] { Query().HardwareIds(); })) {
    EXPECT_NE(FileName(path), "product") << path;
    EXPECT_NE(FileName(path), "manufacturer") << path;
  }
}

TEST_F(LookingForNetworkCards, OpensNothingForANameOrPropertyThatNoneHas) {
  EXPECT_THAT(OpenedBy(machine_,
                       [&] {
                         EXPECT_EQ(Query().Text(LookUp::kHardwareId, L"", PROP_MANUFACTURER), L"");
                         EXPECT_EQ(Query().Number(LookUp::kHardwareId, L"", PROP_PROBLEM_CODE), kNotPresent);
                         EXPECT_EQ(Query().Text(LookUp::kHardwareId, L"PCI\\VEN_8086&DEV_51F0", PROP_INF),
                                   L"");
                         EXPECT_EQ(Query().InstallTime(L""), 0u);
                       }),
              testing::IsEmpty());
}

TEST_F(LookingForNetworkCards, LooksNoFurtherThanToTheOneWithTheHardwareId) {
  const auto opened = OpenedBy(machine_, [&] {
    EXPECT_NE(Query().Text(LookUp::kHardwareId, L"PCI\\VEN_8086&DEV_51F0", PROP_INSTANCE_ID), L"");
  });
  EXPECT_TRUE(opened.contains("sys/devices/pci0000:00/0000:00:14.3/modalias"));
  EXPECT_FALSE(opened.contains("sys/devices/pci0000:00/0000:00:1f.6/modalias"));
}

TEST_F(LookingForNetworkCards, LooksUpNamesOnlyWhenANameIsAsked) {
  machine_.WriteFile("usr/share/misc/pci.ids", "8086  Intel\n\t51f0  AX211\n");
  const std::wstring id = L"PCI\\VEN_8086&DEV_51F0";
  const auto list = [&](enmDEVICE_PROPERTY property) {
    return OpenedBy(machine_, [&] { Query().Text(LookUp::kHardwareId, id, property); })
        .contains("usr/share/misc/pci.ids");
  };
  EXPECT_TRUE(list(PROP_MANUFACTURER));
  EXPECT_FALSE(list(PROP_DRIVER_VERSION));
  EXPECT_FALSE(list(PROP_PROBLEM_CODE));
}

}  // namespace
}  // namespace ostrine
