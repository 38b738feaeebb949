#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// The system's internet settings and how it is connected. File key `internet`.
struct Internet {
  std::uint32_t access_type = 1;  ///< 1 direct, 3 proxy
  std::string proxy;
  Error proxy_error = 0;
  std::optional<Bytes>
      proxy_answer;  ///< the answer's bytes where they shall be other than those of the above
  bool connected = false;
  std::uint32_t connection_flags = 0;  ///< bits 0 modem, 1 local network, 2 proxy, 5 offline

  bool operator==(const Internet&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Internet& internet) {
  archive.Field("access_type", internet.access_type);
  archive.Field("proxy", internet.proxy);
  archive.Field("proxy_error", internet.proxy_error);
  archive.Field("proxy_answer", internet.proxy_answer);
  archive.Field("connected", internet.connected);
  archive.Field("connection_flags", internet.connection_flags);
}

}  // namespace simulator
