#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// How far a battery is charged.
struct ChargeThreshold {
  std::uint8_t start_percent = 0;
  std::uint8_t stop_percent = 100;

  bool operator==(const ChargeThreshold&) const = default;
};

template <class Archive>
void Fields(Archive& archive, ChargeThreshold& threshold) {
  archive.Field("start_percent", threshold.start_percent);
  archive.Field("stop_percent", threshold.stop_percent);
}

/// One battery. A number that is left out is one that the battery does not know.
struct Battery {
  Text manufacturer;
  Text name;
  std::optional<std::uint32_t> remaining_mwh;
  std::optional<std::uint32_t> full_mwh;
  std::optional<std::uint32_t> design_mwh;
  std::optional<std::uint32_t> voltage_mv;
  std::optional<std::int32_t> rate_mw;  ///< above zero while charging, below while discharging
  std::optional<ChargeThreshold> threshold;
  bool refuses_threshold = false;  ///< cannot be set to another threshold

  bool operator==(const Battery&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Battery& battery) {
  archive.Field("manufacturer", battery.manufacturer);
  archive.Field("name", battery.name);
  archive.Field("remaining_mwh", battery.remaining_mwh);
  archive.Field("full_mwh", battery.full_mwh);
  archive.Field("design_mwh", battery.design_mwh);
  archive.Field("voltage_mv", battery.voltage_mv);
  archive.Field("rate_mw", battery.rate_mw);
  archive.Field("threshold", battery.threshold);
  archive.Field("refuses_threshold", battery.refuses_threshold);
}

/// The batteries and the mains. File key `battery`. The library sees the batteries as one.
struct Batteries {
  std::optional<std::uint32_t> ac_line;  ///< 1 on mains, 0 on batteries
  std::vector<Battery> batteries;

  bool operator==(const Batteries&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Batteries& batteries) {
  archive.Field("ac_line", batteries.ac_line);
  archive.Field("batteries", batteries.batteries);
}

}  // namespace simulator
