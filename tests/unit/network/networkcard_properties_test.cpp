/// What CNetworkCard tells about a card, by kind and by hardware ID, and what it logs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/logging/captured_log.h"
#include "tests/unit/network/card_machine.h"
#include "velmora/networkcard.h"

namespace {

using namespace network_test;
using simulator::Fault;
using simulator::Machine;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::testing::CapturedLog;
using velmora::testing::LogRecord;
using velmora::testing::NoLogger;

const std::wstring kId = L"PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_20";
const std::string kNarrowId = kWifiId;

/// A laptop whose Wi-Fi card has every property, and WMI rows of it.
Machine Laptop() {
  auto machine = MachineWithoutCards();
  auto& card = AddDevice(machine, kWifiId);
  card.description = "Wi-Fi 6 AX201 160MHz";
  card.manufacturer = "Intel Corporation";
  card.display_name = "Intel(R) Wi-Fi 6 AX201 160MHz";
  card.driver_version = "22.80.0.9";
  card.inf = "oem15.inf";
  card.instance_id = "PCI\\VEN_8086&DEV_A0F0\\3&11583659&0&A3";
  card.problem_code = 22;
  AddKey(machine, 0, "pci\\ven_8086", kWifi);
  machine.wmi->classes["Win32_NetworkAdapter"] = {{{"Name", "Intel(R) Wi-Fi 6 AX201 160MHz"},
                                                   {"MACAddress", "A4:6B:B6:12:34:56"},
                                                   {"GUID", "{5A6B7C8D-1234-4321-ABCD-0123456789AB}"},
                                                   {"AdapterType", "Ethernet 802.3"}}};
  return machine;
}

/// A text in both its forms, and what it takes to give it.
struct CardTextGetter {
  const char* name;
  std::wstring (CNetworkCard::*by_kind)(NETWORK_CARD_TYPE);
  std::wstring (CNetworkCard::*by_id)(const std::wstring&);
  int property;
  const char* label;
  std::wstring value;
};

const std::vector<CardTextGetter> kCardTexts{
    {"GetManufactrue", &CNetworkCard::GetManufactrue, &CNetworkCard::GetManufactrueByHardId, 1,
     "manufacture = ", L"Intel Corporation"},
    {"GetDriverVersion", &CNetworkCard::GetDriverVersion, &CNetworkCard::GetDriverVersionByHardId, 2,
     "version = ", L"22.80.0.9"},
    {"GetCaption", &CNetworkCard::GetCaption, &CNetworkCard::GetCaptionByHardId, 0,
     "caption = ", L"Wi-Fi 6 AX201 160MHz"},
    {"GetDisplayName", &CNetworkCard::GetDisplayName, &CNetworkCard::GetDisplayNameByHardId, 7,
     "displayname = ", L"Intel(R) Wi-Fi 6 AX201 160MHz"},
    {"GetINF", &CNetworkCard::GetINF, &CNetworkCard::GetINFByHardId, 8, "inf = ", L"oem15.inf"}};

/// A text that WMI has, likewise.
struct WmiGetter {
  std::wstring (CNetworkCard::*by_kind)(NETWORK_CARD_TYPE);
  std::wstring (CNetworkCard::*by_id)(const std::wstring&);
  std::string query;
  std::string property;
  std::wstring value;
};

const std::vector<WmiGetter> kWmiGetters{
    {&CNetworkCard::GetMacAddress, &CNetworkCard::GetMacAddressByHardId,
     "SELECT MACAddress FROM Win32_NetworkAdapter WHERE MACAddress IS NOT NULL and Name='", "MACAddress",
     L"A4:6B:B6:12:34:56"},
    {&CNetworkCard::GetGUID, &CNetworkCard::GetGUIDByHardId,
     "SELECT GUID FROM Win32_NetworkAdapter WHERE Name='", "GUID", L"{5A6B7C8D-1234-4321-ABCD-0123456789AB}"},
    {&CNetworkCard::GetAdapterType, &CNetworkCard::GetAdapterTypeByHardId,
     "SELECT AdapterType FROM Win32_NetworkAdapter WHERE Name='", "AdapterType", L"Ethernet 802.3"}};

std::string AskedByHardwareId(const std::string& id, int property) {
  return "GetDeviceStrInfoByHardwareID(" + id + ", Net, " + std::to_string(property) + ")";
}

TEST(NetworkCardTexts, AreAskedByHardwareIdWithOneCall) {
  for (const auto& getter : kCardTexts) {
    const auto run = simulator::Use(Laptop());
    EXPECT_EQ((CNetworkCard().*getter.by_id)(kId), getter.value) << getter.name;
    EXPECT_THAT(run.Trace(), ElementsAre(AskedByHardwareId(kNarrowId, getter.property)));
  }
}

TEST(NetworkCardTexts, AreAskedByKindForTheFirstCardOfTheKind) {
  for (const auto& getter : kCardTexts) {
    const auto run = simulator::Use(Laptop());
    EXPECT_EQ((CNetworkCard().*getter.by_kind)(NETWORK_CARD_WIRELESS), getter.value) << getter.name;
    EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Net)",                       //
                                         "HalInit(0, null)",                               //
                                         "HalQueryInformation(0, null, 19, 4)",            //
                                         "RegOpenKeyExW(" + KeyPath(0) + ", 0, 0x20019)",  //
                                         "RegQueryValueExW(ComponentId, 260)",             //
                                         "RegQueryValueExW(*PhysicalMediaType, 4)",        //
                                         "RegCloseKey()",                                  //
                                         AskedByHardwareId(kNarrowId, getter.property)));
  }
}

