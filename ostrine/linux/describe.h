/// What a device is called.
#pragma once

#include <string>
#include <vector>

#include "ostrine/linux/device.h"
#include "ostrine/linux/name_database.h"

namespace ostrine {

/// What the device is: maker and model by the databases; by the device's own word for USB, HD Audio and HID;
/// by the kind of firmware device for ACPI. Never empty: without any name the class of device and its
/// numbers.
std::wstring Describe(const Device& device, NameDatabase& names);

/// Who made it; empty when nobody says.
std::wstring Manufacturer(const Device& device, NameDatabase& names);

/// Name by which users know the device, beside its description: that of its keyboard as the kernel presents
/// it, of a codec or USB device as it calls itself, the alias of a remote Bluetooth device. Empty where there
/// is no such name.
std::wstring OwnName(const Device& device);

/// Friendly names of all `devices` of one class, in their order: the own name; for a network device its
/// description, where a second one of the same description is numbered ("Adapter #2"), so that each name is
/// one adapter.
std::vector<std::wstring> FriendlyNames(const std::vector<Device>& devices, NameDatabase& names);

}  // namespace ostrine
