/// Which cards CNetworkCard finds, of which kind, and what it asks to know it.
#include "velmora/networkcard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/simulator/allocations.h"
#include "tests/unit/network/card_machine.h"

namespace {

using namespace network_test;
using simulator::Machine;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Ids = std::vector<std::wstring>;

const std::wstring kWifiText = L"PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_20";
const std::wstring kWiredText = L"PCI\\VEN_10EC&DEV_8168&SUBSYS_381717AA&REV_15";
const std::wstring kMobileText = L"QCMS\\VEN_QCOM&DEV_0C9F&SUBSYS_MBB";
const std::wstring kDockText = L"USB\\VID_0BDA&PID_8153&REV_3000";

Machine MachineWithDevices(const std::vector<std::string>& hardware_ids) {
  auto machine = MachineWithoutCards();
  for (const auto& id : hardware_ids) AddDevice(machine, id);
  return machine;
}

/// The keys that were opened, in order.
std::vector<std::string> OpenedKeys(const simulator::Run& run) {
  std::vector<std::string> opened;
  for (const auto& call : run.Trace()) {
    if (call.starts_with("RegOpenKeyExW(")) opened.push_back(call);
  }
  return opened;
}

std::vector<std::string> AllThirtyKeys() {
  std::vector<std::string> expected;
  for (int number = 0; number < 30; ++number) {
    expected.push_back("RegOpenKeyExW(" + KeyPath(number) + ", 0, 0x20019)");
  }
  return expected;
}

// Internal cards.

TEST(NetworkCard, KnowsTheInternalCardsInTheSystemsOrder) {
  const auto run = simulator::Use(LaptopWithCards());
  EXPECT_EQ(CNetworkCard().GetInternalNetCardHardId(), (Ids{kMobileText, kWifiText, kWiredText}));
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Net)")) << "no key is read for that";
}

TEST(NetworkCard, NeverCountsAUsbCardAsInternalEvenIfItsMediumIsWifi) {
  auto machine = MachineWithDevices({"USB\\VID_0BDA&PID_C811&REV_0200"});
  AddKey(machine, 0, "usb\\vid_0bda&pid_c811", kWifi);
  const auto run = simulator::Use(machine);
  CNetworkCard cards;
  EXPECT_THAT(cards.GetInternalNetCardHardId(), IsEmpty());
  EXPECT_THAT(cards.GetAllWireLessHardId(), IsEmpty());
  EXPECT_EQ(cards.GetWireLessCardHardID(), L"");
  EXPECT_TRUE(cards.IsWlanOrWifi(L"USB\\VID_0BDA&PID_C811&REV_0200"))
      << "asked about by its ID it has a kind";
}

TEST(NetworkCard, LeavesOutACardInLowerCase) {
  const auto run = simulator::Use(MachineWithDevices({"pci\\ven_8086&dev_a0f0", "PCI\\VEN_8086&DEV_15FB"}));
  EXPECT_EQ(CNetworkCard().GetInternalNetCardHardId(), Ids{L"PCI\\VEN_8086&DEV_15FB"});
}

TEST(NetworkCard, KeepsTwoCardsOfOneModelAsTwo) {
  const auto run = simulator::Use(MachineWithDevices({kWiredId, kWifiId, kWiredId}));
  CNetworkCard cards;
  EXPECT_EQ(cards.GetInternalNetCardHardId(), (Ids{kWiredText, kWifiText, kWiredText}));
  EXPECT_EQ(cards.GetNetworkCardNumbers(), 3);
}

TEST(NetworkCard, CountsNoCardOnAMachineWithoutOne) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  CNetworkCard cards;
  EXPECT_EQ(cards.GetNetworkCardNumbers(), 0);
  EXPECT_THAT(cards.GetInternalNetCardHardId(), IsEmpty());
}

TEST(NetworkCard, IgnoresDevicesOfOtherClasses) {
  auto machine = MachineWithoutCards();
  machine.devices->push_back({.setup_class = "Display", .hardware_ids = {"PCI\\VEN_8086&DEV_9A49"}});
  const auto run = simulator::Use(machine);
  EXPECT_THAT(CNetworkCard().GetInternalNetCardHardId(), IsEmpty());
}

// Lists and first cards by kind.

TEST(NetworkCard, ListsTheCardsOfEachKindByTheirMedium) {
  const auto run = simulator::Use(LaptopWithCards());
  CNetworkCard cards;
  EXPECT_EQ(cards.GetAllWireLessHardId(), Ids{kWifiText});
  EXPECT_EQ(cards.GetAllWiredHardId(), Ids{kWiredText});
  EXPECT_EQ(cards.GetAllMobileHardId(), Ids{kMobileText});
}

