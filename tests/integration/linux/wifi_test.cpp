#include "platform/linux/wifi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "platform/os/last_error.h"
#include "platform/unicode.h"
#include "tests/integration/linux/wifi_machine.h"

namespace velmora::os {
namespace {

using test::ByteVector;
using test::Element;
using test::FamilyMessage;
using test::kFamily;
using test::kOther;
using test::Named;
using test::ScanMessage;
using test::operator+;
using testing::ElementsAre;

using Wifi = test::WifiMachine;

TEST_F(Wifi, ListsItsClientInterfacesInTheKernelsOrder) {
  machine_.WriteFile("sys/class/net/wlp0s20f3/operstate", "up\n");
  WlanInterfaceList* list = nullptr;
  ASSERT_EQ(WlanEnumInterfaces(client_, list), 0u);
  ASSERT_EQ(list->count, 2u);
  EXPECT_EQ(list->items[0].guid, first_);
  EXPECT_EQ(list->items[0].state, 1u);
  EXPECT_EQ(unicode::WideFromUtf16({list->items[0].description, 39}),
            L"Intel Corporation Wi-Fi 6E AX211 160MHz");
  EXPECT_EQ(list->items[0].description[39], u'\0');
  WlanInterfaceInfo second{};
  std::memcpy(&second, reinterpret_cast<const char*>(list) + 8 + sizeof second, sizeof second);
  EXPECT_EQ(second.guid, InterfaceGuid(kOther));
  EXPECT_EQ(second.state, 0u);
  WlanFreeMemory(list);
}

TEST_F(Wifi, TellsHowItsRadioIsSwitched) {
  const auto ask = [&] {
    std::uint32_t size = 0;
    void* data = nullptr;
    EXPECT_EQ(WlanQueryInterface(client_, first_, 4, size, data), 0u);
    EXPECT_EQ(size, sizeof(WlanRadioState));
    const auto state = *static_cast<const WlanRadioState*>(data);
    WlanFreeMemory(data);
    EXPECT_EQ(state.phy_count, 1u);
    return std::pair(state.phys[0].software_state, state.phys[0].hardware_state);
  };
  EXPECT_EQ(ask(), std::pair(0U, 0U)) << "without a switch";
  AddSwitch("0", "0");
  EXPECT_EQ(ask(), std::pair(1U, 1U));
  AddSwitch("1", "0");
  EXPECT_EQ(ask(), std::pair(2U, 1U));
  AddSwitch("0", "1");
  EXPECT_EQ(ask(), std::pair(1U, 2U));
  AddSwitch("", "1");
  EXPECT_EQ(ask(), std::pair(0U, 0U)) << "the kernel says nothing that can be read";
}

TEST_F(Wifi, ListsNetworksOnceEachTheConnectedOneFirst) {
  Scan(ScanMessage({.name = "cafe", .last_byte = 1, .signal = -4000}) +
       ScanMessage({.name = "home", .last_byte = 2, .signal = -9000}) +
       ScanMessage(
           {.name = "home", .last_byte = 3, .signal = -7500, .status = NL80211_BSS_STATUS_ASSOCIATED}) +
       ScanMessage({.name = "cafe", .last_byte = 4, .capability = 0x01}) + ScanMessage({.name = ""}));
  WlanNetworkList* list = nullptr;
  ASSERT_EQ(WlanGetAvailableNetworkList(client_, first_, 1, list), 0u);
  ASSERT_EQ(list->count, 4u);
  std::array<WlanAvailableNetwork, 4> networks;
  std::memcpy(networks.data(), list->items, sizeof networks);
  EXPECT_EQ(networks[0].ssid.length, 4u);
  EXPECT_EQ(std::memcmp(networks[0].ssid.bytes, "home", 5), 0) << "with zeros behind it";
  EXPECT_EQ(networks[0].flags, 1u);
  EXPECT_EQ(networks[0].bssid_count, 2u);
  EXPECT_EQ(networks[0].signal_quality, 50u);
  EXPECT_EQ(networks[0].bss_type, 1u);
  EXPECT_EQ(networks[0].security_enabled, 1);
  EXPECT_EQ(networks[1].signal_quality, 100u);
  EXPECT_EQ(networks[2].ssid.length + networks[3].ssid.length, 4u) << "a hidden one, and the open one";
  WlanFreeMemory(list);
}

TEST_F(Wifi, ListsTheAccessPointsOfANetworkWithTheirElements) {
  const ByteVector wps = Element(221, {0x00, 0x50, 0xF2, 0x04, 1, 2, 3});
  Scan(ScanMessage({.name = "home", .last_byte = 1, .signal = -9000}) +
       ScanMessage({.name = "home", .last_byte = 2, .signal = -5000, .more = wps}) +
       ScanMessage({.name = "homes", .last_byte = 3}) +
       ScanMessage({.name = "home", .last_byte = 4, .capability = 0x12}) +
       ScanMessage({.name = "home", .last_byte = 5, .capability = 0x01}));
  WlanBssList* list = nullptr;
  ASSERT_EQ(WlanGetNetworkBssList(client_, first_, Named("home"), 1, true, list), 0u);
  ASSERT_EQ(list->count, 2u);
  std::array<WlanBssEntry, 2> entries;
  std::memcpy(entries.data(), list->items, sizeof entries);
  EXPECT_THAT(entries[0].bssid, ElementsAre(0x00, 0x1A, 0x2B, 0x3C, 0x4D, 2)) << "the strongest first";
  EXPECT_EQ(entries[0].rssi, -50);
  EXPECT_EQ(entries[0].centre_frequency, 2437000u);
  EXPECT_EQ(entries[0].beacon_period, 100);
  EXPECT_EQ(entries[1].bssid[5], 1);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(list);
  std::size_t end = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::size_t begin = 8 + i * sizeof(WlanBssEntry) + entries[i].ie_offset;
    ASSERT_LE(begin + entries[i].ie_size, list->total_size);
    EXPECT_GE(begin, 8 + sizeof entries);
    EXPECT_EQ(std::memcmp(bytes + begin, "\0\4home", 6), 0);
    end = begin + entries[i].ie_size;
  }
  EXPECT_EQ(end, list->total_size);
  EXPECT_EQ(entries[0].ie_size, 6 + wps.size());
  WlanFreeMemory(list);
}

TEST_F(Wifi, SaysWhatIsWrong) {
  std::uint32_t size = 7;
  void* data = &size;
  EXPECT_EQ(WlanQueryInterface(client_, InterfaceGuid("nosuch"), 4, size, data), 1168u);
  EXPECT_EQ(LastError(), 1168u);
  EXPECT_EQ(data, nullptr);
  EXPECT_EQ(WlanQueryInterface(client_, first_, 7, size, data), 50u);
  EXPECT_EQ(WlanQueryInterface(nullptr, first_, 4, size, data), 6u);
  EXPECT_EQ(LastError(), 6u);
  WlanInterfaceList* list = nullptr;
  EXPECT_EQ(WlanEnumInterfaces(nullptr, list), 6u);
  WlanBssList* points = nullptr;
  WlanSsid too_long = Named("home");
  too_long.length = 33;
  EXPECT_EQ(WlanGetNetworkBssList(client_, first_, too_long, 1, true, points), 87u);
  kernel_->Fail(kFamily, NL80211_CMD_GET_SCAN, EACCES);
  WlanNetworkList* networks = nullptr;
  EXPECT_EQ(WlanGetAvailableNetworkList(client_, first_, 1, networks), 5u);
  EXPECT_EQ(networks, nullptr);
  EXPECT_EQ(WlanCloseHandle(nullptr), 6u);
  WlanFreeMemory(nullptr);
}

TEST(WifiClients, AreNoneWhereTheKernelHasNoWifi) {
  Handle client = nullptr;
  auto without_family = std::make_unique<test::FakeKernel>();
  without_family->Fail(GENL_ID_CTRL, CTRL_CMD_GETFAMILY, ENOENT);
  EXPECT_EQ(OpenWifi("/", std::move(without_family), client), 1062u);
  EXPECT_EQ(LastError(), 1062u);
  auto another_family = std::make_unique<test::FakeKernel>();
  another_family->Answer(GENL_ID_CTRL, CTRL_CMD_GETFAMILY, FamilyMessage("nl8021"));
  EXPECT_EQ(OpenWifi("/", std::move(another_family), client), 1062u);
  auto refusing = std::make_unique<test::FakeKernel>();
  refusing->Fail(GENL_ID_CTRL, CTRL_CMD_GETFAMILY, EACCES);
  EXPECT_EQ(OpenWifi("/", std::move(refusing), client), 5u);
  EXPECT_EQ(client, nullptr);
}

TEST(WifiClients, OfThisMachineAreThereWithItsWifiOnly) {
  Handle client = nullptr;
  std::uint32_t version = 0;
  const std::uint32_t result = WlanOpenHandle(2, version, client);
  if (!std::filesystem::exists("/sys/class/ieee80211")) {
    EXPECT_EQ(result, 1062u);
    EXPECT_EQ(client, nullptr);
    return;
  }
  ASSERT_EQ(result, 0u);
  EXPECT_EQ(version, 2u);
  WlanInterfaceList* list = nullptr;
  EXPECT_EQ(WlanEnumInterfaces(client, list), 0u);
  WlanFreeMemory(list);
  EXPECT_EQ(WlanCloseHandle(client), 0u);
}

}  // namespace
}  // namespace velmora::os
