#include "platform/os/adapters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using testing::ElementsAre;

simulator::Machine MachineWithAdapters(std::vector<simulator::Adapter> adapters) {
  auto machine = simulator::BlankMachine();
  machine.adapters = {.list = std::move(adapters)};
  return machine;
}

const simulator::Adapter kWifi{.name = "{A}",
                               .description = "Wi-Fi",
                               .address = {{1, 2, 3, 4, 5, 6}},
                               .type = 71,
                               .ip_addresses = {{"10.0.0.2", "255.0.0.0"}, {"10.0.0.3", ""}},
                               .gateways = {{"10.0.0.1", ""}},
                               .lease_expires = 99};

/// The list as the library reads it: the size first, then exactly that much memory.
struct AdapterList {
  AdapterList() {
    needs = GetAdaptersInfo(nullptr, size);
    memory.resize(size / sizeof(AdapterInfo) + 1);
    result = GetAdaptersInfo(memory.data(), size);
  }
  std::uint32_t size = 0;
  std::uint32_t needs;
  std::uint32_t result;
  std::vector<AdapterInfo> memory;
};

TEST(SimulatedAdapters, LieInTheCallersBufferOneBehindTheOther) {
  const auto run = simulator::Use(MachineWithAdapters({kWifi, {.description = "Ethernet"}}));
  const AdapterList list;
  EXPECT_EQ(list.needs, 111u);
  EXPECT_EQ(list.size, 2 * 704 + 48u);
  ASSERT_EQ(list.result, 0u);
  const AdapterInfo& wifi = list.memory[0];
  EXPECT_STREQ(wifi.description, "Wi-Fi");
  EXPECT_EQ(wifi.type, 71u);
  EXPECT_EQ(wifi.dhcp_enabled, 1u);
  EXPECT_EQ(wifi.address_length, 6u);
  EXPECT_STREQ(wifi.ip_addresses.address, "10.0.0.2");
  ASSERT_NE(wifi.ip_addresses.next, nullptr);
  EXPECT_STREQ(wifi.ip_addresses.next->address, "10.0.0.3");
  EXPECT_EQ(wifi.ip_addresses.next->next, nullptr);
  EXPECT_STREQ(wifi.gateways.address, "10.0.0.1");
  EXPECT_EQ(wifi.lease_expires, 99);
  ASSERT_EQ(wifi.next, &list.memory[1]);
  EXPECT_STREQ(wifi.next->description, "Ethernet");
  EXPECT_STREQ(wifi.next->ip_addresses.address, "");
  EXPECT_EQ(wifi.next->next, nullptr);
}

TEST(SimulatedAdapters, MayGrowBetweenTwoCalls) {
  auto late = kWifi;
  late.arrives_after_calls = 1;
  const auto run = simulator::Use(MachineWithAdapters({{.description = "Ethernet"}, late}));
  const AdapterList list;
  EXPECT_EQ(list.result, 111u) << "what was enough is too little now";
  EXPECT_EQ(list.size, 2 * 704 + 48u);
}

TEST(SimulatedAdapters, MayHaveTextsWithoutAZero) {
  auto adapter = kWifi;
  adapter.ip_addresses = {{"1234567890123456789", ""}};
  const auto run = simulator::Use(MachineWithAdapters({adapter}));
  const AdapterList list;
  EXPECT_EQ(std::string(list.memory[0].ip_addresses.address, 16), "1234567890123456");
}

TEST(SimulatedAdapters, MayPointBackAtThemselves) {
  auto machine = MachineWithAdapters({kWifi});
  machine.adapters->loops = true;
  const auto run = simulator::Use(machine);
  const AdapterList list;
  EXPECT_EQ(list.memory[0].next, &list.memory[0]);
}

TEST(SimulatedAdapters, AreNoneOnAnEmptyMachine) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  const AdapterList list;
  EXPECT_EQ(list.needs, 232u);
}

TEST(SimulatedAdapters, GoWrongAsATestWishes) {
  auto run = simulator::Use(MachineWithAdapters({kWifi}));
  run.Inject(Fault::kFail, 1);
  EXPECT_EQ(AdapterList().result, 31u);
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_EQ(AdapterList().size, 0u);
  run.Inject(Fault::kUnterminated, 0, true);
  const AdapterList list;
  EXPECT_EQ(std::string(list.memory[0].description, 132), std::string(132, 'A'));
  EXPECT_EQ(std::string(list.memory[0].gateways.address, 16), std::string(16, '1'));
}

TEST(SimulatedAdapters, ThatAreNotScriptedAreReported) {
  const velmora::testing::CapturedProblems captured;
  const auto run = simulator::Use(simulator::BlankMachine());
  std::uint32_t size = 0;
  EXPECT_NE(GetAdaptersInfo(nullptr, size), 0u);
  EXPECT_THAT(captured.Problems(),
              ElementsAre("GetAdaptersInfo was called, but the machine has no script for adapters"));
}

}  // namespace
