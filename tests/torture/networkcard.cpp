#include "velmora/networkcard.h"

#include <utility>

#include "tests/torture/operation.h"

namespace torture {
namespace {

using Texts = std::vector<std::wstring>;

/// A card of the healthy laptop; on the other machines nothing has this ID.
const std::wstring kCard = L"PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_20";

constexpr unsigned long kSpoiledMedium = 0x41414141;
constexpr unsigned long kOldMedium = 77;

template <class Result>
Operation Plain(const char* name, Result (CNetworkCard::*operation)(), const Result& failure) {
  return Operation(name, [operation] { return (CNetworkCard().*operation)(); }).MayFailWith(failure);
}

Operation TextByKind(const char* name, std::wstring (CNetworkCard::*getter)(NETWORK_CARD_TYPE)) {
  return Operation(name, [getter] { return (CNetworkCard().*getter)(NETWORK_CARD_WIRELESS); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(std::wstring(kOverlong, L'A'));
}

Operation TextById(const char* name, std::wstring (CNetworkCard::*getter)(const std::wstring&)) {
  return Operation(name, [getter] { return (CNetworkCard().*getter)(kCard); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(std::wstring(kOverlong, L'A'));
}

Operation Kind(const char* name, bool (CNetworkCard::*test)(const std::wstring&)) {
  return Operation(name, [test] { return (CNetworkCard().*test)(kCard); }).MayFailWith(false);
}

Operation ProblemCode(Operation operation) {
  return std::move(operation)
      .MayFailWith(0UL)
      .MayFailWith(kAbsent)  // of the empty hardware ID, or when the service fails
      .MayBeSpoiledTo(0xFFFFFFFFUL);
}

std::vector<Operation> ListOperations() {
  return {
      Plain("CNetworkCard::GetInternalNetCardHardId", &CNetworkCard::GetInternalNetCardHardId, Texts()),
      Plain("CNetworkCard::GetWireLessVenderByMachine", &CNetworkCard::GetWireLessVenderByMachine,
            std::wstring()),
      Plain("CNetworkCard::GetWiredVenderByMachine", &CNetworkCard::GetWiredVenderByMachine, std::wstring()),
      Plain("CNetworkCard::GetNetworkCardNumbers", &CNetworkCard::GetNetworkCardNumbers, 0),
      Plain("CNetworkCard::GetAllWireLessHardId", &CNetworkCard::GetAllWireLessHardId, Texts()),
      Plain("CNetworkCard::GetAllWiredHardId", &CNetworkCard::GetAllWiredHardId, Texts()),
      Plain("CNetworkCard::GetAllMobileHardId", &CNetworkCard::GetAllMobileHardId, Texts()),
      Plain("CNetworkCard::GetWireLessCardHardID", &CNetworkCard::GetWireLessCardHardID, std::wstring()),
      Plain("CNetworkCard::GetWiredCardHardID", &CNetworkCard::GetWiredCardHardID, std::wstring()),
      Plain("CNetworkCard::GetMobileCardHardID", &CNetworkCard::GetMobileCardHardID, std::wstring()),
      Kind("CNetworkCard::IsWlanOrWifi", &CNetworkCard::IsWlanOrWifi),
      Kind("CNetworkCard::IsWiredCard", &CNetworkCard::IsWiredCard),
      Kind("CNetworkCard::IsMobileCard", &CNetworkCard::IsMobileCard),
      Operation("CNetworkCard::GetHardIDByType",
                [] { return CNetworkCard().GetHardIDByType(NETWORK_CARD_MOBILE); })
          .MayFailWith(std::wstring()),
      Operation("CNetworkCard::GetMediaTypeByHardId",
                [] {
                  unsigned long medium = kOldMedium;
                  const int result = CNetworkCard().GetMediaTypeByHardId(kCard, medium);
                  return std::tuple(result, medium);
                })
          .MayFailWith(std::tuple(0, kOldMedium))
          .MayFailWith(std::tuple(1, kOldMedium))  // a value of no bytes
          .MayBeSpoiledTo(std::tuple(1, kSpoiledMedium))};
}

}  // namespace

std::vector<Operation> NetworkCardOperations() {
  std::vector<Operation> all{
      TextByKind("CNetworkCard::GetManufactrue", &CNetworkCard::GetManufactrue),
      TextByKind("CNetworkCard::GetCaption", &CNetworkCard::GetCaption),
      TextByKind("CNetworkCard::GetMacAddress", &CNetworkCard::GetMacAddress),
      TextById("CNetworkCard::GetManufactrueByHardId", &CNetworkCard::GetManufactrueByHardId),
      TextById("CNetworkCard::GetDriverVersionByHardId", &CNetworkCard::GetDriverVersionByHardId),
      TextById("CNetworkCard::GetCaptionByHardId", &CNetworkCard::GetCaptionByHardId),
      TextById("CNetworkCard::GetDisplayNameByHardId", &CNetworkCard::GetDisplayNameByHardId),
      TextById("CNetworkCard::GetINFByHardId", &CNetworkCard::GetINFByHardId),
      TextById("CNetworkCard::GetInstanceIDByHardId", &CNetworkCard::GetInstanceIDByHardId),
      TextById("CNetworkCard::GetMacAddressByHardId", &CNetworkCard::GetMacAddressByHardId),
      TextById("CNetworkCard::GetGUIDByHardId", &CNetworkCard::GetGUIDByHardId),
      TextById("CNetworkCard::GetAdapterTypeByHardId", &CNetworkCard::GetAdapterTypeByHardId),
      ProblemCode(Operation("CNetworkCard::GetProblemCode",
                            [] { return CNetworkCard().GetProblemCode(NETWORK_CARD_WIRELESS); })),
      ProblemCode(Operation("CNetworkCard::GetProblemCodeByHardId",
                            [] { return CNetworkCard().GetProblemCodeByHardId(kCard); }))};
  const auto lists = ListOperations();
  all.insert(all.end(), lists.begin(), lists.end());
  return all;
}

}  // namespace torture
