/// Network interfaces in the file tree that begins at a root folder; the root is "/" but in tests.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora::os {

enum class Medium { kNone, kWired, kWireless, kMobile };

/// The medium of the hardware that an interface stands on: its own, or that below a bridge, bond or VLAN.
/// kNone for one that stands on no hardware.
Medium MediumOf(const std::filesystem::path& root, const std::string& interface);

/// Whether the interface itself is a device, and the first interface of it: others of one card are additions
/// of the kernel's.
bool IsCard(const std::filesystem::path& root, const std::string& interface);

/// The driver of the device that the interface is; empty when it is none, or has no driver.
std::string DriverOf(const std::filesystem::path& root, const std::string& interface);

/// The interfaces that are cards, in the order of the kernel's numbers.
std::vector<std::string> ListCards(const std::filesystem::path& root);

/// The component ID of a card on PCI or USB, without its revision: "pci\ven_8086&dev_51f0&subsys_00948086",
/// "usb\vid_0bda&pid_8153". Empty for any other.
std::string ComponentId(const std::filesystem::path& root, const std::string& interface);

/// The component ID in what the kernel calls a modalias; empty when it is of another bus or broken. Pure.
std::string ComponentIdOf(std::string_view modalias);

}  // namespace velmora::os
