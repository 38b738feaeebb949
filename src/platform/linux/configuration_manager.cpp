#include "platform/linux/configuration_manager.h"

#include <system_error>

#include "platform/linux/hardware_root.h"
#include "platform/linux/small_file.h"

namespace velmora::os {
namespace {

/// The only node that callers name; instance IDs are asked for elsewhere, by hardware ID.
constexpr DevNode kRootNode = 1;

/// Offers the driverless devices of a bus to its drivers. Whether a driver takes one is not the caller's to
/// know: a device that nobody knows stays as it is.
bool ProbeDriverless(const std::filesystem::path& bus) {
  const auto names = ListNames(bus / "devices");
  if (!names) return false;
  for (const std::string& name : *names) {
    std::error_code error;
    const bool has_driver = std::filesystem::exists(bus / "devices" / name / "driver", error);
    if (!has_driver && !error) WriteExisting(bus / "drivers_probe", name);
  }
  return true;
}

}  // namespace

ConfigResult RescanHardware(const std::filesystem::path& root) {
  const auto buses = root / "sys/bus";
  std::error_code error;
  const bool has_pci = std::filesystem::exists(buses / "pci", error);
  const bool pci_rescanned = WriteExisting(buses / "pci/rescan", "1");
  if (has_pci && !pci_rescanned) return kConfigFailure;
  ProbeDriverless(buses / "pci");
  const bool usb_probed = ProbeDriverless(buses / "usb");
  ProbeDriverless(buses / "hid");
  return pci_rescanned || usb_probed ? kConfigSuccess : kConfigFailure;
}

ConfigResult CM_Locate_DevNodeW(DevNode& node, const wchar_t* device_id, std::uint32_t /*flags*/) {
  if (device_id != nullptr && *device_id != 0) return kConfigNoSuchDevNode;
  node = kRootNode;
  return kConfigSuccess;
}

ConfigResult CM_Reenumerate_DevNode(DevNode node, std::uint32_t /*flags*/) {
  return node == kRootNode ? RescanHardware(HardwareRoot()) : kConfigNoSuchDevNode;
}

}  // namespace velmora::os
