#include "ostrine/common/audio.h"

#include <cstdlib>
#include <cstring>

#include "platform/ostrine/device_record.h"

namespace ostrine {
namespace {

struct AudioTable {
  std::uint32_t zero = 0;
  std::uint32_t count = 0;
};
static_assert(sizeof(AudioTable) == velmora::hal::kTableHeadSize);

}  // namespace

bool PrepareAudio(void** table) {
  if (table == nullptr) return true;
  const AudioTable content{.count = CountAudioDevices()};
  void* const bytes = std::malloc(sizeof content);
  if (bytes == nullptr) return false;
  std::memcpy(bytes, &content, sizeof content);
  *table = bytes;
  return true;
}

bool QueryAudio(void* device, unsigned int information_id, Answer& answer) {
  constexpr unsigned int kCount = 0;
  return device == nullptr && information_id == kCount && answer.Number(CountAudioDevices());
}

}  // namespace ostrine
