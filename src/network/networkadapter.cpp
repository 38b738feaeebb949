#include "velmora/networkadapter.h"

#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "velmora/networkcard.h"

using velmora::Answer;
using velmora::LogDebug;
using velmora::Within;

namespace {

/// The wireless card's text, as one of CNetworkCard's getters by kind gives it, for the one index there is.
int CardText(std::wstring& text, int index, std::wstring (CNetworkCard::*getter)(NETWORK_CARD_TYPE)) {
  if (index != 0) return 0;
  text = (CNetworkCard().*getter)(NETWORK_CARD_WIRELESS);
  return text.empty() ? 0 : 1;
}

bool HasWirelessCard() { return !CNetworkCard().GetWireLessCardHardID().empty(); }

}  // namespace

CNetworkAdapter::CNetworkAdapter() = default;
CNetworkAdapter::~CNetworkAdapter() = default;

std::vector<int> CNetworkAdapter::GetWireLessIndex() {
  return Answer(std::vector<int>(), [] { return HasWirelessCard() ? std::vector{0} : std::vector<int>(); });
}

int CNetworkAdapter::GetNetworkAdapterNums(unsigned int& count) {
  count = HasWirelessCard() ? 1 : 0;
  return static_cast<int>(count);
}

int CNetworkAdapter::GetManufacturerbyIndex(std::wstring& manufacturer, int index) {
  return CardText(manufacturer, index, &CNetworkCard::GetManufactrue);
}

int CNetworkAdapter::GetGUIDIndex(std::wstring& guid, int index) {
  return CardText(guid, index, &CNetworkCard::GetGUID);
}

int CNetworkAdapter::GetCaptionbyIndex(std::wstring& caption, int index) {
  return CardText(caption, index, &CNetworkCard::GetCaption);
}

int CNetworkAdapter::GetDisplayNamebyIndex(std::wstring& display_name, int index) {
  return CardText(display_name, index, &CNetworkCard::GetDisplayName);
}

int CNetworkAdapter::GetMacAddressbyIndex(std::wstring& mac_address, int index) {
  return CardText(mac_address, index, &CNetworkCard::GetMacAddress);
}

int CNetworkAdapter::GetTypebyIndex(std::wstring& type, int index) {
  return CardText(type, index, &CNetworkCard::GetAdapterType);
}

int CNetworkAdapter::GetDriverVersionbyIndex(std::wstring& version, int index) {
  return CardText(version, index, &CNetworkCard::GetDriverVersion);
}

int CNetworkAdapter::GetHardIdbyIndex(std::wstring& hardware_id, int index) {
  if (index != 0) return 0;
  hardware_id = CNetworkCard().GetWireLessCardHardID();
  return hardware_id.empty() ? 0 : 1;
}

int CNetworkAdapter::GetErrorStatebyIndex(unsigned long& problem_code, int index) {
  if (index != 0) return 0;
  problem_code = CNetworkCard().GetProblemCode(NETWORK_CARD_WIRELESS);
  return 1;
}

std::wstring CNetworkAdapter::GetINFbyHardId(const std::wstring& hardware_id) {
  auto inf = Answer(std::wstring(), [&] {
    CDeviceInformention devices;
    return devices.GetDeviceStrInfoByHardwareID(hardware_id, velmora::setup_class::kNet, PROP_INF);
  });
  LogDebug([&](auto& line) { line << "inf=" << inf << Within("CNetworkAdapter::GetINFbyHardId"); });
  return inf;
}
