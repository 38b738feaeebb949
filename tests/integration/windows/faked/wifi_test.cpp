#include "platform/os/wifi.h"

#include <gtest/gtest.h>

#include <cstring>

#include "platform/os/last_error.h"
#include "tests/integration/windows/faked/library.h"
#include "tests/integration/windows/fakes/fake_wlan.h"

namespace velmora::os {
namespace {

constexpr GUID kInterface{0xA, 0xB, 0xC, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr std::uint32_t kRadioState = 4;

class Wifi : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(library_);
    std::uint32_t negotiated = 0;
    ASSERT_EQ(WlanOpenHandle(2, negotiated, client_), 0u);
    EXPECT_EQ(negotiated, 2u);
    EXPECT_EQ(library_->version, 2u);
  }
  void TearDown() override {
    if (!library_) return;
    EXPECT_EQ(WlanCloseHandle(client_), 0u);
    EXPECT_EQ(library_->open_clients, 0);
    EXPECT_EQ(library_->memory, 0) << "memory of the service was not given back";
  }

  faked::Library<fakes::WlanState> library_{L"wlanapi.dll"};
  Handle client_ = nullptr;
};

TEST_F(Wifi, ListsInterfaces) {
  WlanInterfaceList* list = nullptr;
  ASSERT_EQ(WlanEnumInterfaces(client_, list), 0u);
  ASSERT_EQ(list->count, 1u);
  EXPECT_TRUE(IsEqualGUID(list->items[0].guid, kInterface));
  EXPECT_EQ(list->items[0].description, std::u16string_view(u"Made-up Wi-Fi"));
  WlanFreeMemory(list);
}

TEST_F(Wifi, ReadsAndSetsTheRadio) {
  std::uint32_t size = 0;
  void* data = nullptr;
  ASSERT_EQ(WlanQueryInterface(client_, kInterface, kRadioState, size, data), 0u);
  EXPECT_EQ(library_->opcode, DWORD{wlan_intf_opcode_radio_state});
  EXPECT_TRUE(IsEqualGUID(library_->interface_id, kInterface));
  ASSERT_EQ(size, sizeof(WlanRadioState));
  EXPECT_EQ(static_cast<WlanRadioState*>(data)->phy_count, 1u);
  EXPECT_EQ(static_cast<WlanRadioState*>(data)->phys[0].software_state, 2u);
  WlanFreeMemory(data);

  const WlanPhyRadioState on{.phy_index = 0, .software_state = 1};
  ASSERT_EQ(WlanSetInterface(client_, kInterface, kRadioState, sizeof on, &on), 0u);
  EXPECT_EQ(library_->set_size, 12u);
  EXPECT_EQ(library_->set.dot11SoftwareRadioState, dot11_radio_state_on);
}

TEST_F(Wifi, ListsNetworksAndTheirAccessPoints) {
  WlanNetworkList* networks = nullptr;
  ASSERT_EQ(WlanGetAvailableNetworkList(client_, kInterface, 1, networks), 0u);
  EXPECT_EQ(library_->flags, 1u);
  ASSERT_EQ(networks->count, 1u);
  const WlanAvailableNetwork& network = networks->items[0];
  EXPECT_EQ(network.signal_quality, 88u);

  WlanBssList* points = nullptr;
  ASSERT_EQ(WlanGetNetworkBssList(client_, kInterface, network.ssid, network.bss_type, true, points), 0u);
  EXPECT_EQ(std::memcmp(library_->ssid.ucSSID, "home", 4), 0);
  EXPECT_EQ(library_->bss_type, 1u);
  EXPECT_EQ(library_->security, TRUE);
  ASSERT_EQ(points->count, 1u);
  EXPECT_EQ(points->items[0].rssi, -50);
  EXPECT_EQ(points->items[0].bssid[5], 0xEF);
  const auto* elements = reinterpret_cast<const char*>(&points->items[0]) + points->items[0].ie_offset;
  EXPECT_STREQ(elements, "elements");
  WlanFreeMemory(points);
  WlanFreeMemory(networks);
  WlanFreeMemory(nullptr);
}

TEST_F(Wifi, LeavesItsErrorAsTheLastErrorAndListsNothing) {
  library_->error = ERROR_ACCESS_DENIED;  // as without consent to use the location
  WlanNetworkList* networks = reinterpret_cast<WlanNetworkList*>(1);
  SetLastError(0);
  EXPECT_EQ(WlanGetAvailableNetworkList(client_, kInterface, 1, networks), kErrorAccessDenied);
  EXPECT_EQ(LastError(), kErrorAccessDenied);
  EXPECT_EQ(networks, nullptr);
  SetLastError(0);
  EXPECT_EQ(WlanSetInterface(client_, kInterface, kRadioState, 0, nullptr), kErrorAccessDenied);
  EXPECT_EQ(LastError(), kErrorAccessDenied);

  Handle other = nullptr;
  std::uint32_t negotiated = 0;
  SetLastError(0);
  EXPECT_EQ(WlanOpenHandle(2, negotiated, other), kErrorAccessDenied);
  EXPECT_EQ(LastError(), kErrorAccessDenied);
  EXPECT_EQ(other, nullptr);
}

TEST_F(Wifi, HasNothingForNoClient) {
  WlanInterfaceList* list = nullptr;
  EXPECT_EQ(WlanEnumInterfaces(nullptr, list), kErrorInvalidHandle);
  EXPECT_EQ(WlanCloseHandle(nullptr), kErrorInvalidHandle);
}

}  // namespace
}  // namespace velmora::os