TEST(NetworkCard, TakesTheFirstOfTwoWirelessCards) {
  auto machine = MachineWithDevices({"PCI\\VEN_17CB&DEV_1103", kWifiId});
  AddKey(machine, 3, "pci\\ven_8086", kWifi);
  AddKey(machine, 5, "pci\\ven_17cb", kWifi);
  const auto run = simulator::Use(machine);
  CNetworkCard cards;
  EXPECT_EQ(cards.GetAllWireLessHardId(), (Ids{L"PCI\\VEN_17CB&DEV_1103", kWifiText}));
  EXPECT_EQ(cards.GetWireLessCardHardID(), L"PCI\\VEN_17CB&DEV_1103")
      << "in the system's order, not the keys'";
  EXPECT_EQ(cards.GetHardIDByType(NETWORK_CARD_WIRELESS), L"PCI\\VEN_17CB&DEV_1103");
}

TEST(NetworkCard, NamesTheFirstCardOfEachKindInBothWays) {
  const auto run = simulator::Use(LaptopWithCards());
  CNetworkCard cards;
  EXPECT_EQ(cards.GetHardIDByType(NETWORK_CARD_WIRELESS), kWifiText);
  EXPECT_EQ(cards.GetHardIDByType(NETWORK_CARD_WIRED), kWiredText);
  EXPECT_EQ(cards.GetHardIDByType(NETWORK_CARD_MOBILE), kMobileText);
  EXPECT_EQ(cards.GetWireLessCardHardID(), kWifiText);
  EXPECT_EQ(cards.GetWiredCardHardID(), kWiredText);
  EXPECT_EQ(cards.GetMobileCardHardID(), kMobileText);
}

TEST(NetworkCard, NamesNoCardForANumberThatIsNoKindAndAsksNothing) {
  const auto run = simulator::Use(LaptopWithCards());
  EXPECT_EQ(CNetworkCard().GetHardIDByType(NETWORK_CARD_TYPE{3}), L"");
  EXPECT_EQ(CNetworkCard().GetHardIDByType(NETWORK_CARD_TYPE{0xFFFFFFFF}), L"");
  EXPECT_EQ(run.Calls(), 0);
}

TEST(NetworkCard, NamesNoCardOfAKindThatTheMachineDoesNotHave) {
  auto machine = MachineWithDevices({kWiredId});
  AddKey(machine, 0, "pci\\ven_10ec", kEthernet);
  const auto run = simulator::Use(machine);
  CNetworkCard cards;
  EXPECT_EQ(cards.GetWireLessCardHardID(), L"");
  EXPECT_EQ(cards.GetMobileCardHardID(), L"");
  EXPECT_EQ(cards.GetWiredCardHardID(), kWiredText);
}

TEST(NetworkCard, OfAnotherMediumIsOfNoKind) {
  auto machine = MachineWithDevices({kWifiId});
  AddKey(machine, 0, "pci\\ven_8086", 10);  // Bluetooth
  const auto run = simulator::Use(machine);
  CNetworkCard cards;
  EXPECT_THAT(cards.GetAllWireLessHardId(), IsEmpty());
  EXPECT_THAT(cards.GetAllWiredHardId(), IsEmpty());
  EXPECT_THAT(cards.GetAllMobileHardId(), IsEmpty());
}

TEST(NetworkCard, TellsTheKindOfACardByItsHardwareId) {
  const auto run = simulator::Use(LaptopWithCards());
  CNetworkCard cards;
  EXPECT_TRUE(cards.IsWlanOrWifi(kWifiText));
  EXPECT_FALSE(cards.IsWiredCard(kWifiText));
  EXPECT_FALSE(cards.IsMobileCard(kWifiText));
  EXPECT_TRUE(cards.IsWiredCard(kWiredText));
  EXPECT_FALSE(cards.IsWlanOrWifi(kWiredText));
  EXPECT_TRUE(cards.IsMobileCard(kMobileText));
  EXPECT_FALSE(cards.IsWlanOrWifi(kMobileText));
  EXPECT_TRUE(cards.IsWiredCard(kDockText)) << "internal or not";
}

TEST(NetworkCard, IsOfNoKindWhenNoKeyBelongsToIt) {
  const auto run = simulator::Use(LaptopWithCards());
  CNetworkCard cards;
  for (const wchar_t* unknown : {L"PCI\\VEN_14E4&DEV_43A0", L""}) {
    EXPECT_FALSE(cards.IsWlanOrWifi(unknown));
    EXPECT_FALSE(cards.IsWiredCard(unknown));
    EXPECT_FALSE(cards.IsMobileCard(unknown));
  }
}

