#include "platform/os/bluetooth_radio.h"

#include <gtest/gtest.h>

#include <string_view>

#include "platform/os/last_error.h"
#include "tests/integration/windows/faked/library.h"
#include "tests/integration/windows/fakes/fake_bluetooth.h"

namespace velmora::os {
namespace {

class Bluetooth : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(library_); }
  void TearDown() override {
    if (!library_) return;
    EXPECT_EQ(library_->open_searches, 0);
  }

  faked::Library<fakes::BluetoothState> library_{L"bthprops.cpl"};
};

TEST_F(Bluetooth, FindsTheRadioAndItsFacts) {
  Handle radio = nullptr;
  const Handle find = BluetoothFindFirstRadio({.size = 4}, radio);
  ASSERT_NE(find, nullptr);
  EXPECT_EQ(library_->radio_parameters_size, 4u);
  BluetoothRadioInfo info{.size = 520};
  EXPECT_EQ(BluetoothGetRadioInfo(radio, info), 0u);
  EXPECT_EQ(library_->radio_info_size, 520u);
  EXPECT_EQ(info.address, 0xAABBCCDDEEFFu);
  EXPECT_EQ(info.name, std::u16string_view(u"Radio"));
  EXPECT_EQ(info.manufacturer, 2);
  EXPECT_EQ(info.class_of_device, 0x10Cu);
  EXPECT_TRUE(CloseHandle(radio));
  EXPECT_TRUE(BluetoothFindRadioClose(find));
}

TEST_F(Bluetooth, FindsNoRadioWhereThereIsNone) {
  library_->has_radio = false;
  Handle radio = this;
  SetLastError(0);
  EXPECT_EQ(BluetoothFindFirstRadio({.size = 4}, radio), nullptr);
  EXPECT_EQ(LastError(), 259u);
  EXPECT_EQ(radio, this) << "there is no radio to put there";
}

TEST_F(Bluetooth, FindsRemoteDevicesAsItIsTold) {
  int radio = 0;
  const BluetoothSearchParameters wanted{.size = 40,
                                         .return_authenticated = 1,
                                         .return_remembered = 1,
                                         .return_unknown = 1,
                                         .return_connected = 1,
                                         .issue_inquiry = 1,
                                         .timeout_multiplier = 2,
                                         .radio = &radio};
  BluetoothDeviceInfo info{.size = 560};
  const Handle find = BluetoothFindFirstDevice(wanted, info);
  ASSERT_NE(find, nullptr);
  EXPECT_EQ(library_->search.dwSize, 40u);
  EXPECT_EQ(library_->search.fIssueInquiry, TRUE);
  EXPECT_EQ(library_->search.cTimeoutMultiplier, 2);
  EXPECT_EQ(library_->search.hRadio, &radio);
  EXPECT_EQ(library_->device_info_size, 560u);
  EXPECT_EQ(info.address, 0x112233445566u);
  EXPECT_EQ(info.connected, 1);
  EXPECT_EQ(info.name, std::u16string_view(u"Mouse"));
  EXPECT_TRUE(BluetoothFindDeviceClose(find));
}

TEST_F(Bluetooth, ClosesNoSearchThatIsNone) {
  EXPECT_FALSE(BluetoothFindRadioClose(nullptr));
  EXPECT_EQ(LastError(), kErrorInvalidHandle);
  EXPECT_FALSE(BluetoothFindDeviceClose(nullptr));
}

}  // namespace
}  // namespace velmora::os