TEST(NetworkCardTexts, AreAskedWithTheEmptyIdForAKindWithoutACard) {
  for (const auto& getter : kCardTexts) {
    const auto run = simulator::Use(Laptop());
    EXPECT_EQ((CNetworkCard().*getter.by_kind)(NETWORK_CARD_MOBILE), L"") << getter.name;
    EXPECT_EQ(run.Trace().back(), AskedByHardwareId("", getter.property));
  }
}

TEST(NetworkCardTexts, AreAskedWithTheEmptyIdForANumberThatIsNoKind) {
  for (const auto& getter : kCardTexts) {
    const auto run = simulator::Use(Laptop());
    EXPECT_EQ((CNetworkCard().*getter.by_kind)(NETWORK_CARD_TYPE{3}), L"") << getter.name;
    EXPECT_THAT(run.Trace(), ElementsAre(AskedByHardwareId("", getter.property)));
  }
}

TEST(NetworkCardTexts, AreEmptyForAHardwareIdThatNoCardHas) {
  const auto run = simulator::Use(Laptop());
  for (const auto& getter : kCardTexts) EXPECT_EQ((CNetworkCard().*getter.by_id)(L"PCI\\VEN_FFFF"), L"");
}

TEST(NetworkCardTexts, AreEmptyWhenTheServiceThrows) {
  for (const auto& getter : kCardTexts) {
    auto run = simulator::Use(Laptop());
    run.Inject(Fault::kThrow, 0, true);
    EXPECT_EQ((CNetworkCard().*getter.by_id)(kId), L"") << getter.name;
    EXPECT_EQ((CNetworkCard().*getter.by_kind)(NETWORK_CARD_WIRELESS), L"") << getter.name;
  }
}

TEST(NetworkCardProblemCode, IsTheDevicesInBothForms) {
  const auto run = simulator::Use(Laptop());
  EXPECT_EQ(CNetworkCard().GetProblemCodeByHardId(kId), 22UL);
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceULONGInfoByHardwareID(" + kNarrowId + ", Net, 10)"));
  EXPECT_EQ(CNetworkCard().GetProblemCode(NETWORK_CARD_WIRELESS), 22UL);
}

TEST(NetworkCardProblemCode, IsWhatTheServiceSaysOfTheEmptyIdForAKindWithoutACard) {
  const auto run = simulator::Use(Laptop());
  EXPECT_EQ(CNetworkCard().GetProblemCode(NETWORK_CARD_WIRED), 45UL) << "there is no such device";
  EXPECT_EQ(run.Trace().back(), "GetDeviceULONGInfoByHardwareID(, Net, 10)");
}

TEST(NetworkCardProblemCode, IsZeroWhenTheServiceThrows) {
  auto run = simulator::Use(Laptop());
  run.Inject(Fault::kThrow, 0, true);
  EXPECT_EQ(CNetworkCard().GetProblemCodeByHardId(kId), 0UL);
  EXPECT_EQ(CNetworkCard().GetProblemCode(NETWORK_CARD_WIRELESS), 0UL);
}

TEST(NetworkCardInWmi, IsFoundByItsDisplayName) {
  for (const auto& getter : kWmiGetters) {
    const auto run = simulator::Use(Laptop());
    EXPECT_EQ((CNetworkCard().*getter.by_id)(kId), getter.value);
    EXPECT_THAT(run.Trace(), ElementsAre(AskedByHardwareId(kNarrowId, 7), "CWMI(ROOT\\CIMV2)",
                                         "SelectStr(" + getter.query + "Intel(R) Wi-Fi 6 AX201 160MHz', " +
                                             getter.property + ")"));
  }
}

TEST(NetworkCardInWmi, IsFoundByKindAsWell) {
  for (const auto& getter : kWmiGetters) {
    const auto run = simulator::Use(Laptop());
    EXPECT_EQ((CNetworkCard().*getter.by_kind)(NETWORK_CARD_WIRELESS), getter.value);
    EXPECT_EQ(run.Calls("GetDeviceHardwareID"), 1);
    EXPECT_EQ(run.Calls("SelectStr"), 1);
  }
}