// The search for the medium.

TEST(NetworkCard, LooksThroughThirtyKeysInOrderAndNoMore) {
  const auto run = simulator::Use(MachineWithoutCards());
  unsigned long medium = 77;
  EXPECT_EQ(CNetworkCard().GetMediaTypeByHardId(kWifiText, medium), 0);
  EXPECT_EQ(medium, 77UL) << "left as it was";
  EXPECT_EQ(OpenedKeys(run), AllThirtyKeys());
}

TEST(NetworkCard, AsksForTheKindOfProcessorBeforeTheKeys) {
  auto machine = MachineWithoutCards();
  AddKey(machine, 1, "pci\\ven_8086", kWifi);
  const auto run = simulator::Use(machine);
  unsigned long medium = 0;
  EXPECT_EQ(CNetworkCard().GetMediaTypeByHardId(kWifiText, medium), 1);
  EXPECT_EQ(medium, 9UL);
  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(0, null)",                               //
                                       "HalQueryInformation(0, null, 19, 4)",            //
                                       "RegOpenKeyExW(" + KeyPath(0) + ", 0, 0x20019)",  //
                                       "RegOpenKeyExW(" + KeyPath(1) + ", 0, 0x20019)",  //
                                       "RegQueryValueExW(ComponentId, 260)",             //
                                       "RegQueryValueExW(*PhysicalMediaType, 4)", "RegCloseKey()"));
}

TEST(NetworkCard, StopsAtTheFirstKeyThatMatches) {
  auto machine = MachineWithoutCards();
  AddKey(machine, 4, "pci\\ven_8086", kEthernet);
  AddKey(machine, 5, "pci\\ven_8086", kWifi);
  const auto run = simulator::Use(machine);
  unsigned long medium = 0;
  EXPECT_EQ(CNetworkCard().GetMediaTypeByHardId(kWifiText, medium), 1);
  EXPECT_EQ(medium, 14UL);
  EXPECT_THAT(OpenedKeys(run), SizeIs(5));
}

TEST(NetworkCard, GoesOnBehindAKeyThatDoesNotTellItsMedium) {
  auto machine = MachineWithoutCards();
  AddKey(machine, 4, "pci\\ven_8086", kEthernet).values.erase("*PhysicalMediaType");
  AddKey(machine, 12, "pci\\ven_8086", kWifi);
  const auto run = simulator::Use(machine);
  EXPECT_TRUE(CNetworkCard().IsWlanOrWifi(kWifiText));
}

TEST(NetworkCard, GoesOnBehindAKeyThatMayNotBeRead) {
  auto machine = MachineWithoutCards();
  AddKey(machine, 0, "pci\\ven_8086", kEthernet).open_error = 5;
  AddKey(machine, 9, "pci\\ven_8086", kWifi);
  const auto run = simulator::Use(machine);
  EXPECT_TRUE(CNetworkCard().IsWlanOrWifi(kWifiText));
}

TEST(NetworkCard, HasAKindUpToKey29) {
  for (const int number : {0, 9, 10, 29}) {
    auto machine = MachineWithDevices({kWifiId});
    AddKey(machine, number, "pci\\ven_8086", kWifi);
    const auto run = simulator::Use(machine);
    EXPECT_EQ(CNetworkCard().GetWireLessCardHardID(), kWifiText) << number;
  }
}

TEST(NetworkCard, HasNoKindFromKey30On) {
  for (const int number : {30, 31, 100}) {
    auto machine = MachineWithDevices({kWifiId});
    AddKey(machine, number, "pci\\ven_8086", kWifi);
    const auto run = simulator::Use(machine);
    EXPECT_EQ(CNetworkCard().GetWireLessCardHardID(), L"") << number;
    EXPECT_EQ(OpenedKeys(run), AllThirtyKeys());
  }
}

TEST(NetworkCard, IsMatchedByComponentIdWhateverTheProcessorIsUnlessItIsArm) {
  for (const std::uint32_t kind : {0U, 1U, 2U, 4U}) {
    auto machine = MachineWithDevices({kWifiId});
    machine.devices->front().instance_id = "PCI\\VEN_8086&DEV_A0F0\\3&1";
    machine.cpu->kind = kind;
    AddArmKey(machine, 0, "PCI\\VEN_8086&DEV_A0F0\\3&1", kEthernet);
    AddKey(machine, 1, "pci\\ven_8086", kWifi);
    const auto run = simulator::Use(machine);
    EXPECT_TRUE(CNetworkCard().IsWlanOrWifi(kWifiText)) << kind;
    EXPECT_EQ(run.Calls("GetDeviceStrInfoByHardwareID"), 0) << "the instance ID is not asked for";
  }
}

