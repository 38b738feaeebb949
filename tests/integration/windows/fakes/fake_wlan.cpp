/// A Wi-Fi library with one interface, one network and one access point.
#include "tests/integration/windows/fakes/fake_wlan.h"

#include <cstddef>
#include <cstring>

namespace {

fakes::WlanState state;

const HANDLE kClient = reinterpret_cast<HANDLE>(0x1234);
constexpr GUID kInterface{0xA, 0xB, 0xC, {1, 2, 3, 4, 5, 6, 7, 8}};

template <class Record>
Record* Give(std::size_t size = sizeof(Record)) {
  ++state.memory;
  return static_cast<Record*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, size));
}

DWORD Check(HANDLE client, const GUID* interface_id) {
  if (client != kClient) return ERROR_INVALID_HANDLE;
  if (interface_id != nullptr) state.interface_id = *interface_id;
  return state.error;
}

}  // namespace

extern "C" {

__declspec(dllexport) fakes::WlanState* State() { return &state; }

__declspec(dllexport) DWORD WINAPI WlanOpenHandle(DWORD version, void* reserved, DWORD* negotiated,
                                                  HANDLE* client) {
  if (reserved != nullptr) return ERROR_INVALID_PARAMETER;
  state.version = version;
  if (state.error != 0) return state.error;
  *negotiated = version;
  *client = kClient;
  ++state.open_clients;
  return 0;
}

__declspec(dllexport) DWORD WINAPI WlanCloseHandle(HANDLE client, void*) {
  if (client != kClient) return ERROR_INVALID_HANDLE;
  --state.open_clients;
  return 0;
}

__declspec(dllexport) DWORD WINAPI WlanEnumInterfaces(HANDLE client, void*, WLAN_INTERFACE_INFO_LIST** list) {
  if (const DWORD error = Check(client, nullptr)) return error;
  *list = Give<WLAN_INTERFACE_INFO_LIST>();
  (*list)->dwNumberOfItems = 1;
  (*list)->InterfaceInfo[0].InterfaceGuid = kInterface;
  std::memcpy((*list)->InterfaceInfo[0].strInterfaceDescription, L"Made-up Wi-Fi", sizeof L"Made-up Wi-Fi");
  return 0;
}

__declspec(dllexport) DWORD WINAPI WlanQueryInterface(HANDLE client, const GUID* interface_id,
                                                      WLAN_INTF_OPCODE opcode, void*, DWORD* size,
                                                      void** data, WLAN_OPCODE_VALUE_TYPE*) {
  state.opcode = opcode;
  if (const DWORD error = Check(client, interface_id)) return error;
  auto* const radio = Give<WLAN_RADIO_STATE>();
  radio->dwNumberOfPhys = 1;
  radio->PhyRadioState[0].dot11SoftwareRadioState = dot11_radio_state_off;
  *size = sizeof *radio;
  *data = radio;
  return 0;
}

__declspec(dllexport) DWORD WINAPI WlanSetInterface(HANDLE client, const GUID* interface_id,
                                                    WLAN_INTF_OPCODE opcode, DWORD size, void* data, void*) {
  state.opcode = opcode;
  state.set_size = size;
  if (size == sizeof state.set) std::memcpy(&state.set, data, size);
  return Check(client, interface_id);
}

__declspec(dllexport) DWORD WINAPI WlanGetAvailableNetworkList(HANDLE client, const GUID* interface_id,
                                                               DWORD flags, void*,
                                                               WLAN_AVAILABLE_NETWORK_LIST** list) {
  state.flags = flags;
  if (const DWORD error = Check(client, interface_id)) return error;
  *list = Give<WLAN_AVAILABLE_NETWORK_LIST>();
  (*list)->dwNumberOfItems = 1;
  auto& network = (*list)->Network[0];
  network.dot11Ssid.uSSIDLength = 4;
  std::memcpy(network.dot11Ssid.ucSSID, "home", 4);
  network.dot11BssType = dot11_BSS_type_infrastructure;
  network.bSecurityEnabled = TRUE;
  network.wlanSignalQuality = 88;
  return 0;
}

__declspec(dllexport) DWORD WINAPI WlanGetNetworkBssList(HANDLE client, const GUID* interface_id,
                                                         DOT11_SSID* ssid, DOT11_BSS_TYPE bss_type,
                                                         BOOL security, void*, WLAN_BSS_LIST** list) {
  state.ssid = *ssid;
  state.bss_type = static_cast<DWORD>(bss_type);
  state.security = security;
  if (const DWORD error = Check(client, interface_id)) return error;
  constexpr char kElements[] = "elements";
  *list = Give<WLAN_BSS_LIST>(sizeof(WLAN_BSS_LIST) + sizeof kElements);
  (*list)->dwTotalSize = sizeof(WLAN_BSS_LIST) + sizeof kElements;
  (*list)->dwNumberOfItems = 1;
  auto& entry = (*list)->wlanBssEntries[0];
  entry.dot11Ssid = *ssid;
  entry.dot11Bssid[5] = 0xEF;
  entry.lRssi = -50;
  entry.ulIeOffset = sizeof(WLAN_BSS_ENTRY);
  entry.ulIeSize = sizeof kElements;
  std::memcpy(reinterpret_cast<char*>(&entry) + entry.ulIeOffset, kElements, sizeof kElements);
  return 0;
}

__declspec(dllexport) void WINAPI WlanFreeMemory(void* memory) {
  --state.memory;
  HeapFree(GetProcessHeap(), 0, memory);
}

}  // extern "C"
