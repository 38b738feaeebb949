#pragma once

#include <string_view>

#include "velmora/networkadapter.h"

namespace velmora::network {

/// What an adapter's address says about its readiness. Texts are as the adapter list has them, addresses of
/// four numbers with dots as a rule. Of the gateway only the position of its last dot is looked at, never its
/// digits.
emIP_STATE_INFO ClassifyAddress(std::string_view address, std::string_view gateway, bool has_dhcp) noexcept;

/// Whether a state means that an address is assigned.
bool IsAddressAssigned(emIP_STATE_INFO state) noexcept;

}  // namespace velmora::network
