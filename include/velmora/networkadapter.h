#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "velmora/export.h"

/// What speaks against a wireless connection that is up and yet does not work. The two firewall fields are
/// reserved: the library never writes them, so they keep what the caller put in.
struct stIP_INFO {
  std::int32_t dhcpEnabled = 0;      ///< nonzero when the adapter gets its address by DHCP
  bool leaseExpired = false;         ///< the address's lease has ended; also for an adapter without a lease
  bool proxySet = false;             ///< connections go through a proxy that is set by name
  bool vpnOpen = false;              ///< an adapter is described as a "WAN Miniport"
  bool firewallEnabled = false;      ///< reserved
  bool outboundRuleBlocked = false;  ///< reserved
  bool hostsChanged = false;         ///< the hosts file has a line that is no comment and not blank
};

/// What the address of the wireless adapter says.
enum emIP_STATE_INFO : std::int32_t {
  IP_STATE_NO_ADDRESS = -1,   ///< the address is shorter than 7 characters
  IP_STATE_READY = 0,         ///< an ordinary address, by DHCP
  IP_STATE_UNUSABLE = 1,      ///< 0.0.0.0, or 169.254.x.x, which a machine gives itself
  IP_STATE_OTHER_PREFIX = 2,  ///< no dot, or its last dot is not where the gateway's last dot is
  IP_STATE_STATIC = 3,        ///< an ordinary address that was set by hand
};

/// The machine's wireless adapter as an indexed list of at most one, its radio, the access points around it,
/// and why it may not work.
///
/// The adapter is the wireless card that CNetworkCard finds first. Where the system's adapter list is asked,
/// it is the first adapter whose description stands, in either letter case, in that card's caption or else in
/// its display name. Of several Wi-Fi interfaces only the first that the system lists is read or switched.
///
/// Source: CNetworkCard, the system's adapter list, its Wi-Fi service, internet settings, network list
/// manager and hosts file. Every call asks again and nothing is kept. Indexes: 0 is the adapter; for every
/// other index an operation returns 0 and leaves its output as it was. With index 0 the output is replaced,
/// also by an empty text, and the result is 1 when it is not empty. Failure: nothing throws; what an output
/// then holds is said with each operation. Threads: an object is used by one thread at a time; separate
/// objects are independent. Copies: an object holds nothing, so a copy is simply another object.
class VELMORA_API CNetworkAdapter {
 public:
  CNetworkAdapter();
  ~CNetworkAdapter();

  CNetworkAdapter(const CNetworkAdapter&) = default;
  CNetworkAdapter& operator=(const CNetworkAdapter&) = default;

  /// The indexes that there are: 0, or none without a wireless card.
  std::vector<int> GetWireLessIndex();

  /// Writes how many adapters there are, 0 or 1, and returns the same.
  int GetNetworkAdapterNums(unsigned int& count);

  /// Facts of the adapter, as CNetworkCard gives them for its wireless card.
  int GetManufacturerbyIndex(std::wstring& manufacturer, int index);
  int GetGUIDIndex(std::wstring& guid, int index);
  int GetCaptionbyIndex(std::wstring& caption, int index);
  int GetDisplayNamebyIndex(std::wstring& display_name, int index);
  int GetMacAddressbyIndex(std::wstring& mac_address, int index);
  int GetTypebyIndex(std::wstring& type, int index);
  int GetDriverVersionbyIndex(std::wstring& version, int index);
  int GetHardIdbyIndex(std::wstring& hardware_id, int index);

  /// Writes the problem code of the adapter's device (0: it works, 45: there is none) and returns 1, whatever
  /// the code is.
  int GetErrorStatebyIndex(unsigned long& problem_code, int index);

  /// Name of the INF file of the network device with this hardware ID; empty when there is none.
  std::wstring GetINFbyHardId(const std::wstring& hardware_id);

  /// Whether the Wi-Fi radio is switched on by software: 1 on, 2 off, 0 when it cannot be read.
  unsigned char GetWifiSwitchState();

  /// Switches the Wi-Fi radio on or off. 0 on success, else the system's error number; never 0 when there is
  /// nothing to switch.
  unsigned long SetWifiSwitchState(bool on);

  /// Writes the address of the adapter's first gateway and returns 1, also when the adapter has none and the
  /// text is empty. Returns 0, and an empty text, when there is no such adapter.
  int GetWirelessGateWayIP(std::string& gateway);

  /// Which access point serves the network `ssid`, one that the latest scan found, its name byte for byte.
  /// `macHeadSix` receives the first half of the point's hardware address, such as "001A2B", and `macLastSix`
  /// the second, such as "3C4D5E"; `manufacturer` and `model` what the point tells about itself by Wi-Fi
  /// Protected Setup, empty when it tells nothing. Without such a network or access point `manufacturer`
  /// keeps what the caller put in it, and the others are empty.
  void GetMacBySsid(std::string& macHeadSix, std::string& macLastSix, const std::string& ssid,
                    std::string& manufacturer, std::string& model);

  /// Asks the system whether the machine is connected to any network and whether one reaches the internet.
  /// Returns 1 when both could be asked; else 0, and both outputs are false.
  int IsInternetAvailable(bool& isNetConnected, bool& isInternetConnected);

  /// Fills `info`, its two reserved fields apart, and returns 1. Returns 0, and leaves `info` as it was, when
  /// there is no such adapter. Sets the locale of the process to "chs" for all categories, and leaves it so.
  int GetIpInfo(stIP_INFO& info);

  /// Writes what the adapter's address says and returns whether an address is assigned: true unless the state
  /// is IP_STATE_NO_ADDRESS or IP_STATE_UNUSABLE. Returns false, and leaves `state` as it was, when there is
  /// no such adapter. (The spelling is part of the interface.)
  bool CHeckIPReady(emIP_STATE_INFO& state);

  /// 1 when the machine is connected through a modem, or through mobile broadband and neither by cable nor by
  /// Wi-Fi; else 0.
  int IsUsingModemNetwork();

  /// Whether the machine has a mobile broadband card. (The spelling is part of the interface.)
  bool IsModemCardExsit();
};
