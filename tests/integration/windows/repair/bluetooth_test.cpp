/// Looking for remote devices through a made-up Bluetooth library.
#include "velmora/bluetooth.h"

#include <gtest/gtest.h>

#include "tests/integration/windows/faked/library.h"
#include "tests/integration/windows/fakes/fake_bluetooth.h"

namespace {

class FindBluetoothDevice : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(library_); }
  void TearDown() override {
    if (!library_) return;
    EXPECT_EQ(library_->open_searches, 0);
    EXPECT_FALSE(library_->radio_outlived_its_search) << "the radio is closed first";
  }

  faked::Library<fakes::BluetoothState> library_{L"bthprops.cpl"};
  CBluetooth bluetooth_;
};

TEST_F(FindBluetoothDevice, GivesTheSystemRecordsOfItsSizesAndAsksForEverything) {
  EXPECT_TRUE(bluetooth_.IsFindBtDevice());
  EXPECT_EQ(library_->radio_parameters_size, sizeof(BLUETOOTH_FIND_RADIO_PARAMS));
  EXPECT_EQ(library_->radio_info_size, sizeof(BLUETOOTH_RADIO_INFO));
  EXPECT_EQ(library_->device_info_size, sizeof(BLUETOOTH_DEVICE_INFO));
  const BLUETOOTH_DEVICE_SEARCH_PARAMS& search = library_->search;
  EXPECT_EQ(search.dwSize, sizeof search);
  EXPECT_TRUE(search.fReturnAuthenticated);
  EXPECT_TRUE(search.fReturnRemembered);
  EXPECT_TRUE(search.fReturnUnknown);
  EXPECT_TRUE(search.fReturnConnected);
  EXPECT_TRUE(search.fIssueInquiry);
  EXPECT_EQ(search.cTimeoutMultiplier, 2);
  EXPECT_EQ(search.hRadio, library_->radio);
}

TEST_F(FindBluetoothDevice, FindsNothingWithoutARadio) {
  library_->has_radio = false;
  EXPECT_FALSE(bluetooth_.IsFindBtDevice());
}

TEST_F(FindBluetoothDevice, DoesNotSearchThroughARadioThatTellsNothing) {
  library_->radio_info_error = ERROR_DEVICE_NOT_CONNECTED;
  EXPECT_FALSE(bluetooth_.IsFindBtDevice());
  EXPECT_EQ(library_->search.dwSize, 0u);
}

TEST_F(FindBluetoothDevice, FindsNothingWhereNoDeviceIs) {
  library_->has_device = false;
  EXPECT_FALSE(bluetooth_.IsFindBtDevice());
  EXPECT_EQ(library_->search.dwSize, sizeof library_->search);
}

}  // namespace
