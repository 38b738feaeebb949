// Whatever a memory table says, what is taken from it must be possible: something there, and no more of it
// left than there is.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/linux/meminfo.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto facts = velmora::os::ParseMeminfo({reinterpret_cast<const char*>(data), size});
  if (!facts) return 0;
  Require(facts->total > 0);
  Require(facts->available <= facts->total);
  Require(facts->swap_free <= facts->swap_total);
  return 0;
}
