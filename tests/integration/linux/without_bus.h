/// Tests without any message bus.
#pragma once

#include "tests/integration/linux/mock_bus.h"

namespace velmora::os::test {

/// While it lives there is no system bus.
class NoBus {
 private:
  Variable nowhere_{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus"};
};

}  // namespace velmora::os::test