TEST(NetworkCard, IsMatchedByComponentIdWhenTheProcessorCannotBeAsked) {
  auto machine = MachineWithDevices({kWifiId});
  machine.cpu->kind.reset();
  AddKey(machine, 1, "pci\\ven_8086", kWifi);
  {
    const auto run = simulator::Use(machine);
    EXPECT_TRUE(CNetworkCard().IsWlanOrWifi(kWifiText));
  }
  auto run = simulator::Use(machine);
  run.OnQuery([](const simulator::HalQuery& query) {
    query.buffer[0] = 3;  // what a failed query leaves behind says nothing
    return 0;
  });
  EXPECT_TRUE(CNetworkCard().IsWlanOrWifi(kWifiText));
}

TEST(NetworkCard, IsMatchedByComponentIdWhenTheProcessorsClassCannotBePrepared) {
  auto machine = MachineWithDevices({kWifiId});
  AddKey(machine, 1, "pci\\ven_8086", kWifi);
  auto run = simulator::Use(machine);
  run.Inject(simulator::Fault::kFail, 0);
  EXPECT_TRUE(CNetworkCard().IsWlanOrWifi(kWifiText));
}

TEST(NetworkCard, IsMatchedByInstanceIdOnAnArmMachine) {
  auto machine = MachineWithDevices({kWifiId});
  machine.devices->front().instance_id = "PCI\\VEN_8086&DEV_A0F0\\3&11583659&0&A3";
  machine.cpu->kind = kArm;
  AddKey(machine, 0, "pci\\ven_8086", kEthernet);
  AddArmKey(machine, 2, "pci\\ven_8086&dev_a0f0\\3&11583659&0&a3", kWifi);
  const auto run = simulator::Use(machine);
  unsigned long medium = 0;
  EXPECT_EQ(CNetworkCard().GetMediaTypeByHardId(kWifiText, medium), 1);
  EXPECT_EQ(medium, 9UL);
  EXPECT_THAT(run.Trace(),
              ElementsAre("HalInit(0, null)",                                                    //
                          "HalQueryInformation(0, null, 19, 4)",                                 //
                          std::string("GetDeviceStrInfoByHardwareID(") + kWifiId + ", Net, 9)",  //
                          "RegOpenKeyExW(" + KeyPath(0) + ", 0, 0x20019)",                       //
                          "RegQueryValueExW(DeviceInstanceID, 260)", "RegCloseKey()",
                          "RegOpenKeyExW(" + KeyPath(1) + ", 0, 0x20019)",  //
                          "RegOpenKeyExW(" + KeyPath(2) + ", 0, 0x20019)",  //
                          "RegQueryValueExW(DeviceInstanceID, 260)",        //
                          "RegQueryValueExW(*PhysicalMediaType, 4)", "RegCloseKey()"));
}

TEST(NetworkCard, WithoutAnInstanceIdHasNoKindOnAnArmMachine) {
  auto machine = MachineWithDevices({kWifiId});
  machine.cpu->kind = kArm;
  AddKey(machine, 0, "pci\\ven_8086", kWifi);
  AddArmKey(machine, 1, "", kWifi);
  const auto run = simulator::Use(machine);
  EXPECT_FALSE(CNetworkCard().IsWlanOrWifi(kWifiText));
  EXPECT_EQ(OpenedKeys(run), AllThirtyKeys());
}

TEST(NetworkCard, OnTheListHasItsOwnMediumAndNotTheOneOfTheCardBefore) {
  auto machine = MachineWithDevices({kWifiId, "PCI\\VEN_14E4&DEV_43A0"});
  AddKey(machine, 0, "pci\\ven_8086", kWifi);
  const auto run = simulator::Use(machine);
  EXPECT_EQ(CNetworkCard().GetAllWireLessHardId(), Ids{kWifiText});
}

TEST(NetworkCard, GivesTheInstanceIdOfACard) {
  auto machine = LaptopWithCards();
  machine.devices->at(2).instance_id = "PCI\\VEN_8086&DEV_A0F0\\3&1";
  const auto run = simulator::Use(machine);
  EXPECT_EQ(CNetworkCard().GetInstanceIDByHardId(kWifiText), L"PCI\\VEN_8086&DEV_A0F0\\3&1");
  EXPECT_EQ(CNetworkCard().GetInstanceIDByHardId(L"PCI\\VEN_FFFF"), L"");
  EXPECT_EQ(run.Trace().front(), std::string("GetDeviceStrInfoByHardwareID(") + kWifiId + ", Net, 9)");
}

