#include "ostrine/common/processor_load.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace ostrine {
namespace {

// There before any code runs, so that no thread can meet it half made, and gone with the library.
constinit LoadHistory history_of_process;

}  // namespace

std::optional<std::uint32_t> LoadPercent(const ProcessorTime& from, const ProcessorTime& to) {
  if (to.total <= from.total) return std::nullopt;
  // Busy time can seem to go back a little, as when time once counted as idle is counted otherwise later.
  const std::uint64_t total = to.total - from.total;
  const std::uint64_t busy = to.busy <= from.busy ? 0 : std::min(to.busy - from.busy, total);
  const double percent = 100.0 * static_cast<double>(busy) / static_cast<double>(total);
  return static_cast<std::uint32_t>(std::lround(percent));
}

LoadHistory::~LoadHistory() { delete last_.exchange(nullptr); }

std::optional<std::uint32_t> LoadHistory::Ask(const ProcessorTime& now) {
  std::unique_ptr<ProcessorTime> own(new (std::nothrow) ProcessorTime(now));
  if (!own) return std::nullopt;
  // What comes out belongs to this thread alone. It may be later than `now` where another thread asked
  // between this one's reading and this line; `now`, hardly older, stands in its place then.
  const std::unique_ptr<const ProcessorTime> last(last_.exchange(own.release()));
  auto percent = LoadPercent(last ? *last : ProcessorTime{}, now);
  if (percent) {
    last_answer_.store(*percent);
    return percent;
  }
  const std::uint32_t last_answer = last_answer_.load();
  return last_answer == kNoAnswer ? LoadPercent({}, now) : std::optional(last_answer);
}

LoadHistory& LoadHistoryOfProcess() { return history_of_process; }

}  // namespace ostrine
