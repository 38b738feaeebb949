/// The processor's load: how much of the time since the last question it was at work.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

namespace ostrine {

/// Time of all logical processors together since the system started, in any unit that stays the same.
struct ProcessorTime {
  std::uint64_t busy = 0;
  std::uint64_t total = 0;  ///< busy and idle
};

/// The share of busy time between two readings in percent, rounded, 0 to 100; nothing when no time lies
/// between them, or less than none.
std::optional<std::uint32_t> LoadPercent(const ProcessorTime& from, const ProcessorTime& to);

/// The reading of the last question. Any number of threads may ask at once and none ever waits for another:
/// each takes the last reading out and leaves its own, so that a reading has one owner at any moment.
class LoadHistory {
 public:
  constexpr LoadHistory() = default;
  LoadHistory(const LoadHistory&) = delete;
  LoadHistory& operator=(const LoadHistory&) = delete;
  ~LoadHistory();

  /// The load since the last question, or, at the first one, since the system started. Where the system's
  /// clock has not moved on since the last question, its answer is given again. Nothing when there is none,
  /// or no memory.
  std::optional<std::uint32_t> Ask(const ProcessorTime& now);

 private:
  static constexpr std::uint32_t kNoAnswer = 0xFFFFFFFF;

  std::atomic<ProcessorTime*> last_ = nullptr;
  std::atomic<std::uint32_t> last_answer_ = kNoAnswer;
};

/// The history of this process: the only thing that this library remembers from one call to the next. The
/// question is about the time since the previous question, whoever asked it, and its answer must not take the
/// time to measure anew; so the previous reading has to stay somewhere between two calls.
LoadHistory& LoadHistoryOfProcess();

}  // namespace ostrine
