/// Device class 6: the video cards and the display.
///
/// Nothing here wakes a card that sleeps: all is what the system already knows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ostrine/common/answer.h"

namespace ostrine {

/// Facts of one card. Those of the internal card have these information ids, those of the independent card
/// ids that are greater by 6; id 0 is the number of cards.
enum class CardFact : unsigned int {
  kName = 1,
  kStatus = 2,
  kDriverVersion = 3,
  kDriverDate = 4,  ///< "2022-02-14"
  kMemory = 5,      ///< in MiB, at most what 32 bits hold
  kProblem = 6,     ///< the configuration manager's number; 28 for a card without a driver
};

/// Facts of the display; the numbers are their information ids.
enum class DisplayFact : unsigned int {
  kResolution = 23,  ///< "1920 x 1080"
  kWidth = 24,
  kHeight = 25,
  kRate = 26,     ///< in Hz
  kMonitor = 27,  ///< narrow text
  kDepth = 28,    ///< in bits per pixel
};

/// Gives a table that holds which cards there are: their number and by what the internal and the independent
/// one are known.
bool PrepareVideo(void** table);

/// Answers for the cards of the table, or, without one, for those that the machine has now. Fails for a card
/// that the machine does not have, or not any more, and for what nobody tells.
bool QueryVideo(void* device, unsigned int information_id, Answer& answer);

// What each system has of its own.

/// The cards that count, by the system's own numbers for them.
struct VideoCards {
  std::uint32_t count = 0;
  std::optional<std::uint64_t> internal;
  std::optional<std::uint64_t> independent;

  bool operator==(const VideoCards&) const = default;
};
VideoCards FindVideoCards();

/// kName, kDriverVersion or kDriverDate in UTF-8.
std::optional<std::string> ReadCardText(std::uint64_t card, CardFact fact);
std::optional<std::uint64_t> ReadCardMemory(std::uint64_t card);  ///< in bytes
std::optional<std::uint32_t> ReadCardProblem(std::uint64_t card);

struct DisplaySize {
  std::uint32_t width = 0;
  std::uint32_t height = 0;

  bool operator==(const DisplaySize&) const = default;
};
std::optional<DisplaySize> ReadDisplaySize();
std::optional<std::uint32_t> ReadDisplayRate();
std::optional<std::uint32_t> ReadDisplayDepth();
/// In the system's narrow code page.
std::optional<std::string> ReadMonitorCaption();

}  // namespace ostrine
