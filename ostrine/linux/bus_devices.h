/// The parts of ListDevices: one function a bus, each appending that bus's devices.
///
/// Most questions are about one class, and most devices are of another. So each function finds out the class
/// first, from the least that decides it, and looks no further at a device that is not asked for.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ostrine/linux/device.h"

namespace ostrine {

/// The folder below which all devices stand, free of links; empty when there is none.
Path DevicesFolder(const Path& root);

/// How the names of a bus's devices are counted.
enum class Numbering { kDecimal, kHexadecimal };

/// The folder sys/bus/`bus`/devices, in which each entry is a link to the folder of a device.
class BusFolder : public Folder {
 public:
  BusFolder(const Path& root, const char* bus);

  /// The entries in the order of their numbers.
  std::vector<std::string> Addresses(Numbering numbering);

  /// The modalias of an entry's device; that of its uevent where it has no file of its own.
  std::string ModaliasOf(const std::string& address) const;

  /// The folder of an entry's device, free of links; empty when the entry does not lead to one.
  Path NodeOf(const std::string& address);

 private:
  std::string root_;                    ///< without a slash at its end
  std::optional<std::string> devices_;  ///< the folder of all devices, with one, once it was needed
};

/// The way of a paravirtual device, as the kernel tells it:
/// "../../../devices/pci0000:00/0000:00:03.0/virtio2".
struct Paravirtual {
  std::string address;  ///< on its own bus: "virtio2"
  std::string parent;   ///< that of the device that it is made of: "0000:00:03.0"
};

/// A listing in the making.
struct Listing {
  Path root;
  std::optional<SetupClass> wanted;            ///< nothing: all
  std::function<bool(const Device&)> is_last;  ///< of which device nothing behind it is wanted; none: of none
  std::vector<Paravirtual> paravirtual;
  std::vector<std::string> pci;  ///< addresses of the functions, in the order of their bytes
  std::vector<Device> devices;

  bool is_done = false;  ///< the last of them is there

  /// Adds a device of the buses that come first.
  void Add(Device device) {
    is_done = is_done || (is_last && is_last(device));
    devices.push_back(std::move(device));
  }
  bool Wants(SetupClass setup_class) const { return !wanted || *wanted == setup_class; }
};

/// The modalias of a device's folder; that of its uevent where it has no file of its own.
std::string ModaliasOf(const Path& node);

/// Whether one of the input devices of `node` has the keys of a keyboard.
bool HasKeyboard(const Path& node);

/// First input device of `node`; empty when there is none.
Path FirstInput(const Path& node);

/// Whether the USB device in `node` (not an interface) counts as one device for each interface.
bool IsCompositeNode(const Path& node);

void ListParavirtual(Listing& listing);
void AppendPciDevices(Listing& listing);
void AppendUsbDevices(Listing& listing);
void AppendHdAudioDevices(Listing& listing);
void AppendHidDevices(Listing& listing);
void AppendSerioDevices(Listing& listing);
void AppendAcpiDevices(Listing& listing);
void AppendVirtioDevices(Listing& listing);

}  // namespace ostrine
