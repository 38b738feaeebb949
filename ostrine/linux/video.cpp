#include "ostrine/common/video.h"

#include "ostrine/linux/display.h"
#include "ostrine/linux/system_root.h"
#include "ostrine/linux/video_cards.h"

namespace ostrine {

VideoCards FindVideoCards() { return FindVideoCards(Path(SystemRoot())); }

std::optional<std::string> ReadCardText(std::uint64_t card, CardFact fact) {
  return ReadCardText(SystemRoot(), card, fact);
}
std::optional<std::uint64_t> ReadCardMemory(std::uint64_t card) { return ReadCardMemory(SystemRoot(), card); }
std::optional<std::uint32_t> ReadCardProblem(std::uint64_t card) {
  return ReadCardProblem(SystemRoot(), card);
}

std::optional<DisplaySize> ReadDisplaySize() { return ReadDisplaySize(Path(SystemRoot())); }
std::optional<std::uint32_t> ReadDisplayRate() { return ReadDisplayRate(Path(SystemRoot())); }
std::optional<std::uint32_t> ReadDisplayDepth() { return ReadDisplayDepth(Path(SystemRoot())); }
std::optional<std::string> ReadMonitorCaption() { return ReadMonitorCaption(Path(SystemRoot())); }

}  // namespace ostrine