TEST(NetworkCardInWmi, IsAskedForWithTheEmptyNameForAKindWithoutACard) {
  for (const auto& getter : kWmiGetters) {
    const auto run = simulator::Use(Laptop());
    EXPECT_EQ((CNetworkCard().*getter.by_kind)(NETWORK_CARD_WIRED), L"");
    EXPECT_EQ(run.Trace().back(), "SelectStr(" + getter.query + "', " + getter.property + ")");
  }
}

TEST(NetworkCardInWmi, IsNotAskedForByANameThatWouldChangeTheQuery) {
  for (const auto& getter : kWmiGetters) {
    auto machine = Laptop();
    machine.devices->front().display_name = "x' or Name='Intel(R) Wi-Fi 6 AX201 160MHz";
    const auto run = simulator::Use(machine);
    EXPECT_EQ((CNetworkCard().*getter.by_id)(kId), L"");
    EXPECT_EQ(run.Calls("CWMI"), 0);
    EXPECT_EQ(run.Calls("SelectStr"), 0);
  }
}

TEST(NetworkCardInWmi, HasNoMacAddressThatIsNull) {
  auto machine = Laptop();
  machine.wmi->classes["Win32_NetworkAdapter"].front().erase("MACAddress");
  const auto run = simulator::Use(machine);
  EXPECT_EQ(CNetworkCard().GetMacAddressByHardId(kId), L"");
}

TEST(NetworkCardInWmi, IsNotThereWhenWmiIsBrokenOrThrows) {
  auto machine = Laptop();
  machine.wmi->broken = true;
  for (const auto& getter : kWmiGetters) {
    {
      const auto run = simulator::Use(machine);
      EXPECT_EQ((CNetworkCard().*getter.by_id)(kId), L"");
    }
    auto run = simulator::Use(Laptop());
    run.Inject(Fault::kThrow, 2);
    EXPECT_EQ((CNetworkCard().*getter.by_id)(kId), L"");
    EXPECT_EQ(run.OpenHandles(), 0);
  }
}

// Log lines.

std::string Line(const std::string& label, const std::string& value, const std::string& member) {
  return label + value + "(CNetworkCard::" + member + ")";
}

std::string Narrow(const std::wstring& text) { return {text.begin(), text.end()}; }

TEST(NetworkCardLog, HasTheTextUnderItsLabelAndTheOperationThatWasAsked) {
  for (const auto& getter : kCardTexts) {
    const auto run = simulator::Use(Laptop());
    const CapturedLog log;
    (CNetworkCard().*getter.by_id)(kId);
    EXPECT_THAT(log.Texts(),
                ElementsAre(Line(getter.label, Narrow(getter.value), std::string(getter.name) + "ByHardId")));
  }
}

TEST(NetworkCardLog, HasOneLineOfAQuestionByKind) {
  for (const auto& getter : kCardTexts) {
    if (std::string(getter.name) == "GetManufactrue") continue;
    const auto run = simulator::Use(Laptop());
    const CapturedLog log;
    (CNetworkCard().*getter.by_kind)(NETWORK_CARD_WIRELESS);
    EXPECT_THAT(log.Texts(), ElementsAre(Line(getter.label, Narrow(getter.value), getter.name)));
  }
}

TEST(NetworkCardLog, HasTheStartOfTheQuestionForTheManufacturerByKind) {
  const auto run = simulator::Use(Laptop());
  const CapturedLog log;
  CNetworkCard().GetManufactrue(NETWORK_CARD_WIRELESS);
  EXPECT_THAT(log.Texts(), ElementsAre("start(CNetworkCard::GetManufactrue)",
                                       "manufacture = Intel Corporation(CNetworkCard::GetManufactrue)"));
}

TEST(NetworkCardLog, HasEmptyTextsToo) {
  const auto run = simulator::Use(Laptop());
  const CapturedLog log;
  CNetworkCard().GetCaption(NETWORK_CARD_MOBILE);
  CNetworkCard().GetMobileCardHardID();
  EXPECT_THAT(log.Texts(), ElementsAre("caption = (CNetworkCard::GetCaption)",
                                       "hardid=(CNetworkCard::GetMobileCardHardID)"));
}

TEST(NetworkCardLog, HasTheProblemCodeInDecimal) {
  const auto run = simulator::Use(Laptop());
  const CapturedLog log;
  CNetworkCard().GetProblemCode(NETWORK_CARD_WIRELESS);
  CNetworkCard().GetProblemCodeByHardId(kId);
  EXPECT_THAT(log.Texts(), ElementsAre("dwErrorCode = 22(CNetworkCard::GetProblemCode)",
                                       "dwErrorCode = 22(CNetworkCard::GetProblemCodeByHardId)"));
}

