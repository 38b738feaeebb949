/// What network adapters are called.
#pragma once

#include <filesystem>
#include <string>

#include "platform/linux/network_state.h"

namespace velmora::os {

/// The description of an interface: for a card the name by which the hardware-abstraction library knows it,
/// so that a card that was found there is found again among the adapters. For what the library does not know:
///
///     Network Adapter (brcmfmac)      a card, with its driver
///     Virtual Adapter (bridge)        one that the kernel has made, or another interface of a card
///     WAN Miniport (wireguard)        a tunnel, which is what such adapters are under Windows
std::string DescribeAdapter(const std::filesystem::path& root, const NetworkLink& link);

/// The same for a Wi-Fi interface of that name.
std::string DescribeWifi(const std::filesystem::path& root, const std::string& interface);

/// Whether the interface is a tunnel to another network: a VPN, or a dialled connection. Pure.
bool IsTunnel(const NetworkLink& link) noexcept;

/// The instance ID by which the hardware-abstraction library knows the card; empty when it does not.
std::wstring InstanceIdOf(const std::string& interface);

}  // namespace velmora::os
