// Any text as the kernel's list of mounts, and as its texts about cards and displays.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ostrine/linux/block.h"
#include "ostrine/linux/block_mounts.h"
#include "ostrine/linux/video_cards.h"
#include "ostrine/linux/video_text.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const auto& system : ostrine::ParseMounts(text)) {
    Require(!system.mount_points.empty());
    Require(system.number.major != 0 || system.source.starts_with("/dev/"));
  }
  Require(ostrine::UnescapeMountText(text).size() <= size);
  ostrine::MayBeDisk(text);
  ostrine::ParseBlockNumber(text);
  if (const auto window = ostrine::LargestWindow(text)) Require(*window != 0);
  if (const auto mode = ostrine::FirstMode(text)) Require(mode->width != 0 && mode->height != 0);
  if (const auto mode = ostrine::ParseVirtualSize(text)) Require(mode->width != 0 && mode->height != 0);
  if (const auto date = ostrine::KernelBuildDate(text)) Require(date->size() == 10);
  ostrine::RankConnector(text);
  if (const auto card = ostrine::CardNumber(text)) {
    Require(ostrine::CardNumber(ostrine::CardAddress(*card)) == card);
  }
  return 0;
}
