#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/os/last_error.h"
#include "tests/support/simulator/allocations.h"
#include "tests/unit/network/adapter_machine.h"
#include "tests/unit/network/wps_bytes.h"
#include "velmora/networkadapter.h"

namespace {

using namespace network_test;
using simulator::Fault;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::os::SetLastError;

constexpr auto kGuid = "{5A6B7C8D-1234-4321-ABCD-0123456789AB}";

simulator::Machine MachineWithInterfaces(std::vector<simulator::WifiInterface> interfaces) {
  auto machine = simulator::BlankMachine();
  machine.wifi = {.interfaces = std::move(interfaces)};
  return machine;
}

simulator::Machine MachineWithRadio(std::uint32_t state) {
  return MachineWithInterfaces({{.guid = kGuid, .software_radio = state}});
}

TEST(WifiSwitch, TellsWhetherTheRadioIsOn) {
  for (const std::uint32_t state : {1U, 2U, 0U}) {
    const auto run = simulator::Use(MachineWithRadio(state));
    EXPECT_EQ(CNetworkAdapter().GetWifiSwitchState(), state);
  }
}

TEST(WifiSwitch, IsTheLowByteOfTheState) {
  const auto run = simulator::Use(MachineWithRadio(0x0102));
  EXPECT_EQ(CNetworkAdapter().GetWifiSwitchState(), 2);
}

TEST(WifiSwitch, IsReadWithAClientThatIsClosedAndListsThatAreFreed) {
  const auto run = simulator::Use(MachineWithRadio(1));
  CNetworkAdapter().GetWifiSwitchState();
  EXPECT_THAT(run.Trace(), ElementsAre("WlanOpenHandle(2)", "WlanEnumInterfaces()",
                                       "WlanQueryInterface({5A6B7C8D-1234-4321-ABCD-0123456789AB}, 4)",
                                       "WlanFreeMemory()", "WlanFreeMemory()", "WlanCloseHandle()"));
}

TEST(WifiSwitch, IsUnknownWhenAStepFails) {
  for (int step = 0; step < 3; ++step) {
    for (const Fault fault : {Fault::kFail, Fault::kEmpty, Fault::kThrow}) {
      auto run = simulator::Use(MachineWithRadio(1));
      run.Inject(fault, step);
      EXPECT_EQ(CNetworkAdapter().GetWifiSwitchState(), 0) << step;
      EXPECT_EQ(run.OpenHandles(), 0) << step;
    }
  }
  const auto run = simulator::Use(MachineWithInterfaces({}));
  EXPECT_EQ(CNetworkAdapter().GetWifiSwitchState(), 0);
}

TEST(WifiSwitch, IsThatOfTheFirstInterfaceOnly) {
  auto run = simulator::Use(
      MachineWithInterfaces({{.guid = kGuid, .software_radio = 2},
                             {.guid = "{00000000-0000-0000-0000-000000000001}", .software_radio = 1}}));
  EXPECT_EQ(CNetworkAdapter().GetWifiSwitchState(), 2);
  EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(true), 0U);
  EXPECT_EQ(run.machine().wifi->interfaces[0].software_radio, 1U);
  EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(false), 0U);
  EXPECT_EQ(run.machine().wifi->interfaces[0].software_radio, 2U);
  EXPECT_EQ(run.machine().wifi->interfaces[1].software_radio, 1U);
}

TEST(WifiSwitch, SendsTwelveBytesWithStateOneForOnAndTwoForOff) {
  const auto sent = [](bool on) {
    const auto run = simulator::Use(MachineWithRadio(0));
    EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(on), 0U);
    EXPECT_THAT(run.Trace()[0], "WlanOpenHandle(2)");
    EXPECT_EQ(run.Calls(), 5);
    return run.Trace()[2];
  };
  EXPECT_EQ(
      sent(true),
      "WlanSetInterface({5A6B7C8D-1234-4321-ABCD-0123456789AB}, 4, 00 00 00 00 01 00 00 00 00 00 00 00)");
  EXPECT_EQ(
      sent(false),
      "WlanSetInterface({5A6B7C8D-1234-4321-ABCD-0123456789AB}, 4, 00 00 00 00 02 00 00 00 00 00 00 00)");
}

