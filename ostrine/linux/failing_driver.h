/// The devices below a root folder that have no working driver.
#pragma once

#include <vector>

#include "ostrine/common/failing_driver.h"
#include "ostrine/linux/device.h"

namespace ostrine {

/// The devices of every class that have a problem code other than 0, in the order of ListDevices. Left out
/// are those that somebody has no reason to repair: bridges and other parts that work without a driver,
/// devices that the kernel has made up, and what the firmware calls absent or has switched off.
std::vector<FailingDriver> ReadFailingDrivers(const Path& root);

}  // namespace ostrine
