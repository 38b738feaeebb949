#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// One service. File key `services`, a list.
struct Service {
  std::string name;
  std::string display_name;
  std::uint32_t state = 1;  ///< 1 stopped, 2 start pending, 3 stop pending, 4 running, 7 paused
  std::uint32_t state_after_start = 4;
  std::uint32_t state_after_stop = 1;
  Error open_error = 0;
  Error query_error = 0;
  Error start_error = 0;
  Error stop_error = 0;

  bool operator==(const Service&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Service& service) {
  archive.Field("name", service.name);
  archive.Field("display_name", service.display_name);
  archive.Field("state", service.state);
  archive.Field("state_after_start", service.state_after_start);
  archive.Field("state_after_stop", service.state_after_stop);
  archive.Field("open_error", service.open_error);
  archive.Field("query_error", service.query_error);
  archive.Field("start_error", service.start_error);
  archive.Field("stop_error", service.stop_error);
}

}  // namespace simulator