TEST(WifiSwitch, GivesTheErrorOfTheStepThatFailed) {
  auto machine = MachineWithRadio(1);
  machine.wifi->open_error = 1062;
  {
    const auto run = simulator::Use(machine);
    EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(true), 1062U);
  }
  {
    auto run = simulator::Use(MachineWithRadio(1));
    run.Inject(Fault::kFail, 1);
    EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(true), velmora::os::kErrorGeneralFailure);
    EXPECT_EQ(run.OpenHandles(), 0);
  }
  machine = MachineWithRadio(1);
  machine.wifi->interfaces[0].set_radio_error = 5;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(true), 5U);
}

TEST(WifiSwitch, GivesTheLastErrorWhenAStepSucceedsAndGivesNothing) {
  for (const int step : {0, 1}) {
    auto run = simulator::Use(MachineWithRadio(1));
    run.Inject(Fault::kEmpty, step);
    SetLastError(1784);
    EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(true), 1784U) << step;
  }
}

TEST(WifiSwitch, NeverClaimsThatItSwitchedWhatIsNotThere) {
  const auto run = simulator::Use(MachineWithInterfaces({}));
  SetLastError(0);
  EXPECT_EQ(CNetworkAdapter().SetWifiSwitchState(true), 1168U);
}

TEST(WifiSwitch, LogsWhatIsWantedAndWhatCameOfIt) {
  auto machine = MachineWithRadio(1);
  machine.wifi->interfaces[0].set_radio_error = 5;
  const auto run = simulator::Use(machine);
  const velmora::testing::CapturedLog log;
  CNetworkAdapter().SetWifiSwitchState(true);
  EXPECT_THAT(OwnLines(log),
              ElementsAre("DEBUG SetWifiSwitchState :state=1(CNetworkAdapter::SetWifiSwitchState)",
                          "DEBUG SetWifiSwitchState :dwResult=5(CNetworkAdapter::SetWifiSwitchState)"));
}

// The gateway.

TEST(Gateway, IsTheFirstOfTheWirelessAdapter) {
  auto machine = LaptopOnWifi();
  machine.adapters->list[0].gateways = {{.address = "10.0.0.1"}, {.address = "10.0.0.2"}};
  const auto run = simulator::Use(machine);
  const velmora::testing::CapturedLog log;
  std::string gateway = "old";
  EXPECT_EQ(CNetworkAdapter().GetWirelessGateWayIP(gateway), 1);
  EXPECT_EQ(gateway, "10.0.0.1");
  EXPECT_THAT(OwnLines(log),
              ElementsAre("DEBUG CNetworkAdapter::GetWirelessGateWayIP:Desc=Intel(R) Wi-Fi 6 AX201 "
                          "160MHz(CNetworkAdapter::GetWirelessGateWayIP)"));
}

TEST(Gateway, IsEmptyForAnAdapterWithoutOne) {
  auto machine = LaptopOnWifi();
  machine.adapters->list[0].gateways.clear();
  const auto run = simulator::Use(machine);
  std::string gateway = "old";
  EXPECT_EQ(CNetworkAdapter().GetWirelessGateWayIP(gateway), 1);
  EXPECT_EQ(gateway, "");
}

TEST(Gateway, HasSixteenCharactersWhereItsFieldHasNoZero) {
  auto machine = LaptopOnWifi();
  machine.adapters->list[0].gateways = {{.address = "1234567890123456789"}};
  const auto run = simulator::Use(machine);
  std::string gateway;
  EXPECT_EQ(CNetworkAdapter().GetWirelessGateWayIP(gateway), 1);
  EXPECT_EQ(gateway, "1234567890123456");
}

TEST(Gateway, IsEmptyWithResultZeroWithoutAWirelessAdapter) {
  auto machine = LaptopOnWifi();
  machine.adapters->list[0].description = "Something else";
  const auto run = simulator::Use(machine);
  const velmora::testing::CapturedLog log;
  std::string gateway = "old";
  EXPECT_EQ(CNetworkAdapter().GetWirelessGateWayIP(gateway), 0);
  EXPECT_EQ(gateway, "");
  EXPECT_THAT(OwnLines(log), IsEmpty());
}

// Access points.

struct Identity {
  std::string head = "old head";
  std::string last = "old last";
  std::string manufacturer = "old maker";
  std::string model = "old model";

  bool operator==(const Identity&) const = default;
};

void PrintTo(const Identity& identity, std::ostream* stream) {
  *stream << identity.head << " " << identity.last << " by " << identity.manufacturer << ", "
          << identity.model;
}

Identity IdentityOf(const std::string& ssid) {
  Identity identity;
  CNetworkAdapter().GetMacBySsid(identity.head, identity.last, ssid, identity.manufacturer, identity.model);
  return identity;
}

