/// What Velmora requires of the network list manager, an object made by CoCreateInstance.
#pragma once

#include "platform/os/com.h"

namespace velmora::os {

using VariantBool = std::int16_t;
inline constexpr VariantBool kVariantTrue = -1;

/// Whether any network is connected. `connected` is written on success only.
ComResult NetworkListIsConnected(ComObject manager, VariantBool& connected);

/// Whether any network reaches the internet.
ComResult NetworkListIsConnectedToInternet(ComObject manager, VariantBool& connected);

}  // namespace velmora::os
