#include "ostrine/linux/failing_driver.h"

#include <utility>

#include "ostrine/linux/acpi_status.h"
#include "ostrine/linux/describe.h"
#include "ostrine/linux/device_query.h"
#include "ostrine/linux/driver.h"
#include "ostrine/linux/system_root.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

using velmora::unicode::Utf8FromWide;

/// A device of the firmware's that it has not switched on for the system.
bool IsSwitchedOffByFirmware(const Device& device) {
  return device.bus == Device::Bus::kAcpi && !ReadAcpiStatus(device.node).is_enabled;
}

}  // namespace

std::vector<FailingDriver> ReadFailingDrivers(const Path& root) {
  NameDatabase names(root);
  std::vector<FailingDriver> failing;
  for (const Device& device : ListDevices(root)) {
    const std::uint32_t code = ProblemCode(root, device);
    if (code == 0 || IsSwitchedOffByFirmware(device) || IsMadeUpByKernel(root, device)) continue;
    failing.push_back({.caption = Utf8FromWide(Describe(device, names)),
                       .device_id = Utf8FromWide(InstanceId(device)),
                       .class_guid = SetupClassIdText(device.setup_class),
                       .manufacturer = Utf8FromWide(Manufacturer(device, names)),
                       .service = DriverOf(root, device).name,
                       .error_code = code});
  }
  return failing;
}

FailingDrivers ReadFailingDriversOfMachine() { return ReadFailingDrivers(SystemRoot()); }

}  // namespace ostrine