/// What comes out where there is no such network or access point.
const Identity kNothing{"", "", "old maker", ""};

simulator::Machine MachineWithOffice() {
  auto machine = MachineWithInterfaces({{.guid = kGuid}});
  auto& wifi = machine.wifi->interfaces[0];
  wifi.networks = {{.ssid = "office"}, {.ssid = "Office", .bss_type = 1, .security_enabled = false}};
  wifi.access_points = {{.ssid = "Office",
                         .bssid = {{0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E}},
                         .elements = {wps::ProtectedSetup("ACME", "Router 1")}},
                        {.ssid = "Office", .bssid = {{9, 9, 9, 9, 9, 9}}}};
  return machine;
}

simulator::WifiInterface& Wifi(simulator::Machine& machine) { return machine.wifi->interfaces[0]; }

TEST(AccessPoint, IsTheFirstOneOfTheNetwork) {
  const auto run = simulator::Use(MachineWithOffice());
  EXPECT_EQ(IdentityOf("Office"), (Identity{"001A2B", "3C4D5E", "ACME", "Router 1"}));
}

TEST(AccessPoint, IsAskedForInOrderAndEverythingIsGivenBack) {
  const auto run = simulator::Use(MachineWithOffice());
  IdentityOf("Office");
  EXPECT_THAT(run.Trace(),
              ElementsAre("WlanOpenHandle(2)", "WlanEnumInterfaces()",
                          "WlanGetAvailableNetworkList({5A6B7C8D-1234-4321-ABCD-0123456789AB}, 1)",
                          "WlanGetNetworkBssList({5A6B7C8D-1234-4321-ABCD-0123456789AB}, Office, 1, 0)",
                          "WlanFreeMemory()", "WlanFreeMemory()", "WlanFreeMemory()", "WlanCloseHandle()"));
}

TEST(AccessPoint, IsAskedForWithTheNetworksKindAndWhetherItIsSecured) {
  auto machine = MachineWithOffice();
  Wifi(machine).networks = {{.ssid = "Office", .bss_type = 2, .security_enabled = true}};
  Wifi(machine).access_points[0].bss_type = 2;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(IdentityOf("Office").head, "001A2B");
  EXPECT_EQ(run.Trace()[3], "WlanGetNetworkBssList({5A6B7C8D-1234-4321-ABCD-0123456789AB}, Office, 2, 1)");
}

TEST(AccessPoint, IsNotFoundByANameInOtherLetterCaseOrOfAnotherLength) {
  const auto run = simulator::Use(MachineWithOffice());
  for (const char* const ssid : {"OFFICE", "Offic", "Office ", "Office2"}) {
    EXPECT_EQ(IdentityOf(ssid), kNothing) << ssid;
  }
  EXPECT_EQ(IdentityOf(std::string("Office\0", 7)), kNothing);
}

TEST(AccessPoint, IsNotFoundByTheEmptyNameAlsoWhenANetworkHidesItsOwn) {
  auto machine = MachineWithOffice();
  Wifi(machine).networks.insert(Wifi(machine).networks.begin(), {.ssid = ""});
  Wifi(machine).access_points.push_back({.ssid = "", .bssid = {{1, 2, 3, 4, 5, 6}}});
  const auto run = simulator::Use(machine);
  EXPECT_EQ(IdentityOf(""), kNothing);
  EXPECT_EQ(run.Calls("WlanGetAvailableNetworkList"), 1);
  EXPECT_EQ(run.Calls("WlanGetNetworkBssList"), 0);
}

TEST(AccessPoint, IsFoundByTheNamesBytesWhateverLengthIsStated) {
  for (const std::uint32_t length : {6U, 0U, 3U}) {
    auto machine = MachineWithOffice();
    Wifi(machine).networks[1].ssid_length = length;
    const auto run = simulator::Use(machine);
    IdentityOf("Office");
    EXPECT_EQ(run.Calls("WlanGetNetworkBssList"), 1) << length;
  }
}

TEST(AccessPoint, IsFoundByANameOfThirtyTwoBytes) {
  auto machine = MachineWithOffice();
  const std::string longest(32, 'n');
  Wifi(machine).networks[0].ssid = longest;
  Wifi(machine).access_points[0].ssid = longest;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(IdentityOf(longest).head, "001A2B");
}