// What does not depend on the machine.

TEST(NetworkCard, SupportsWirelessCardsOnEveryMachine) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  EXPECT_FALSE(CNetworkCard().IsNotSupportWireLessCard());
  EXPECT_EQ(run.Calls(), 0);
}

TEST(NetworkCard, HasTheSameVendorsOnEveryMachineAndReadsNoFileForThem) {
  for (const auto& machine : {simulator::EmptyMachine(), LaptopWithCards(), simulator::BlankMachine()}) {
    const auto run = simulator::Use(machine);
    EXPECT_EQ(CNetworkCard().GetWireLessVenderByMachine(), L"VEN_8086");
    EXPECT_EQ(CNetworkCard().GetWiredVenderByMachine(), L"VEN_10EC");
    EXPECT_EQ(run.Calls(), 0);
  }
}

TEST(NetworkCard, AsksNothingWhenItIsMadeCopiedOrDestroyed) {
  const auto run = simulator::Use(simulator::BlankMachine());
  {
    CNetworkCard cards;
    CNetworkCard copy(cards);
    copy = cards;
  }
  EXPECT_EQ(run.Calls(), 0);
}

TEST(NetworkCard, SeesEveryChangeBecauseItKeepsNothing) {
  auto run = simulator::Use(LaptopWithCards());
  CNetworkCard cards;
  EXPECT_EQ(cards.GetWireLessCardHardID(), kWifiText);
  run.machine().registry->erase(KeyPath(1));
  EXPECT_EQ(cards.GetWireLessCardHardID(), L"");
  run.machine().devices->clear();
  EXPECT_EQ(cards.GetNetworkCardNumbers(), 0);
}

TEST(NetworkCard, CostsAByKindQuestionOneEnumerationAndAtMostThirtyKeysForEachInternalCard) {
  const auto run = simulator::Use(MachineWithDevices({kWifiId, "USB\\VID_0BDA", kWiredId}));
  EXPECT_EQ(CNetworkCard().GetCaption(NETWORK_CARD_WIRELESS), L"");
  EXPECT_EQ(run.Calls("GetDeviceHardwareID"), 1);
  EXPECT_EQ(run.Calls("HalQueryInformation"), 2) << "once for each internal card";
  EXPECT_EQ(run.Calls("RegOpenKeyExW"), 60);
  EXPECT_EQ(run.Calls("GetDeviceStrInfoByHardwareID"), 1) << "the property";
}

TEST(NetworkCard, CostsAQuestionByHardwareIdNothingButTheProperty) {
  const auto run = simulator::Use(LaptopWithCards());
  CNetworkCard().GetCaptionByHardId(kWifiText);
  EXPECT_EQ(run.Calls(), 1);
}

TEST(NetworkCard, ReadsAtMostTwoValuesOfAKeyAndClosesItBeforeTheNext) {
  auto machine = MachineWithoutCards();
  for (int number = 0; number < 30; ++number) AddKey(machine, number, "pci\\ven_10ec", kEthernet);
  const auto run = simulator::Use(machine);
  EXPECT_FALSE(CNetworkCard().IsWlanOrWifi(kWifiText));
  EXPECT_EQ(run.Calls("RegOpenKeyExW"), 30);
  EXPECT_EQ(run.Calls("RegQueryValueExW"), 30);
  EXPECT_EQ(run.Calls("RegCloseKey"), 30);
  EXPECT_EQ(run.OpenHandles(), 0);
}

TEST(NetworkCard, GivesNoCardAtAllRatherThanAWrongOneWhenMemoryRunsOut) {
  auto machine = MachineWithDevices({kWifiId, "PCI\\VEN_17CB&DEV_1103"});
  AddKey(machine, 0, "pci\\ven_8086", kWifi);
  AddKey(machine, 1, "pci\\ven_17cb", kWifi);
  const auto run = simulator::Use(machine);
  const auto results = velmora::testing::WithEachAllocationFailing(
      [] { return CNetworkCard().GetHardIDByType(NETWORK_CARD_WIRELESS); });
  EXPECT_THAT(results, Each(AnyOf(kWifiText, L"")));
  EXPECT_EQ(results.back(), kWifiText);
}

}  // namespace
