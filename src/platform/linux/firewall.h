/// Whether the machine's firewall is on, as far as that can be told without privilege. The root is "/" but in
/// tests.
#pragma once

#include <filesystem>
#include <optional>

#include "platform/linux/system_bus.h"

namespace velmora::os {

/// By firewalld while it runs, else by the settings of ufw. Nothing where neither is there: the rules that
/// the kernel itself holds are shown to the superuser only, and that there are some says little. `bus` may be
/// null.
std::optional<bool> IsFirewallOn(const std::filesystem::path& root, SystemBus* bus);

}  // namespace velmora::os
