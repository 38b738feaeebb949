#include "velmora/networkadapter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "tests/support/simulator/allocations.h"
#include "tests/unit/network/adapter_machine.h"
#include "velmora/networkcard.h"

namespace {

using namespace network_test;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// The indexed getters of texts, each with what it gives on LaptopOnWifi.
struct TextGetter {
  const char* name;
  int (CNetworkAdapter::*get)(std::wstring&, int);
  const wchar_t* expected;
  std::wstring (CNetworkCard::*forwarded)(NETWORK_CARD_TYPE);  ///< null for the hardware ID
};

const std::vector<TextGetter> kTextGetters{
    {"GetManufacturerbyIndex", &CNetworkAdapter::GetManufacturerbyIndex, L"Intel Corporation",
     &CNetworkCard::GetManufactrue},
    {"GetGUIDIndex", &CNetworkAdapter::GetGUIDIndex, L"{5A6B7C8D-1234-4321-ABCD-0123456789AB}",
     &CNetworkCard::GetGUID},
    {"GetCaptionbyIndex", &CNetworkAdapter::GetCaptionbyIndex, L"Intel(R) Wi-Fi 6 AX201 160MHz",
     &CNetworkCard::GetCaption},
    {"GetDisplayNamebyIndex", &CNetworkAdapter::GetDisplayNamebyIndex, L"Wireless Card #2",
     &CNetworkCard::GetDisplayName},
    {"GetMacAddressbyIndex", &CNetworkAdapter::GetMacAddressbyIndex, L"A4:6B:B6:12:34:56",
     &CNetworkCard::GetMacAddress},
    {"GetTypebyIndex", &CNetworkAdapter::GetTypebyIndex, L"Ethernet 802.3", &CNetworkCard::GetAdapterType},
    {"GetDriverVersionbyIndex", &CNetworkAdapter::GetDriverVersionbyIndex, L"22.80.1.1",
     &CNetworkCard::GetDriverVersion},
    {"GetHardIdbyIndex", &CNetworkAdapter::GetHardIdbyIndex, L"PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_20",
     nullptr},
};

constexpr int kBadIndexes[] = {1, -1, 2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};

TEST(NetworkAdapter, GivesEachTextOfTheWirelessCardForIndexZero) {
  const auto run = simulator::Use(LaptopOnWifi());
  for (const auto& getter : kTextGetters) {
    std::wstring text = L"old";
    EXPECT_EQ((CNetworkAdapter().*getter.get)(text, 0), 1) << getter.name;
    EXPECT_EQ(text, getter.expected) << getter.name;
  }
}

TEST(NetworkAdapter, AsksTheCardsClassAndNobodyElse) {
  for (const auto& getter : kTextGetters) {
    const auto trace_of = [](auto operation) {
      const auto run = simulator::Use(LaptopOnWifi());
      operation();
      return run.Trace();
    };
    const auto own = trace_of([&] {
      std::wstring text;
      (CNetworkAdapter().*getter.get)(text, 0);
    });
    const auto forwarded = trace_of([&] {
      if (getter.forwarded == nullptr) CNetworkCard().GetWireLessCardHardID();
      if (getter.forwarded != nullptr) (CNetworkCard().*getter.forwarded)(NETWORK_CARD_WIRELESS);
    });
    EXPECT_EQ(own, forwarded) << getter.name;
  }
}

TEST(NetworkAdapter, ReturnsZeroAndLeavesTheOutputAsItWasForEveryOtherIndex) {
  const auto run = simulator::Use(LaptopOnWifi());
  for (const int index : kBadIndexes) {
    for (const auto& getter : kTextGetters) {
      std::wstring text = L"old";
      EXPECT_EQ((CNetworkAdapter().*getter.get)(text, index), 0) << getter.name;
      EXPECT_EQ(text, L"old") << getter.name;
    }
    unsigned long code = 7;
    EXPECT_EQ(CNetworkAdapter().GetErrorStatebyIndex(code, index), 0);
    EXPECT_EQ(code, 7U);
  }
  EXPECT_EQ(run.Calls(), 0) << "nobody is asked about an index that there is not";
}

TEST(NetworkAdapter, ReturnsZeroAndEmptiesTheOutputWithoutAWirelessCard) {
  const auto run = simulator::Use(MachineWithoutCards());
  for (const auto& getter : kTextGetters) {
    std::wstring text = L"old";
    EXPECT_EQ((CNetworkAdapter().*getter.get)(text, 0), 0) << getter.name;
    EXPECT_EQ(text, L"") << getter.name;
  }
}

TEST(NetworkAdapter, ReturnsZeroAndEmptiesTheOutputForAnEmptyText) {
  auto machine = LaptopOnWifi();
  for (auto& device : *machine.devices) device.driver_version.clear();
  const auto run = simulator::Use(machine);
  std::wstring version = L"old";
  EXPECT_EQ(CNetworkAdapter().GetDriverVersionbyIndex(version, 0), 0);
  EXPECT_EQ(version, L"");
}

TEST(NetworkAdapter, GivesTheProblemCodeAndReturnsOneAlsoForACardThatWorks) {
  auto machine = LaptopOnWifi();
  const auto code_of = [](const simulator::Machine& laptop) {
    const auto run = simulator::Use(laptop);
    unsigned long code = 7;
    EXPECT_EQ(CNetworkAdapter().GetErrorStatebyIndex(code, 0), 1);
    return code;
  };
  EXPECT_EQ(code_of(machine), 0U);
  for (auto& device : *machine.devices) device.problem_code = 22;
  EXPECT_EQ(code_of(machine), 22U);
}

TEST(NetworkAdapter, ReturnsOneWithTheCodeOfADeviceThatIsNotThereWithoutAWirelessCard) {
  const auto run = simulator::Use(MachineWithoutCards());
  unsigned long code = 7;
  EXPECT_EQ(CNetworkAdapter().GetErrorStatebyIndex(code, 0), 1);
  EXPECT_EQ(code, 45U);
}

TEST(NetworkAdapter, IsOneWithAWirelessCard) {
  const auto run = simulator::Use(LaptopOnWifi());
  unsigned int count = 7;
  EXPECT_EQ(CNetworkAdapter().GetNetworkAdapterNums(count), 1);
  EXPECT_EQ(count, 1U);
  EXPECT_THAT(CNetworkAdapter().GetWireLessIndex(), ElementsAre(0));
}

TEST(NetworkAdapter, IsNoneOnAMachineWithAWiredCardOnly) {
  auto machine = MachineWithoutCards();
  AddDevice(machine, kWiredId);
  AddKey(machine, 0, "pci\\ven_10ec&dev_8168", kEthernet);
  const auto run = simulator::Use(machine);
  unsigned int count = 7;
  EXPECT_EQ(CNetworkAdapter().GetNetworkAdapterNums(count), 0);
  EXPECT_EQ(count, 0U);
  EXPECT_THAT(CNetworkAdapter().GetWireLessIndex(), IsEmpty());
}

TEST(NetworkAdapter, IsTheFirstOfTwoWirelessCards) {
  auto machine = LaptopOnWifi();
  AddDevice(machine, "PCI\\VEN_14C3&DEV_0608").description = "A second card";
  AddKey(machine, 9, "pci\\ven_14c3&dev_0608", kWifi);
  const auto run = simulator::Use(machine);
  unsigned int count = 7;
  EXPECT_EQ(CNetworkAdapter().GetNetworkAdapterNums(count), 1);
  EXPECT_EQ(count, 1U);
  EXPECT_THAT(CNetworkAdapter().GetWireLessIndex(), ElementsAre(0));
  std::wstring caption;
  EXPECT_EQ(CNetworkAdapter().GetCaptionbyIndex(caption, 0), 1);
  EXPECT_EQ(caption, L"Intel(R) Wi-Fi 6 AX201 160MHz");
}

TEST(NetworkAdapter, IsResolvedAfreshByEachCall) {
  auto run = simulator::Use(LaptopOnWifi());
  CNetworkAdapter adapter;
  unsigned int count = 0;
  EXPECT_EQ(adapter.GetNetworkAdapterNums(count), 1);
  run.machine().devices->clear();
  EXPECT_EQ(adapter.GetNetworkAdapterNums(count), 0);
  EXPECT_EQ(count, 0U);
}

TEST(NetworkAdapter, GivesTheInfFileOfTheNetworkDeviceWithAHardwareId) {
  const auto run = simulator::Use(LaptopOnWifi());
  const velmora::testing::CapturedLog log;
  EXPECT_EQ(CNetworkAdapter().GetINFbyHardId(L"PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_20"), L"oem12.inf");
  EXPECT_THAT(run.Trace(),
              ElementsAre("GetDeviceStrInfoByHardwareID(PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_20, "
                          "Net, 8)"));
  EXPECT_THAT(OwnLines(log), ElementsAre("DEBUG inf=oem12.inf(CNetworkAdapter::GetINFbyHardId)"));
  EXPECT_EQ(CNetworkAdapter().GetINFbyHardId(L""), L"");
  EXPECT_EQ(CNetworkAdapter().GetINFbyHardId(L"PCI\\VEN_0000"), L"");
}

TEST(NetworkAdapter, FailsQuietlyWhenMemoryRunsOut) {
  const auto run = simulator::Use(LaptopOnWifi());
  const auto results = velmora::testing::WithEachAllocationFailing([] {
    unsigned int count = 7;
    const int result = CNetworkAdapter().GetNetworkAdapterNums(count);
    return std::pair(result, count);
  });
  for (const auto& [result, count] : results) EXPECT_EQ(result, static_cast<int>(count));
  EXPECT_EQ(results.back().first, 1);
}

}  // namespace
