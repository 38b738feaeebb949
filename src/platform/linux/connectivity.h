/// Whether, and how, the machine is connected. Pure but for the reading of the file tree below a root folder.
#pragma once

#include <filesystem>
#include <optional>

#include "platform/linux/network_manager.h"
#include "platform/linux/network_state.h"

namespace velmora::os {

struct Connectivity {
  bool connected = false;  ///< to any network
  bool internet = false;   ///< there is a way to everywhere
  bool dialled = false;    ///< that way is a dialled connection, and the only one
};

/// By the kernel's routes and addresses. A default route over a link that is up leads everywhere, as far as
/// routes can tell. A network alone is reached over a link on hardware with an address that reaches beyond
/// it: the bridge of a machine's own virtual machines is none.
Connectivity ConnectivityOf(const std::filesystem::path& root, const NetworkState& state);

/// The same with what NetworkManager knows: it sees a captive portal, and connections that have no route yet.
/// It is not asked about the internet when it has no connection of its own: others may have made one.
Connectivity ConnectivityOf(const std::filesystem::path& root, const NetworkState& state,
                            const NetworkManager& manager);

}  // namespace velmora::os