TEST(AccessPoint, IsThatOfTheFirstNetworkOfTheNameOnTheFirstInterface) {
  auto machine = MachineWithOffice();
  Wifi(machine).networks.push_back({.ssid = "Office", .bss_type = 2});
  machine.wifi->interfaces.push_back(Wifi(machine));
  machine.wifi->interfaces[1].guid = "{00000000-0000-0000-0000-000000000001}";
  const auto run = simulator::Use(machine);
  EXPECT_EQ(IdentityOf("Office").head, "001A2B");
  EXPECT_EQ(run.Trace()[3], "WlanGetNetworkBssList({5A6B7C8D-1234-4321-ABCD-0123456789AB}, Office, 1, 0)");
}

TEST(AccessPoint, LeavesTheManufacturerAsItWasWhenAStepFailsAndGivesEverythingBack) {
  for (int step = 0; step < 4; ++step) {
    for (const Fault fault : {Fault::kFail, Fault::kEmpty, Fault::kThrow}) {
      auto run = simulator::Use(MachineWithOffice());
      run.Inject(fault, step);
      EXPECT_EQ(IdentityOf("Office"), kNothing) << step;
      EXPECT_EQ(run.OpenHandles(), 0) << step;
    }
  }
}

TEST(AccessPoint, LeavesTheManufacturerAsItWasWithoutInterfacesNetworksOrAccessPoints) {
  auto machine = MachineWithOffice();
  Wifi(machine).access_points.clear();
  {
    const auto run = simulator::Use(machine);
    EXPECT_EQ(IdentityOf("Office"), kNothing);
  }
  Wifi(machine).networks.clear();
  {
    const auto run = simulator::Use(machine);
    EXPECT_EQ(IdentityOf("Office"), kNothing);
    EXPECT_EQ(run.Calls("WlanGetNetworkBssList"), 0);
  }
  const auto run = simulator::Use(MachineWithInterfaces({}));
  EXPECT_EQ(IdentityOf("Office"), kNothing);
}

TEST(AccessPoint, HasEmptyTextsWhenItTellsNothing) {
  auto machine = MachineWithOffice();
  Wifi(machine).access_points[0].elements = {};
  const auto run = simulator::Use(machine);
  EXPECT_EQ(IdentityOf("Office"), (Identity{"001A2B", "3C4D5E", "", ""}));
}

TEST(AccessPoint, HasEmptyTextsWhenItsElementsDoNotLieInTheList) {
  auto machine = MachineWithOffice();
  Wifi(machine).access_points[0].elements_offset = 0xFFFFFFF0;
  Wifi(machine).access_points[0].elements_size = 0x20;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(IdentityOf("Office"), (Identity{"001A2B", "3C4D5E", "", ""}));
}

TEST(AccessPoint, IsNotReadWhenAListCountsOneThatItDoesNotHold) {
  auto machine = MachineWithOffice();
  Wifi(machine).access_points.clear();
  Wifi(machine).access_point_count = 1000;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(IdentityOf("Office"), kNothing);
}

TEST(AccessPoint, IsLoggedWithItsTextsAndTheLengthsOfItsHalves) {
  const auto run = simulator::Use(MachineWithOffice());
  const velmora::testing::CapturedLog log;
  IdentityOf("Office");
  EXPECT_THAT(
      OwnLines(log),
      ElementsAre("DEBUG Manufacture=ACME, Model=Router 1(CNetworkAdapter::GetMacBySsid)",
                  "DEBUG MacHeadSix.length=6, strMacLastSix.length=6(CNetworkAdapter::GetMacBySsid)"));
}

TEST(AccessPoint, IsLoggedWithLengthsOfZeroWhenTheNetworkHasNone) {
  auto machine = MachineWithOffice();
  Wifi(machine).access_points.clear();
  const auto run = simulator::Use(machine);
  const velmora::testing::CapturedLog log;
  IdentityOf("Office");
  EXPECT_THAT(
      OwnLines(log),
      ElementsAre("DEBUG MacHeadSix.length=0, strMacLastSix.length=0(CNetworkAdapter::GetMacBySsid)"));
}

TEST(AccessPoint, IsWholeOrNotThereWhenMemoryRunsOut) {
  auto machine = MachineWithOffice();
  const std::string long_text(60, 'M');
  Wifi(machine).access_points[0].elements = {wps::ProtectedSetup(long_text, long_text)};
  const auto run = simulator::Use(machine);
  const auto results = velmora::testing::WithEachAllocationFailing([] { return IdentityOf("Office"); });
  const Identity whole{"001A2B", "3C4D5E", long_text, long_text};
  for (const auto& result : results) EXPECT_TRUE(result == whole || result == kNothing);
  EXPECT_EQ(results.back(), whole);
}

}  // namespace
