/// Which Windows setup class a device would be installed in.
#pragma once

#include <string_view>

namespace ostrine {

/// The setup classes that queries are confined to; kNone for every other.
enum class SetupClass { kNone, kNet, kBluetooth, kBiometric, kMedia, kKeyboard, kDisplay, kUsb, kSystem };

/// What the kernel made of the device, beyond what its modalias tells.
struct DeviceTraits {
  bool has_network_interface = false;
  bool has_bluetooth_radio = false;
  bool has_keyboard = false;  ///< an input device with the keys of a keyboard
  bool is_fingerprint_reader = false;
  bool is_composite_usb = false;  ///< the whole USB device is composite (see IsUsbComposite)
};

/// The class by the device's modalias and traits.
///
/// - A fingerprint reader on any bus: Biometric.
/// - PCI, by class code: network Net, display Display, multimedia Media (but System for the HD Audio
///   controller, which only carries codecs), USB host controllers USB, Bluetooth radios Bluetooth. Storage,
///   serial and parallel ports, modems, FireWire, SD hosts, docking stations, input and accelerators have
///   classes of their own: none. The rest System. A network interface or radio that the kernel has made of
///   the device counts before the class code.
/// - USB, an interface of a composite device by its own class, any other device by the device's (or its only
///   interface's): radio Bluetooth, network Net, audio Media, hubs and a composite device as a whole USB.
///   Anything else, HID included: none.
/// - HD Audio codec with the audio function: Media.
/// - HID and serio: Keyboard with a keyboard, else none.
/// - ACPI, by the first ID that tells: keyboards Keyboard; battery, power adapter, processor, display, ports,
///   mouse and HID: none; the rest System.
/// - virtio: network Net, graphics Display, sound Media, else none.
/// - Any other bus, or a malformed modalias: none.
SetupClass ClassifyDevice(std::string_view modalias, const DeviceTraits& traits);

}  // namespace ostrine
