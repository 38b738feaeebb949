#include "platform/linux/hardware_root.h"

namespace velmora::os {

[[gnu::weak]] const char* HardwareRoot() noexcept { return "/"; }

}  // namespace velmora::os
