/// Windows-style hardware IDs for devices that the Linux kernel describes, and the numbers within such IDs.
///
/// Pure functions over plain values; nothing is read here. All IDs are in capitals but for the words that
/// Windows writes otherwise ("Class", "Dev", ...), and are most specific first.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ostrine/common/modalias.h"

namespace ostrine {

/// What is known of one device. Only the modalias is needed; where another fact is missing, the IDs that
/// would hold it are left out.
struct DeviceFacts {
  std::string modalias{};         ///< as sysfs prints it
  std::string parent_modalias{};  ///< HID: that of the device it hangs on
  std::optional<std::uint8_t> pci_revision{};
  std::optional<std::uint32_t> codec_subsystem{};  ///< HD Audio: `subsystem_id`
  /// USB: the whole device is composite (see IsUsbComposite), so that each interface counts as a device. HID:
  /// the same of the USB device it hangs on.
  bool usb_composite = false;
  std::string firmware_id{};  ///< serio: as sysfs prints it
};

struct DeviceIds {
  std::vector<std::wstring> hardware;    ///< the device itself; the first one names it
  std::vector<std::wstring> compatible;  ///< kinds of devices that it belongs to
};

/// The IDs that Windows would list for the device:
///
///     PCI       PCI\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01     subsystem device, then its vendor
///     USB       USB\VID_8087&PID_0026&REV_0002                   &MI_01 for a part of a composite device
///     root hub  USB\ROOT_HUB30
///     HD Audio  HDAUDIO\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA2292&REV_1000
///     HID       HID\VID_04F3&PID_3169                            &REV_0100[&MI_01] when it hangs on USB
///     ACPI      ACPI\LEN0071, *LEN0071; compatible ACPI\PNP0303, *PNP0303
///     serio     the same, from its firmware ID
///     virtio    VIRTIO\VEN_1AF4&DEV_0001                         in the manner of PCI; Windows has none
///
/// Both lists are empty when the modalias is malformed or of another bus (input, i2c, platform, dmi...), and
/// for a serio port that the firmware has not named.
DeviceIds BuildDeviceIds(const DeviceFacts& facts);

/// Whether Windows treats each interface of the USB device as a device of its own.
bool IsUsbComposite(const UsbClass& device_class, unsigned interface_count,
                    unsigned configuration_count) noexcept;

enum class BluetoothKind { kClassic, kLowEnergy };

/// The ID of a remote Bluetooth device with the address "AA:BB:CC:DD:EE:FF", BTHENUM\Dev_AABBCCDDEEFF or
/// BTHLE\Dev_AABBCCDDEEFF; empty if `address` is not of that form.
std::wstring BluetoothHardwareId(std::string_view address, BluetoothKind kind);

/// The numbers under which a PCI or USB device is found in a name database.
struct NumberedId {
  enum class Bus { kPci, kUsb };
  Bus bus = Bus::kPci;
  std::uint16_t vendor = 0;
  std::uint16_t device = 0;  ///< USB: the product
};

/// The numbers in a hardware or instance ID that begins PCI\VEN_xxxx&DEV_xxxx or USB\VID_xxxx&PID_xxxx, in
/// either case; what follows must be set off by '&' or '\'. None for any other ID.
std::optional<NumberedId> ParseNumberedId(std::wstring_view hardware_id) noexcept;

}  // namespace ostrine
