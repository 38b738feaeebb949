#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// One video card.
struct VideoCard {
  Text name;
  Text status;
  Text driver_version;
  Text driver_date;
  std::optional<std::uint32_t> memory_size;  ///< MiB
  std::optional<std::uint32_t> error_code;

  bool operator==(const VideoCard&) const = default;
};

template <class Archive>
void Fields(Archive& archive, VideoCard& card) {
  archive.Field("name", card.name);
  archive.Field("status", card.status);
  archive.Field("driver_version", card.driver_version);
  archive.Field("driver_date", card.driver_date);
  archive.Field("memory_size", card.memory_size);
  archive.Field("error_code", card.error_code);
}

/// The video cards and the display. File key `vediocard`.
struct Video {
  std::optional<std::uint32_t> card_count;
  VideoCard internal;
  VideoCard independent;
  Text resolution;
  std::optional<std::uint32_t> horizontal;
  std::optional<std::uint32_t> vertical;
  std::optional<std::uint32_t> refresh_rate;
  Text monitor_caption;
  std::optional<std::uint32_t> bits_per_pixel;

  bool operator==(const Video&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Video& video) {
  archive.Field("card_count", video.card_count);
  archive.Field("internal", video.internal);
  archive.Field("independent", video.independent);
  archive.Field("resolution", video.resolution);
  archive.Field("horizontal", video.horizontal);
  archive.Field("vertical", video.vertical);
  archive.Field("refresh_rate", video.refresh_rate);
  archive.Field("monitor_caption", video.monitor_caption);
  archive.Field("bits_per_pixel", video.bits_per_pixel);
}

}  // namespace simulator
