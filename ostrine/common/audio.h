/// Device class 5: the audio devices.
#pragma once

#include <cstdint>

#include "ostrine/common/answer.h"

namespace ostrine {

/// Gives a table of eight bytes, the second four of which are the number of audio devices. What is asked of
/// one of them is asked of the device information.
bool PrepareAudio(void** table);

/// Answers id 0, the number of audio devices that the machine has now, for no device.
bool QueryAudio(void* device, unsigned int information_id, Answer& answer);

/// How many present devices the setup class Media has. Each system has its own.
std::uint32_t CountAudioDevices();

}  // namespace ostrine
