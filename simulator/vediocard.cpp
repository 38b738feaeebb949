#include "simulator/device_class.h"

namespace simulator {
namespace {

/// The six facts of a card, counted from the card's first information id.
Information AnswerCard(const VideoCard& card, unsigned int fact) {
  switch (fact) {
    case 0:
      return WideOrRefused(card.name);
    case 1:
      return WideOrRefused(card.status);
    case 2:
      return WideOrRefused(card.driver_version);
    case 3:
      return WideOrRefused(card.driver_date);
    case 4:
      return NumberOrRefused(card.memory_size);
    default:
      return NumberOrRefused(card.error_code);
  }
}

Information AnswerVideo(const Video& video, unsigned int information_id) {
  if (information_id >= 1 && information_id <= 6) return AnswerCard(video.internal, information_id - 1);
  if (information_id >= 7 && information_id <= 12) return AnswerCard(video.independent, information_id - 7);
  switch (information_id) {
    case 0:
      return NumberOrRefused(video.card_count);
    case 23:
      return WideOrRefused(video.resolution);
    case 24:
      return NumberOrRefused(video.horizontal);
    case 25:
      return NumberOrRefused(video.vertical);
    case 26:
      return NumberOrRefused(video.refresh_rate);
    case 27:
      return NarrowOrRefused(video.monitor_caption);
    case 28:
      return NumberOrRefused(video.bits_per_pixel);
    default:
      return Refused{};
  }
}

std::optional<Information> QueryVideo(const Question& question) {
  const auto& video = question.machine.video;
  if (!video) return std::nullopt;
  return AnswerVideo(*video, question.information_id);
}

std::size_t CountCards(const Machine& machine) {
  return machine.video ? machine.video->card_count.value_or(0) : 0;
}

}  // namespace

const DeviceClassScript kVideoScript{
    .device_class = velmora::hal::DeviceClass::kVideo, .query = QueryVideo, .count_entries = CountCards};

}  // namespace simulator
