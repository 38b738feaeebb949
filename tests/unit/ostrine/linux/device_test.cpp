#include "ostrine/linux/device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

}  // namespace
}  // namespace ostrine
