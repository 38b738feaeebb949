#include "velmora/networkcard.h"

#include <optional>
#include <source_location>

#include "network/adapter_query.h"
#include "network/card_rules.h"
#include "network/class_key.h"
#include "platform/guard.h"
#include "platform/halquery.h"
#include "platform/logging.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "platform/ostrine/wmi.h"

using velmora::Answer;
using velmora::LogDebug;
using velmora::Within;
using velmora::network::AdapterQuestion;
using velmora::network::KeyMatch;
using velmora::network::Medium;
using velmora::setup_class::kNet;

namespace {

/// Logs what an operation gives, and gives it. The line's place is the operation's.
template <class Value>
Value Logged(const char* label, Value value, const char* operation,
             const std::source_location& location = std::source_location::current()) {
  LogDebug([&](auto& line) { line << label << value << Within(operation); }, location);
  return value;
}

std::vector<std::wstring> InternalCards() {
  auto hardware_ids = CDeviceInformention().GetDeviceHardwareID(kNet);
  std::erase_if(hardware_ids, [](const auto& id) { return !velmora::network::IsInternal(id); });
  return hardware_ids;
}

bool FindMediumOf(const std::wstring& hardware_id, unsigned long& medium) {
  const KeyMatch match = velmora::network::KeyMatchFor(velmora::hal::ProcessorKind());
  if (match == KeyMatch::kComponentId) return velmora::network::FindMedium(match, hardware_id, medium);
  return velmora::network::FindMedium(match, CNetworkCard().GetInstanceIDByHardId(hardware_id), medium);
}

bool HasMedium(const std::wstring& hardware_id, Medium wanted) {
  unsigned long medium = 0;
  return FindMediumOf(hardware_id, medium) && medium == static_cast<unsigned long>(wanted);
}

std::vector<std::wstring> InternalCardsWith(Medium medium) {
  auto hardware_ids = InternalCards();
  std::erase_if(hardware_ids, [=](const auto& id) { return !HasMedium(id, medium); });
  return hardware_ids;
}

// Which card an operation means: the one with a hardware ID, or the first internal one of a kind.

std::wstring HardwareIdOf(std::wstring hardware_id) { return hardware_id; }

std::wstring HardwareIdOf(NETWORK_CARD_TYPE type) {
  const auto medium = velmora::network::MediumOf(type);
  if (!medium) return {};
  const auto hardware_ids = InternalCardsWith(*medium);
  return hardware_ids.empty() ? std::wstring() : hardware_ids.front();
}

/// A property of a card's device, and how it is called in log lines.
struct Property {
  enmDEVICE_PROPERTY number;
  const char* label;
};

constexpr Property kCaption{PROP_DESCRIPTION, "caption = "};
constexpr Property kManufacturer{PROP_MANUFACTURER, "manufacture = "};
constexpr Property kDriverVersion{PROP_DRIVER_VERSION, "version = "};
constexpr Property kDisplayName{PROP_DISPLAY_NAME, "displayname = "};
constexpr Property kInf{PROP_INF, "inf = "};
constexpr Property kInstanceId{PROP_INSTANCE_ID, "InstanceID = "};
constexpr Property kProblemCode{PROP_PROBLEM_CODE, "dwErrorCode = "};

/// A text property, logged by the operation that asks.
template <class Card>
std::wstring CardText(const Property& property, const Card& card, const char* operation,
                      const std::source_location& location = std::source_location::current()) {
  auto text = Answer(std::wstring(), [&] {
    return CDeviceInformention().GetDeviceStrInfoByHardwareID(HardwareIdOf(card), kNet, property.number);
  });
  return Logged(property.label, std::move(text), operation, location);
}

template <class Card>
unsigned long CardNumber(const Property& property, const Card& card, const char* operation,
                         const std::source_location& location = std::source_location::current()) {
  const auto number = Answer(0UL, [&] {
    return CDeviceInformention().GetDeviceULONGInfoByHardwareID(HardwareIdOf(card), kNet, property.number);
  });
  return Logged(property.label, number, operation, location);
}

/// What WMI says about the card, which it knows by its display name.
template <class Card>
std::wstring AskWmi(const AdapterQuestion& question, const Card& card) {
  return Answer(std::wstring(), [&] {
    const auto name = CNetworkCard().GetDisplayNameByHardId(HardwareIdOf(card));
    const auto query = velmora::network::QueryFor(question, name);
    return query ? CWMI(L"ROOT\\CIMV2").SelectStr(*query, question.property) : std::wstring();
  });
}

std::vector<std::wstring> AnswerList(Medium medium) {
  return Answer(std::vector<std::wstring>(), [=] { return InternalCardsWith(medium); });
}

std::wstring FirstOf(NETWORK_CARD_TYPE type) {
  return Answer(std::wstring(), [=] { return HardwareIdOf(type); });
}

bool AnswerHasMedium(const std::wstring& hardware_id, Medium medium) {
  return Answer(false, [&] { return HasMedium(hardware_id, medium); });
}

}  // namespace

