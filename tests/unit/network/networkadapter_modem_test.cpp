/// Whether the machine is online over a modem.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "tests/unit/network/adapter_machine.h"
#include "velmora/networkadapter.h"

namespace {

using namespace network_test;
using testing::ElementsAre;

simulator::Machine MachineOnline(std::uint32_t flags, std::vector<simulator::Adapter> adapters) {
  auto machine = simulator::BlankMachine();
  machine.internet = {.connected = true, .connection_flags = flags};
  machine.adapters = {.list = std::move(adapters)};
  return machine;
}

simulator::Adapter AdapterOfType(std::uint32_t type, const char* address = "10.0.0.2",
                                 const char* description = "Some adapter") {
  return {.description = description, .type = type, .ip_addresses = {{.address = address}}};
}

int UsesModem(const simulator::Machine& machine) {
  const auto run = simulator::Use(machine);
  return CNetworkAdapter().IsUsingModemNetwork();
}

TEST(ModemNetwork, IsUsedWhenTheConnectionIsAModems) {
  const auto run = simulator::Use(MachineOnline(0x11, {AdapterOfType(6)}));
  EXPECT_EQ(CNetworkAdapter().IsUsingModemNetwork(), 1);
  EXPECT_THAT(run.Trace(), ElementsAre("InternetGetConnectedState(0)"));
}

TEST(ModemNetwork, IsNotUsedWithoutAConnectionWhateverTheFlagsSay) {
  auto machine = MachineOnline(1, {AdapterOfType(243)});
  machine.internet->connected = false;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(CNetworkAdapter().IsUsingModemNetwork(), 0);
  EXPECT_EQ(run.Calls("GetAdaptersInfo"), 0);
}

TEST(ModemNetwork, IsUsedOverMobileBroadbandOfEitherType) {
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243)})), 1);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(244)})), 1);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(242)})), 0);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(245)})), 0);
}

TEST(ModemNetwork, IsNotUsedWhileTheCableOrWifiIsUpToo) {
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243), AdapterOfType(6)})), 0);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(71), AdapterOfType(243)})), 0);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(6)})), 0);
}

TEST(ModemNetwork, LooksPastAdaptersWithoutAnAddress) {
  EXPECT_EQ(UsesModem(MachineOnline(
                2, {AdapterOfType(243), AdapterOfType(6, "0.0.0.0"), AdapterOfType(71, "0.0.0.0")})),
            1);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243, "0.0.0.0")})), 0);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243), AdapterOfType(6, "10.0.0.0")})), 1)
      << "an address that contains four zeros counts as none";
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243), AdapterOfType(6, "")})), 0)
      << "an empty one does not contain them";
}

TEST(ModemNetwork, LooksPastVirtualWifiInEitherLetterCase) {
  EXPECT_EQ(UsesModem(MachineOnline(
                2, {AdapterOfType(243), AdapterOfType(71, "10.0.0.2", "Wi-Fi Direct VIRTUAL")})),
            1);
  EXPECT_EQ(UsesModem(MachineOnline(2, {AdapterOfType(243), AdapterOfType(6, "10.0.0.2", "Virtual")})), 0)
      << "a virtual cable counts";
}

TEST(ModemNetwork, IsNotUsedWhenTheListCannotBeRead) {
  auto machine = MachineOnline(2, {AdapterOfType(243)});
  machine.adapters->error = 50;
  EXPECT_EQ(UsesModem(machine), 0);
}

TEST(ModemNetwork, LogsTheConnectionAndThatItIsNone) {
  const auto lines_of = [](const simulator::Machine& machine) {
    const auto run = simulator::Use(machine);
    const velmora::testing::CapturedLog log;
    CNetworkAdapter().IsUsingModemNetwork();
    return OwnLines(log);
  };
  EXPECT_THAT(lines_of(MachineOnline(18, {AdapterOfType(243)})),
              ElementsAre("DEBUG oneline=1, flags=18, state=1(CNetworkAdapter::IsUsingModemNetwork)"));
  EXPECT_THAT(lines_of(MachineOnline(18, {AdapterOfType(6)})),
              ElementsAre("DEBUG oneline=1, flags=18, state=0(CNetworkAdapter::IsUsingModemNetwork)",
                          "DEBUG not modem net(CNetworkAdapter::IsUsingModemNetwork)"));
}

TEST(ModemCard, ExistsWhenThereIsAMobileCard) {
  const auto answer_of = [](const simulator::Machine& machine, const char* line) {
    const auto run = simulator::Use(machine);
    const velmora::testing::CapturedLog log;
    const bool answer = CNetworkAdapter().IsModemCardExsit();
    EXPECT_THAT(OwnLines(log), ElementsAre(line));
    return answer;
  };
  EXPECT_TRUE(answer_of(LaptopOnWifi(), "DEBUG ModemCard exist(CNetworkAdapter::IsModemCardExsit)"));
  EXPECT_FALSE(
      answer_of(MachineWithoutCards(), "DEBUG ModemCard not exist(CNetworkAdapter::IsModemCardExsit)"));
}

}  // namespace
