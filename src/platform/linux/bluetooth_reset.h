/// Switching a Bluetooth adapter off and on again, on the system whose file tree begins at a root folder; the
/// root is "/" but in tests.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace velmora::os {

/// The first Bluetooth adapter's name ("hci0") in the kernel's numbering; nothing when there is none.
std::optional<std::string> FirstBluetoothAdapter(const std::filesystem::path& root);

/// Switches the adapter off and on, through the Bluetooth service where that does it, else by taking the
/// right to be used from its USB device and giving it back. Each step is read back. 0, or the error number:
/// 50 when there is neither way, 1460 when the adapter did not follow in time.
std::uint32_t ResetBluetoothAdapter(const std::filesystem::path& root, const std::string& adapter);

}  // namespace velmora::os