CNetworkCard::CNetworkCard() = default;
CNetworkCard::~CNetworkCard() = default;

bool CNetworkCard::IsNotSupportWireLessCard() { return false; }

std::vector<std::wstring> CNetworkCard::GetInternalNetCardHardId() {
  return Answer(std::vector<std::wstring>(), InternalCards);
}

int CNetworkCard::GetNetworkCardNumbers() {
  const auto count = static_cast<int>(GetInternalNetCardHardId().size());
  return Logged("Numbers = ", count, "CNetworkCard::GetNetworkCardNumbers");
}

std::vector<std::wstring> CNetworkCard::GetAllWireLessHardId() { return AnswerList(Medium::kNative80211); }
std::vector<std::wstring> CNetworkCard::GetAllWiredHardId() { return AnswerList(Medium::kEthernet); }
std::vector<std::wstring> CNetworkCard::GetAllMobileHardId() { return AnswerList(Medium::kWirelessWan); }

std::wstring CNetworkCard::GetHardIDByType(NETWORK_CARD_TYPE type) { return FirstOf(type); }

std::wstring CNetworkCard::GetWireLessCardHardID() {
  return Logged("hardid=", FirstOf(NETWORK_CARD_WIRELESS), "CNetworkCard::GetWireLessCardHardID");
}

std::wstring CNetworkCard::GetWiredCardHardID() {
  return Logged("hardid=", FirstOf(NETWORK_CARD_WIRED), "CNetworkCard::GetWiredCardHardID");
}

std::wstring CNetworkCard::GetMobileCardHardID() {
  return Logged("hardid=", FirstOf(NETWORK_CARD_MOBILE), "CNetworkCard::GetMobileCardHardID");
}

bool CNetworkCard::IsWlanOrWifi(const std::wstring& hardware_id) {
  return AnswerHasMedium(hardware_id, Medium::kNative80211);
}

bool CNetworkCard::IsMobileCard(const std::wstring& hardware_id) {
  return AnswerHasMedium(hardware_id, Medium::kWirelessWan);
}

bool CNetworkCard::IsWiredCard(const std::wstring& hardware_id) {
  return AnswerHasMedium(hardware_id, Medium::kEthernet);
}

int CNetworkCard::GetMediaTypeByHardId(const std::wstring& hardware_id, unsigned long& medium) {
  return Answer(false, [&] { return FindMediumOf(hardware_id, medium); }) ? 1 : 0;
}

int CNetworkCard::GetMediaTypeByRegedit(std::wstring key_path, std::wstring hardware_id,
                                        unsigned long& medium) {
  return Answer(false,
                [&] {
                  return velmora::network::ReadMedium(key_path, KeyMatch::kComponentId, hardware_id, medium);
                })
             ? 1
             : 0;
}

int CNetworkCard::GetMediaTypeByRegeditEx(std::wstring key_path, std::wstring instance_id,
                                          unsigned long& medium) {
  return Answer(false,
                [&] {
                  return velmora::network::ReadMedium(key_path, KeyMatch::kInstanceId, instance_id, medium);
                })
             ? 1
             : 0;
}

