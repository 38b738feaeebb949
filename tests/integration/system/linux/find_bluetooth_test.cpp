/// CBluetooth's search for a remote device through a made-up Bluetooth service.
#include <gtest/gtest.h>

#include <chrono>

#include "tests/integration/linux/mock_bus.h"
#include "velmora/bluetooth.h"

namespace {

using velmora::os::test::kMockControl;
using velmora::os::test::MockService;
using velmora::os::test::PrivateBus;

class FindBluetoothDevice : public testing::Test {
 protected:
  PrivateBus bus_;
  MockService bluez_{VELMORA_TEST_FILES "/bluez_mock.py", "org.bluez", "/"};
};

TEST_F(FindBluetoothDevice, FindsAStrangerByAnInquiryOfTwoUnits) {
  bluez_.Call(kMockControl, "AddAdapter", {"hci0", "00:1A:7D:DA:71:13", "on"});
  bluez_.Call(kMockControl, "AddRemote", {"hci0", "AA:BB:CC:DD:EE:FF", "classic unknown"});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(CBluetooth().IsFindBtDevice());
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2560));
  EXPECT_EQ(bluez_.Call(kMockControl, "Requests"), "filter bredr,start,stop");
}

TEST_F(FindBluetoothDevice, AsksNothingOfAnAdapterThatIsSwitchedOff) {
  bluez_.Call(kMockControl, "AddAdapter", {"hci0", "00:1A:7D:DA:71:13", "off"});
  bluez_.Call(kMockControl, "AddRemote", {"hci0", "AA:BB:CC:DD:EE:FF", "classic paired"});
  EXPECT_FALSE(CBluetooth().IsFindBtDevice());
  EXPECT_EQ(bluez_.Call(kMockControl, "Requests"), "");
}

}  // namespace
