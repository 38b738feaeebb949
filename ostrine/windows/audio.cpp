#include "ostrine/common/audio.h"

#include "ostrine/windows/device_set.h"
#include "platform/ostrine/setup_class.h"

namespace ostrine {

std::uint32_t CountAudioDevices() {
  std::uint32_t count = 0;
  const DeviceSet devices(velmora::setup_class::kMedia);
  devices.ForEach([&](const Device&) { ++count; });
  return count;
}

}  // namespace ostrine
