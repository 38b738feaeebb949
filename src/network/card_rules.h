/// The rules by which network cards are told apart. Plain values in and out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "velmora/networkcard.h"

namespace velmora::network {

/// Physical media, as the system's network drivers number them.
enum class Medium : std::uint32_t {
  kWirelessWan = 8,  ///< mobile broadband
  kNative80211 = 9,  ///< Wi-Fi
  kEthernet = 14,
};

/// Whether a card with this hardware ID is built in: it begins with "PCI" or "QCMS", in exactly these
/// letters.
bool IsInternal(std::wstring_view hardware_id) noexcept;

/// The medium of the cards of a kind; nothing for a number that is no kind.
std::optional<Medium> MediumOf(NETWORK_CARD_TYPE type) noexcept;

/// How many instance keys of the network class are looked at, from 0000 on. The limit is part of the
/// interface: a card beyond it has no kind.
inline constexpr int kClassKeyCount = 30;

/// Path of the network class's instance key `number`, 0 to 29, below the registry's root for the machine.
std::wstring ClassKeyPath(int number);

/// What belongs to a card is found in an instance key by one of two values, depending on the kind of
/// processor.
enum class KeyMatch {
  kComponentId,  ///< the value "ComponentId" stands in the hardware ID
  kInstanceId,   ///< the value "DeviceInstanceID" stands in the instance ID
};

/// How keys are matched on a machine with this kind of processor, as CCpu::GetCputype gives it; 0 when that
/// could not be asked.
KeyMatch KeyMatchFor(std::uint32_t processor_kind) noexcept;

/// The name of the value by which keys are matched.
const wchar_t* ValueNameOf(KeyMatch match) noexcept;

}  // namespace velmora::network