TEST(NetworkCardLog, HasTheNumberOfCardsAndTheirHardwareIds) {
  const auto run = simulator::Use(Laptop());
  const CapturedLog log;
  CNetworkCard cards;
  cards.GetNetworkCardNumbers();
  cards.GetWireLessCardHardID();
  cards.GetWiredCardHardID();
  cards.GetMobileCardHardID();
  cards.GetInstanceIDByHardId(kId);
  EXPECT_THAT(log.Texts(), ElementsAre("Numbers = 1(CNetworkCard::GetNetworkCardNumbers)",
                                       "hardid=" + kNarrowId + "(CNetworkCard::GetWireLessCardHardID)",
                                       "hardid=(CNetworkCard::GetWiredCardHardID)",
                                       "hardid=(CNetworkCard::GetMobileCardHardID)",
                                       "InstanceID = PCI\\VEN_8086&DEV_A0F0\\3&11583659&0&A3"
                                       "(CNetworkCard::GetInstanceIDByHardId)"));
}

TEST(NetworkCardLog, HasNothingOfWmiButTheDisplayNameThatWasAskedFor) {
  for (const auto& getter : kWmiGetters) {
    const auto run = simulator::Use(Laptop());
    const CapturedLog log;
    (CNetworkCard().*getter.by_kind)(NETWORK_CARD_WIRELESS);
    (CNetworkCard().*getter.by_id)(kId);
    const std::string line =
        "displayname = Intel(R) Wi-Fi 6 AX201 160MHz(CNetworkCard::GetDisplayNameByHardId)";
    EXPECT_THAT(log.Texts(), ElementsAre(line, line));
  }
}

TEST(NetworkCardLog, HasNothingOfListsKindsAndConstants) {
  const auto run = simulator::Use(Laptop());
  const CapturedLog log;
  CNetworkCard cards;
  cards.GetInternalNetCardHardId();
  cards.GetAllWireLessHardId();
  cards.GetHardIDByType(NETWORK_CARD_WIRELESS);
  cards.IsWlanOrWifi(kId);
  cards.IsNotSupportWireLessCard();
  cards.GetWireLessVenderByMachine();
  cards.GetWiredVenderByMachine();
  unsigned long medium = 0;
  cards.GetMediaTypeByHardId(kId, medium);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(NetworkCardLog, HasTheInstanceIdByWhichACardIsClassifiedOnAnArmMachine) {
  auto machine = Laptop();
  machine.cpu->kind = kArm;
  AddArmKey(machine, 0, "PCI\\VEN_8086", kWifi);
  const auto run = simulator::Use(machine);
  const CapturedLog log;
  CNetworkCard().GetWireLessCardHardID();
  EXPECT_THAT(log.Texts(), ElementsAre("InstanceID = PCI\\VEN_8086&DEV_A0F0\\3&11583659&0&A3"
                                       "(CNetworkCard::GetInstanceIDByHardId)",
                                       "hardid=" + kNarrowId + "(CNetworkCard::GetWireLessCardHardID)"));
}

TEST(NetworkCardLog, HasThePlaceOfTheOperation) {
  const auto run = simulator::Use(Laptop());
  const CapturedLog log;
  CNetworkCard().GetCaption(NETWORK_CARD_WIRELESS);
  CNetworkCard().GetNetworkCardNumbers();
  CNetworkCard().GetManufactrue(NETWORK_CARD_WIRELESS);
  ASSERT_EQ(log.Lines().size(), 4U);
  for (const LogRecord& record : log.Lines()) {
    EXPECT_EQ(record.level, "DEBUG");
    EXPECT_EQ(record.file, "src/network/networkcard.cpp");
    EXPECT_GT(record.line, 0);
  }
  EXPECT_EQ(log.Lines()[0].function, "CNetworkCard::GetCaption");
  EXPECT_EQ(log.Lines()[1].function, "CNetworkCard::GetNetworkCardNumbers");
  EXPECT_EQ(log.Lines()[2].function, "CNetworkCard::GetManufactrue");
  EXPECT_EQ(log.Lines()[3].function, "CNetworkCard::GetManufactrue");
}

TEST(NetworkCardLog, IsNotWrittenWithoutALoggerOrWithDebugOff) {
  const auto run = simulator::Use(Laptop());
  {
    CapturedLog log;
    log.DisableDebug();
    EXPECT_EQ(CNetworkCard().GetCaptionByHardId(kId), L"Wi-Fi 6 AX201 160MHz");
    EXPECT_THAT(log.Lines(), IsEmpty());
  }
  const NoLogger none;
  EXPECT_EQ(CNetworkCard().GetCaptionByHardId(kId), L"Wi-Fi 6 AX201 160MHz");
}

}  // namespace
