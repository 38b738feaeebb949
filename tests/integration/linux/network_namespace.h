/// A network of the test's own, with the kernel's real answers.
#pragma once

#include <functional>
#include <string>

namespace velmora::os::test {

/// Runs the shell commands `setup` in a new network namespace with its own view of /sys, then `body` in it,
/// and gives the text that `body` returns. The network is gone afterwards.
std::string InNetworkNamespace(const std::string& setup, const std::function<std::string()>& body);

}  // namespace velmora::os::test
