/// The parts of ListDevices: one function a bus, each appending that bus's devices.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ostrine/linux/device.h"

namespace ostrine {

/// The folder below which all devices stand, free of links; empty when there is none.
Path DevicesFolder(const Path& root);

struct BusEntry {
  std::string address;
  Path node;
};

/// Entries of sys/bus/`bus`/devices that lead to a folder of a device.
std::vector<BusEntry> BusEntries(const Path& root, const char* bus);

/// The modalias of a device's folder; that of its uevent where it has no file of its own.
std::string ModaliasOf(const Path& node);

/// Whether one of the input devices of `node` has the keys of a keyboard.
bool HasKeyboard(const Path& node);

/// First input device of `node`; empty when there is none.
Path FirstInput(const Path& node);

/// Whether the USB device in `node` (not an interface) counts as one device for each interface.
bool IsCompositeNode(const Path& node);

void AppendPciDevices(const Path& root, std::vector<Device>& devices);
void AppendUsbDevices(const Path& root, std::vector<Device>& devices);
void AppendHdAudioDevices(const Path& root, std::vector<Device>& devices);
void AppendHidDevices(const Path& root, std::vector<Device>& devices);
void AppendSerioDevices(const Path& root, std::vector<Device>& devices);
void AppendAcpiDevices(const Path& root, std::vector<Device>& devices);
void AppendVirtioDevices(const Path& root, std::vector<Device>& devices);

}  // namespace ostrine