std::wstring CNetworkCard::GetInstanceIDByHardId(const std::wstring& hardware_id) {
  return CardText(kInstanceId, hardware_id, "CNetworkCard::GetInstanceIDByHardId");
}

std::wstring CNetworkCard::GetWireLessVenderByMachine() {
  return Answer(std::wstring(), [] { return std::wstring(L"VEN_8086"); });
}

std::wstring CNetworkCard::GetWiredVenderByMachine() {
  return Answer(std::wstring(), [] { return std::wstring(L"VEN_10EC"); });
}

std::wstring CNetworkCard::GetManufactrue(NETWORK_CARD_TYPE type) {
  LogDebug([](auto& line) { line << "start" << Within("CNetworkCard::GetManufactrue"); });
  return CardText(kManufacturer, type, "CNetworkCard::GetManufactrue");
}

std::wstring CNetworkCard::GetManufactrueByHardId(const std::wstring& hardware_id) {
  return CardText(kManufacturer, hardware_id, "CNetworkCard::GetManufactrueByHardId");
}

std::wstring CNetworkCard::GetDriverVersion(NETWORK_CARD_TYPE type) {
  return CardText(kDriverVersion, type, "CNetworkCard::GetDriverVersion");
}

std::wstring CNetworkCard::GetDriverVersionByHardId(const std::wstring& hardware_id) {
  return CardText(kDriverVersion, hardware_id, "CNetworkCard::GetDriverVersionByHardId");
}

std::wstring CNetworkCard::GetCaption(NETWORK_CARD_TYPE type) {
  return CardText(kCaption, type, "CNetworkCard::GetCaption");
}

std::wstring CNetworkCard::GetCaptionByHardId(const std::wstring& hardware_id) {
  return CardText(kCaption, hardware_id, "CNetworkCard::GetCaptionByHardId");
}

std::wstring CNetworkCard::GetDisplayName(NETWORK_CARD_TYPE type) {
  return CardText(kDisplayName, type, "CNetworkCard::GetDisplayName");
}

std::wstring CNetworkCard::GetDisplayNameByHardId(const std::wstring& hardware_id) {
  return CardText(kDisplayName, hardware_id, "CNetworkCard::GetDisplayNameByHardId");
}

std::wstring CNetworkCard::GetINF(NETWORK_CARD_TYPE type) {
  return CardText(kInf, type, "CNetworkCard::GetINF");
}

std::wstring CNetworkCard::GetINFByHardId(const std::wstring& hardware_id) {
  return CardText(kInf, hardware_id, "CNetworkCard::GetINFByHardId");
}

unsigned long CNetworkCard::GetProblemCode(NETWORK_CARD_TYPE type) {
  return CardNumber(kProblemCode, type, "CNetworkCard::GetProblemCode");
}

unsigned long CNetworkCard::GetProblemCodeByHardId(const std::wstring& hardware_id) {
  return CardNumber(kProblemCode, hardware_id, "CNetworkCard::GetProblemCodeByHardId");
}

std::wstring CNetworkCard::GetMacAddress(NETWORK_CARD_TYPE type) {
  return AskWmi(velmora::network::kAskMacAddress, type);
}

std::wstring CNetworkCard::GetMacAddressByHardId(const std::wstring& hardware_id) {
  return AskWmi(velmora::network::kAskMacAddress, hardware_id);
}

std::wstring CNetworkCard::GetGUID(NETWORK_CARD_TYPE type) {
  return AskWmi(velmora::network::kAskGuid, type);
}

std::wstring CNetworkCard::GetGUIDByHardId(const std::wstring& hardware_id) {
  return AskWmi(velmora::network::kAskGuid, hardware_id);
}

std::wstring CNetworkCard::GetAdapterType(NETWORK_CARD_TYPE type) {
  return AskWmi(velmora::network::kAskType, type);
}

std::wstring CNetworkCard::GetAdapterTypeByHardId(const std::wstring& hardware_id) {
  return AskWmi(velmora::network::kAskType, hardware_id);
}
