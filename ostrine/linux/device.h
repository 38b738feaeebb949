/// The machine's devices as the kernel has enumerated them, below a root folder.
///
/// A device is what Windows would count as one. Nothing here opens a file whose reading wakes a sleeping
/// device; every list is read afresh and nothing is kept.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ostrine/common/hardware_id.h"
#include "ostrine/common/setup_class.h"
#include "ostrine/linux/sysfs.h"

namespace ostrine {

struct Device {
  enum class Bus { kPci, kUsb, kUsbPart, kHdAudio, kHid, kSerio, kAcpi, kVirtio, kBluetooth };

  Bus bus = Bus::kPci;
  std::string address;  ///< on its bus: "0000:00:14.3", "1-4", "PNP0303:00"
  Path node;            ///< its folder in sysfs, free of links; empty for a remote Bluetooth device
  Path function;        ///< the folder that its driver binds to, often `node` itself
  Path input;           ///< the folder that its input devices hang on; empty where it cannot have any
  std::string modalias;
  DeviceIds ids;
  SetupClass setup_class = SetupClass::kNone;
  std::string name;  ///< remote Bluetooth: the name under which it presents itself
  std::string kind;  ///< remote Bluetooth: what kind of thing it is
};

/// Devices in the order of their buses (PCI, USB, HD Audio, HID, ACPI, virtio, serio) and, within a bus, of
/// their addresses.
std::vector<Device> ListDevices(const Path& root);

/// Those of one setup class; the remote devices of the Bluetooth class, which a service must be asked for,
/// stand behind its local ones.
std::vector<Device> ListDevices(const Path& root, SetupClass setup_class);

/// The same up to the first device of which `is_last` holds; all when it holds of none.
std::vector<Device> ListDevicesUpTo(const Path& root, SetupClass setup_class,
                                    const std::function<bool(const Device&)>& is_last);

}  // namespace ostrine
