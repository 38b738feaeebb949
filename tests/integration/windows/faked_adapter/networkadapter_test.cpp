/// The Wi-Fi operations of CNetworkAdapter over a made-up Wi-Fi library: what the service is asked, and that
/// it gets everything back.
#include "velmora/networkadapter.h"

#include <gtest/gtest.h>

#include <iterator>

#include "platform/os/last_error.h"
#include "tests/integration/windows/faked/library.h"
#include "tests/integration/windows/fakes/fake_wlan.h"

namespace {

using velmora::os::SetLastError;

/// From the OUI on: 15 bytes of attributes, one of 2 bytes that is passed over, then maker and model.
constexpr unsigned char kElements[] = {0x00, 0x04, 'h',  'o',  'm',  'e',   //
                                       221,  0x2B, 0x00, 0x50, 0xF2, 0x04,  //
                                       0x10, 0x4A, 0x00, 0x01, 0x10, 0x10, 0x44, 0x00, 0x01, 0x02,
                                       0x10, 0x3B, 0x00, 0x01, 0x03,                   //
                                       0x10, 0x47, 0x00, 0x02, 0xEE, 0xEE,             //
                                       0x10, 0x21, 0x00, 0x04, 'A',  'C',  'M',  'E',  //
                                       0x10, 0x23, 0x00, 0x06, 'R',  'o',  'u',  't',  'e',  'r'};
static_assert(std::size(kElements) == 6 + 2 + 0x2B);

class WifiOfTheAdapter : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(library_); }
  void TearDown() override {
    if (!library_) return;
    EXPECT_EQ(library_->open_clients, 0);
    EXPECT_EQ(library_->memory, 0) << "memory of the service was not given back";
    EXPECT_EQ(library_->late_frees, 0) << "lists belong to the client";
  }

  /// Lets one function of the service fail.
  void Fail(const char* function, DWORD error) {
    library_->failing = function;
    library_->error = error;
    library_->closings = 0;
    SetLastError(0);
  }

  faked::Library<fakes::WlanState> library_{L"wlanapi.dll"};
};

TEST_F(WifiOfTheAdapter, ReadsTheRadioOfTheFirstInterface) {
  EXPECT_EQ(CNetworkAdapter().GetWifiSwitchState(), 2);
  EXPECT_EQ(library_->version, 2U);
  EXPECT_EQ(library_->opcode, 4U);
  EXPECT_EQ(library_->closings, 1);
}

TEST_F(WifiOfTheAdapter, SwitchesTheRadio) {
  EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(true), 0U);
  EXPECT_EQ(library_->opcode, 4U);
  EXPECT_EQ(library_->set_size, 12U);
  EXPECT_EQ(library_->set.dwPhyIndex, 0U);
  EXPECT_EQ(library_->set.dot11SoftwareRadioState, 1);
  EXPECT_EQ(library_->set.dot11HardwareRadioState, 0);
  EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(false), 0U);
  EXPECT_EQ(library_->set.dot11SoftwareRadioState, 2);
  EXPECT_EQ(library_->closings, 2);
}

TEST_F(WifiOfTheAdapter, GivesTheErrorOfTheStepThatFailedAfterEverythingWasClosed) {
  for (const char* const function : {"WlanOpenHandle", "WlanEnumInterfaces", "WlanSetInterface"}) {
    Fail(function, ERROR_ACCESS_DENIED);
    EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(true), DWORD{ERROR_ACCESS_DENIED}) << function;
    EXPECT_EQ(library_->open_clients, 0) << function;
  }
}

TEST_F(WifiOfTheAdapter, CannotReadTheRadioWhenAStepFails) {
  for (const char* const function : {"WlanOpenHandle", "WlanEnumInterfaces", "WlanQueryInterface"}) {
    Fail(function, ERROR_ACCESS_DENIED);
    EXPECT_EQ(CNetworkAdapter().GetWifiSwitchState(), 0) << function;
    EXPECT_EQ(library_->open_clients, 0) << function;
  }
}

TEST_F(WifiOfTheAdapter, IdentifiesAnAccessPoint) {
  library_->elements = kElements;
  library_->elements_size = sizeof kElements;
  std::string head;
  std::string last;
  std::string manufacturer;
  std::string model;
  CNetworkAdapter().GetMacBySsid(head, last, "home", manufacturer, model);
  EXPECT_EQ(head, "1A0000");
  EXPECT_EQ(last, "0000EF");
  EXPECT_EQ(manufacturer, "ACME");
  EXPECT_EQ(model, "Router");
  EXPECT_EQ(library_->flags, 1U);
  EXPECT_EQ(library_->bss_type, 1U);
  EXPECT_EQ(library_->security, TRUE);
  EXPECT_EQ(library_->closings, 1);
}

TEST_F(WifiOfTheAdapter, LeavesTheManufacturerAsItWasWhenAStepFails) {
  for (const char* const function :
       {"WlanOpenHandle", "WlanEnumInterfaces", "WlanGetAvailableNetworkList", "WlanGetNetworkBssList"}) {
    Fail(function, ERROR_ACCESS_DENIED);  // as without consent to use the location
    std::string head = "old";
    std::string last = "old";
    std::string manufacturer = "old";
    std::string model = "old";
    CNetworkAdapter().GetMacBySsid(head, last, "home", manufacturer, model);
    EXPECT_EQ(head + last + model, "") << function;
    EXPECT_EQ(manufacturer, "old") << function;
    EXPECT_EQ(library_->open_clients, 0) << function;
    EXPECT_EQ(library_->memory, 0) << function;
  }
}

}  // namespace
