#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "velmora/export.h"

/// Kinds of network cards. Any other number selects no card.
enum NETWORK_CARD_TYPE : std::uint32_t {
  NETWORK_CARD_WIRELESS = 0,  ///< Wi-Fi
  NETWORK_CARD_WIRED = 1,     ///< Ethernet
  NETWORK_CARD_MOBILE = 2,    ///< mobile broadband
};

/// The machine's built-in network cards: which are wireless, wired or mobile broadband, and who made them,
/// which driver runs them, what addresses they have.
///
/// A card is internal when its hardware ID begins with "PCI" or "QCMS" in exactly these letters; what is
/// plugged in, such as "USB\VID_0BDA&PID_8153", is left out. Its kind is its physical medium, which the
/// system's registry holds for the first 30 instances of the network class; a card beyond them has no kind. A
/// card is named by its hardware ID, or by its kind, which means the first internal card of that kind in the
/// system's order.
///
/// Source: the hardware-abstraction library's device information and WMI, and the registry. Every call asks
/// again and nothing is kept: a question by kind enumerates the network devices and reads up to 30 registry
/// keys for each internal card. Whoever wants several values of one card asks for its hardware ID once and
/// uses the operations by hardware ID. Failure: a text or list is empty, a number 0, a flag false; nothing
/// throws. A kind without a card is asked about with the empty hardware ID, which no device has. Threads: an
/// object is used by one thread at a time; separate objects are independent. Copies: an object holds nothing,
/// so a copy is simply another object.
class VELMORA_API CNetworkCard {
 public:
  CNetworkCard();
  ~CNetworkCard();

  CNetworkCard(const CNetworkCard&) = default;
  CNetworkCard& operator=(const CNetworkCard&) = default;

  /// Always false: wireless cards are supported on every machine.
  bool IsNotSupportWireLessCard();

  /// Hardware IDs of the internal cards, in the system's order. Two cards of one model are two entries.
  std::vector<std::wstring> GetInternalNetCardHardId();

  /// Number of internal cards.
  int GetNetworkCardNumbers();

  /// Hardware IDs of the internal cards of one kind, in the system's order.
  std::vector<std::wstring> GetAllWireLessHardId();
  std::vector<std::wstring> GetAllWiredHardId();
  std::vector<std::wstring> GetAllMobileHardId();

  /// Hardware ID of the first internal card of a kind; empty when there is none.
  std::wstring GetHardIDByType(NETWORK_CARD_TYPE type);
  std::wstring GetWireLessCardHardID();
  std::wstring GetWiredCardHardID();
  std::wstring GetMobileCardHardID();

  /// Whether the network card with this hardware ID is of the kind, internal or not.
  bool IsWlanOrWifi(const std::wstring& hardware_id);
  bool IsMobileCard(const std::wstring& hardware_id);
  bool IsWiredCard(const std::wstring& hardware_id);

  /// Writes the physical medium of the card (9 Wi-Fi, 8 mobile broadband, 14 Ethernet) to `medium` and
  /// returns 1. Returns 0, and leaves `medium` as it was, when none of the instance keys 0000 to 0029 belongs
  /// to the card and tells its medium. On a machine whose processor is of kind ARM a key belongs to the card
  /// by its instance ID, on every other by its component ID.
  int GetMediaTypeByHardId(const std::wstring& hardware_id, unsigned long& medium);

  /// The same for one registry key, given by its path below HKEY_LOCAL_MACHINE: it belongs to the card when
  /// its value "ComponentId" stands anywhere in the hardware ID, in either letter case. A component ID of
  /// more than 130 characters (its zero included) is not read.
  int GetMediaTypeByRegedit(std::wstring key_path, std::wstring hardware_id, unsigned long& medium);

  /// The same by the value "DeviceInstanceID" and the card's instance ID.
  int GetMediaTypeByRegeditEx(std::wstring key_path, std::wstring instance_id, unsigned long& medium);

  /// Instance ID of the network device with this hardware ID.
  std::wstring GetInstanceIDByHardId(const std::wstring& hardware_id);

  /// PCI vendor of the wireless card, "VEN_8086", and of the wired one, "VEN_10EC": the same on every
  /// machine.
  std::wstring GetWireLessVenderByMachine();
  std::wstring GetWiredVenderByMachine();

  /// Manufacturer as the driver names it. (The spelling is part of the interface.)
  std::wstring GetManufactrue(NETWORK_CARD_TYPE type);
  std::wstring GetManufactrueByHardId(const std::wstring& hardware_id);

  /// Version of the installed driver, such as "22.80.0.9".
  std::wstring GetDriverVersion(NETWORK_CARD_TYPE type);
  std::wstring GetDriverVersionByHardId(const std::wstring& hardware_id);

  /// Device description.
  std::wstring GetCaption(NETWORK_CARD_TYPE type);
  std::wstring GetCaptionByHardId(const std::wstring& hardware_id);

  /// Name that the system shows for the card.
  std::wstring GetDisplayName(NETWORK_CARD_TYPE type);
  std::wstring GetDisplayNameByHardId(const std::wstring& hardware_id);

  /// Name of the driver's INF file, such as "oem15.inf".
  std::wstring GetINF(NETWORK_CARD_TYPE type);
  std::wstring GetINFByHardId(const std::wstring& hardware_id);

  /// Problem code of the card's device: 0 it works, 22 it is disabled, 45 there is no such device.
  unsigned long GetProblemCode(NETWORK_CARD_TYPE type);
  unsigned long GetProblemCodeByHardId(const std::wstring& hardware_id);

  /// MAC address as WMI has it, such as "A4:6B:B6:12:34:56". This and the next two find the card in WMI by
  /// its display name; a name that would change the query is not asked about, and the answer is empty.
  std::wstring GetMacAddress(NETWORK_CARD_TYPE type);
  std::wstring GetMacAddressByHardId(const std::wstring& hardware_id);

  /// GUID of the card's network interface, in braces.
  std::wstring GetGUID(NETWORK_CARD_TYPE type);
  std::wstring GetGUIDByHardId(const std::wstring& hardware_id);

  /// Type of adapter in WMI's words, such as "Ethernet 802.3" (also for Wi-Fi).
  std::wstring GetAdapterType(NETWORK_CARD_TYPE type);
  std::wstring GetAdapterTypeByHardId(const std::wstring& hardware_id);
};
