#include "ostrine/common/video.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "ostrine/common/video_rules.h"
#include "platform/ostrine/device_record.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

struct CardEntry {
  std::uint64_t card = 0;
  std::uint32_t is_there = 0;
  std::uint32_t zero = 0;
};

struct VideoTable {
  std::uint32_t zero = 0;
  std::uint32_t count = 0;
  CardEntry internal;
  CardEntry independent;
};
static_assert(offsetof(VideoTable, internal) == velmora::hal::kTableHeadSize);

CardEntry ToEntry(const std::optional<std::uint64_t>& card) {
  return {.card = card.value_or(0), .is_there = card ? 1u : 0u};
}

std::optional<std::uint64_t> FromEntry(const CardEntry& entry) {
  return entry.is_there != 0 ? std::optional(entry.card) : std::nullopt;
}

VideoCards CardsOf(const void* device) {
  if (device == nullptr) return FindVideoCards();
  VideoTable table;
  std::memcpy(&table, device, sizeof table);
  return {.count = table.count,
          .internal = FromEntry(table.internal),
          .independent = FromEntry(table.independent)};
}

bool AnswerWide(const std::optional<std::string>& text, Answer& answer) {
  return text && answer.WideText(velmora::unicode::Utf16FromUtf8(*text));
}

bool AnswerNumber(const std::optional<std::uint32_t>& number, Answer& answer) {
  return number && answer.Number(*number);
}

bool AnswerCard(std::uint64_t card, CardFact fact, Answer& answer) {
  switch (fact) {
    case CardFact::kName:
    case CardFact::kDriverVersion:
    case CardFact::kDriverDate:
      return AnswerWide(ReadCardText(card, fact), answer);
    case CardFact::kStatus: {
      const auto problem = ReadCardProblem(card);
      return problem && AnswerWide(CardStatus(*problem), answer);
    }
    case CardFact::kMemory: {
      const auto bytes = ReadCardMemory(card);
      return bytes && answer.Number(MemoryMegabytes(*bytes));
    }
    case CardFact::kProblem:
      return AnswerNumber(ReadCardProblem(card), answer);
  }
  return false;
}

bool AnswerDisplay(DisplayFact fact, Answer& answer) {
  switch (fact) {
    case DisplayFact::kResolution: {
      const auto size = ReadDisplaySize();
      return size && AnswerWide(ResolutionText(size->width, size->height), answer);
    }
    case DisplayFact::kWidth:
    case DisplayFact::kHeight: {
      const auto size = ReadDisplaySize();
      return size && answer.Number(fact == DisplayFact::kWidth ? size->width : size->height);
    }
    case DisplayFact::kRate:
      return AnswerNumber(ReadDisplayRate(), answer);
    case DisplayFact::kMonitor: {
      const auto caption = ReadMonitorCaption();
      return caption && answer.NarrowText(*caption);
    }
    case DisplayFact::kDepth:
      return AnswerNumber(ReadDisplayDepth(), answer);
  }
  return false;
}

}  // namespace

bool PrepareVideo(void** table) {
  if (table == nullptr) return true;
  const VideoCards cards = FindVideoCards();
  const VideoTable content{
      .count = cards.count, .internal = ToEntry(cards.internal), .independent = ToEntry(cards.independent)};
  void* const bytes = std::malloc(sizeof content);
  if (bytes == nullptr) return false;
  std::memcpy(bytes, &content, sizeof content);
  *table = bytes;
  return true;
}

bool QueryVideo(void* device, unsigned int information_id, Answer& answer) {
  constexpr unsigned int kCount = 0;
  constexpr unsigned int kFactsOfACard = 6;
  constexpr auto kFirstOfDisplay = static_cast<unsigned int>(DisplayFact::kResolution);
  if (information_id >= kFirstOfDisplay) {
    return AnswerDisplay(static_cast<DisplayFact>(information_id), answer);
  }
  if (information_id > 2 * kFactsOfACard) return false;
  const VideoCards cards = CardsOf(device);
  if (information_id == kCount) return answer.Number(cards.count);
  const bool is_internal = information_id <= kFactsOfACard;
  const auto card = is_internal ? cards.internal : cards.independent;
  const unsigned int fact = is_internal ? information_id : information_id - kFactsOfACard;
  return card && AnswerCard(*card, static_cast<CardFact>(fact), answer);
}

}  // namespace ostrine
