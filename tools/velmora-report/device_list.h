/// The machine's devices as the program lists them. The library offers no list of all devices, so this is the
/// one place where the program asks the hardware-abstraction library itself, for its device information.
#pragma once

#include <velmora/devicekind.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace report {

/// A setup class whose devices are listed.
struct DeviceClass {
  std::string_view key;    ///< for programs
  std::string_view title;  ///< what people call one of its devices
  std::string_view kind;   ///< by which a repair names it; empty for a class that no repair takes
  stDEVICE_DRIVER_TYPE type = emDEVICE_RESERVED2;  ///< the library's number for that kind
};

/// All classes, in the order in which they are listed.
std::span<const DeviceClass> DeviceClasses();

/// The class that a repair calls `kind`; null when there is none.
const DeviceClass* FindKind(std::string_view kind);

/// One device, or several with one hardware ID, of which the first is asked. Texts are UTF-8.
struct ListedDevice {
  std::string hardware_id;  ///< empty for a device without one
  std::string description;
  std::string driver_version;
  std::string instance_id;
  std::uint32_t problem_code = 0;
  std::size_t count = 1;
};

/// The present devices of a class, in the system's order.
std::vector<ListedDevice> ListDevices(const DeviceClass& device_class);

/// The same, an entry for each description: of several devices with one description the first answers for
/// all.
std::vector<ListedDevice> ListByDescription(const DeviceClass& device_class);

/// The first device of the class with that hardware ID, one of several that it may have.
std::optional<ListedDevice> FindDevice(const DeviceClass& device_class, const std::string& hardware_id);

/// Its problem code as it is now; 45 when it is not there.
std::uint32_t ReadProblemCode(const DeviceClass& device_class, const std::string& hardware_id);

}  // namespace report
