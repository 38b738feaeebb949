#include "platform/os/wifi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using testing::ElementsAre;

simulator::Machine MachineWithWifi() {
  auto machine = simulator::BlankMachine();
  machine.wifi = {
      .interfaces = {
          {.guid = "{01020304-0506-0708-090A-0B0C0D0E0F10}",
           .description = "Wi-Fi 6",
           .networks = {{.ssid = "Cafe"}, {.ssid = "Odd", .ssid_length = 0}},
           .access_points = {{.ssid = "Other", .bssid = {{9, 9, 9, 9, 9, 9}}},
                             {.ssid = "Cafe", .bssid = {{0, 0x1A, 0x2B, 3, 4, 5}}, .elements = {{221, 1, 7}}},
                             {.ssid = "Cafe", .elements = {{1, 2}}}}}}};
  return machine;
}

struct Client {
  Client() {
    std::uint32_t version = 0;
    open_result = WlanOpenHandle(2, version, handle);
    if (open_result == 0) WlanEnumInterfaces(handle, list);
    if (list != nullptr && list->count > 0) guid = list->items[0].guid;
  }
  ~Client() {
    WlanFreeMemory(list);
    if (handle != nullptr) WlanCloseHandle(handle);
  }
  WlanBssList* AccessPoints(const char* ssid) const {
    WlanSsid wanted{.length = static_cast<std::uint32_t>(std::strlen(ssid))};
    std::memcpy(wanted.bytes, ssid, wanted.length);
    WlanBssList* found = nullptr;
    WlanGetNetworkBssList(handle, guid, wanted, 1, true, found);
    return found;
  }
  Handle handle = nullptr;
  std::uint32_t open_result;
  WlanInterfaceList* list = nullptr;
  GUID guid{};
};

TEST(SimulatedWifi, ListsItsInterfaces) {
  const auto run = simulator::Use(MachineWithWifi());
  const Client client;
  ASSERT_NE(client.list, nullptr);
  ASSERT_EQ(client.list->count, 1u);
  EXPECT_EQ(client.guid.Data1, 0x01020304u);
  EXPECT_EQ(client.guid.Data4[7], 0x10u);
  EXPECT_EQ(std::u16string(client.list->items[0].description), u"Wi-Fi 6");
}

TEST(SimulatedWifi, ReadsAndSwitchesTheRadio) {
  auto run = simulator::Use(MachineWithWifi());
  const Client client;
  const WlanPhyRadioState off{.software_state = 2};
  EXPECT_EQ(WlanSetInterface(client.handle, client.guid, 4, sizeof off, &off), 0u);
  std::uint32_t size = 0;
  void* data = nullptr;
  ASSERT_EQ(WlanQueryInterface(client.handle, client.guid, 4, size, data), 0u);
  ASSERT_EQ(size, sizeof(WlanRadioState));
  EXPECT_EQ(static_cast<WlanRadioState*>(data)->phys[0].software_state, 2u);
  WlanFreeMemory(data);
  EXPECT_EQ(
      run.Trace()[2],
      "WlanSetInterface({01020304-0506-0708-090A-0B0C0D0E0F10}, 4, 00 00 00 00 02 00 00 00 00 00 00 00)");
}

TEST(SimulatedWifi, FailsWithTheScriptedErrors) {
  auto machine = MachineWithWifi();
  auto& wifi = machine.wifi->interfaces[0];
  wifi.radio_error = 31;
  wifi.set_radio_error = 5;
  wifi.networks_error = 1168;
  wifi.access_points_error = 50;
  auto run = simulator::Use(machine);
  {
    const Client client;
    std::uint32_t size = 0;
    void* data = nullptr;
    EXPECT_EQ(WlanQueryInterface(client.handle, client.guid, 4, size, data), 31u);
    EXPECT_EQ(LastError(), 31u);
    const WlanPhyRadioState on{.software_state = 1};
    EXPECT_EQ(WlanSetInterface(client.handle, client.guid, 4, sizeof on, &on), 5u);
    WlanNetworkList* networks = nullptr;
    EXPECT_EQ(WlanGetAvailableNetworkList(client.handle, client.guid, 1, networks), 1168u);
    EXPECT_EQ(client.AccessPoints("Cafe"), nullptr);
    EXPECT_EQ(LastError(), 50u);
    EXPECT_NE(WlanGetAvailableNetworkList(client.handle, GUID{}, 1, networks), 0u) << "no such interface";
  }
  run.machine().wifi->open_error = 1062;
  EXPECT_EQ(Client().open_result, 1062u);
}

