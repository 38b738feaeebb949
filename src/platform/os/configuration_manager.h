/// What Velmora requires of the configuration manager, which owns the device tree.
#pragma once

#include <cstdint>

namespace velmora::os {

/// Result of a configuration-manager call; the numbers are the system's.
using ConfigResult = std::uint32_t;
inline constexpr ConfigResult kConfigSuccess = 0;
inline constexpr ConfigResult kConfigNoSuchDevNode = 0x0D;
inline constexpr ConfigResult kConfigFailure = 0x13;

using DevNode = std::uint32_t;

/// Finds the node of the device with instance ID `device_id`; null means the root of the tree. `flags` 0: the
/// device must be present. `node` is written on success only.
ConfigResult CM_Locate_DevNodeW(DevNode& node, const wchar_t* device_id, std::uint32_t flags);

/// Has the children of `node` enumerated again, so that devices which are there but unknown are installed.
/// `flags` 4: asynchronously, the call may return before the system has finished. Where a system can only
/// finish first, that is right too.
ConfigResult CM_Reenumerate_DevNode(DevNode node, std::uint32_t flags);

}  // namespace velmora::os
