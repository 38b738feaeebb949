#include "ostrine/common/audio.h"

#include "ostrine/linux/bus_devices.h"
#include "ostrine/linux/system_root.h"

namespace ostrine {

std::uint32_t CountAudioDevices() {
  return static_cast<std::uint32_t>(ListDevices(Path(SystemRoot()), SetupClass::kMedia).size());
}

}  // namespace ostrine