TEST(SimulatedWifi, ListsTheNetworksWithTheLengthsThatAreStated) {
  const auto run = simulator::Use(MachineWithWifi());
  const Client client;
  WlanNetworkList* networks = nullptr;
  ASSERT_EQ(WlanGetAvailableNetworkList(client.handle, client.guid, 1, networks), 0u);
  ASSERT_EQ(networks->count, 2u);
  const WlanAvailableNetwork* items = networks->items;
  EXPECT_EQ(items[0].ssid.length, 4u);
  EXPECT_EQ(std::memcmp(items[0].ssid.bytes, "Cafe", 5), 0);
  EXPECT_EQ(items[1].ssid.length, 0u);
  EXPECT_EQ(std::memcmp(items[1].ssid.bytes, "Odd", 4), 0);
  WlanFreeMemory(networks);
}

TEST(SimulatedWifi, ListsAccessPointsWithTheirElementsBehindThem) {
  const auto run = simulator::Use(MachineWithWifi());
  const Client client;
  WlanBssList* found = client.AccessPoints("Cafe");
  ASSERT_NE(found, nullptr);
  ASSERT_EQ(found->count, 2u);
  EXPECT_EQ(found->total_size, 8 + 2 * 360 + 5u);
  const auto* entry = reinterpret_cast<const unsigned char*>(&found->items[0]);
  EXPECT_EQ(found->items[0].bssid[1], 0x1Au);
  EXPECT_EQ(found->items[0].ie_size, 3u);
  EXPECT_EQ(entry[found->items[0].ie_offset], 221u);
  EXPECT_EQ(entry[found->items[0].ie_offset + 2], 7u);
  WlanFreeMemory(found);
}

TEST(SimulatedWifi, MayStateOffsetsSizesAndCountsThatAreWrong) {
  auto machine = MachineWithWifi();
  machine.wifi->interfaces[0].access_points = {
      {.ssid = "Cafe", .elements_offset = 0xFFFFFFF0, .elements_size = 0x20}};
  machine.wifi->interfaces[0].access_point_count = 1000;
  const auto run = simulator::Use(machine);
  const Client client;
  WlanBssList* found = client.AccessPoints("Cafe");
  EXPECT_EQ(found->count, 1000u);
  EXPECT_EQ(found->total_size, 8 + 360u) << "the memory that there is";
  EXPECT_EQ(found->items[0].ie_offset, 0xFFFFFFF0u);
  WlanFreeMemory(found);
}

TEST(SimulatedWifi, CountsItsListsAsMemoryThatIsFreedOnce) {
  const velmora::testing::CapturedProblems captured;
  {
    const auto run = simulator::Use(MachineWithWifi());
    const Client client;
    WlanBssList* found = client.AccessPoints("Cafe");
    WlanFreeMemory(found);
    WlanFreeMemory(found);
    WlanFreeMemory(nullptr);
    client.AccessPoints("Cafe");
  }
  EXPECT_THAT(captured.Problems(),
              ElementsAre("WlanFreeMemory was given memory that is not lent", "handles left open: 1"));
}

TEST(SimulatedWifi, GoesWrongAsATestWishes) {
  auto run = simulator::Use(MachineWithWifi());
  {
    run.Inject(Fault::kEmpty, 1);
    const Client client;
    EXPECT_EQ(client.open_result, 0u);
    EXPECT_EQ(client.list, nullptr) << "success without a list";
  }
  run.Inject(Fault::kNone, 0);
  const Client client;
  run.Inject(Fault::kUnterminated, 0, true);
  WlanNetworkList* networks = nullptr;
  WlanGetAvailableNetworkList(client.handle, client.guid, 1, networks);
  EXPECT_EQ(networks->items[0].ssid.length, 0xFFFFFFFFu);
  EXPECT_EQ(networks->items[0].ssid.bytes[31], 'A');
  WlanFreeMemory(networks);
  WlanBssList* found = client.AccessPoints("Cafe");
  EXPECT_EQ(found->count, 0xFFFFFFFFu);
  EXPECT_EQ(found->items[0].ie_size, 0xFFFFFFFFu);
  WlanFreeMemory(found);
  run.Inject(Fault::kThrow, 0, true);
  EXPECT_THROW(client.AccessPoints("Cafe"), simulator::InjectedFault);
}

}  // namespace
