#pragma once

namespace velmora::network {

/// Looks through the rules of the firewall for one that blocks what goes out. What it finds is told to
/// nobody: the record's firewall fields are reserved. What it leaves behind is the locale of the process,
/// "chs" for all categories, on which hosts have come to rely.
void ProbeFirewall() noexcept;

}  // namespace velmora::network
