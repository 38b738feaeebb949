/// What the made-up Wi-Fi library saw and what it is to answer. The test finds it as the library's export
/// "State".
#pragma once

#include <windows.h>

#include <wlanapi.h>

namespace fakes {

struct WlanState {
  // To answer.
  DWORD error = 0;                          ///< instead of success, by every call
  const char* failing = nullptr;            ///< the one function that gives it, if only one shall
  const unsigned char* elements = nullptr;  ///< what the access point announces, instead of "elements"
  DWORD elements_size = 0;

  // Seen.
  DWORD version = 0;
  int open_clients = 0;
  int closings = 0;
  int memory = 0;      ///< blocks that were handed out and not given back
  int late_frees = 0;  ///< blocks that were given back after the last client was closed
  GUID interface_id{};
  DWORD opcode = 0;
  DWORD set_size = 0;
  WLAN_PHY_RADIO_STATE set{};
  DWORD flags = 0;
  DOT11_SSID ssid{};
  DWORD bss_type = 0;
  BOOL security = 0;
};

}  // namespace fakes
