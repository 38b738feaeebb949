#include "platform/linux/firewall.h"

#include "platform/linux/config_text.h"
#include "platform/linux/small_file.h"

namespace velmora::os {

std::optional<bool> IsFirewallOn(const std::filesystem::path& root, SystemBus* bus) {
  // It holds its name exactly as long as its rules are in force.
  if (bus != nullptr && IsOnBus(bus, "org.fedoraproject.FirewallD1")) return true;
  const auto settings = ReadSmallFile(root / "etc/ufw/ufw.conf");
  const std::string enabled = settings ? KeyValue(*settings, "ENABLED") : std::string();
  if (enabled == "yes" || enabled == "YES" || enabled == "Yes") return true;
  if (enabled == "no" || enabled == "NO" || enabled == "No") return false;
  return std::nullopt;
}

}  // namespace velmora::os
