#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// A request that was sent to a control device.
struct ControlRequest {
  std::uint32_t code = 0;
  Bytes input;

  bool operator==(const ControlRequest&) const = default;
};

template <class Archive>
void Fields(Archive& archive, ControlRequest& request) {
  archive.Field("code", request.code);
  archive.Field("input", request.input);
}

/// A device that programs open by name. File key `control_devices`, a list.
struct ControlDevice {
  std::string name;  ///< such as "\\.\IBTRSTD"
  Error open_error = 0;
  Error request_error = 0;
  Bytes output;                          ///< what a request gives back
  std::vector<ControlRequest> requests;  ///< those it has taken, in order

  bool operator==(const ControlDevice&) const = default;
};

template <class Archive>
void Fields(Archive& archive, ControlDevice& device) {
  archive.Field("name", device.name);
  archive.Field("open_error", device.open_error);
  archive.Field("request_error", device.request_error);
  archive.Field("output", device.output);
  archive.Field("requests", device.requests);
}

}  // namespace simulator
