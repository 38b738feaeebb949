// Any two texts as an adapter's address and its gateway, against a slow reading of the rule.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "network/address_state.h"
#include "tests/support/naive_network.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

void Compare(const std::string& address, const std::string& gateway) {
  for (const bool has_dhcp : {false, true}) {
    const auto state = velmora::network::ClassifyAddress(address, gateway, has_dhcp);
    Require(static_cast<int>(state) == velmora::testing::NaiveAddressState(address, gateway, has_dhcp));
    Require(velmora::network::IsAddressAssigned(state) == (state != -1 && state != 1));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The first line is the address, the rest the gateway.
  const std::string text(data, data + size);
  const auto end = text.find('\n');
  Compare(text.substr(0, end), end == std::string::npos ? "" : text.substr(end + 1));
  Compare(text.substr(0, end), text.substr(0, end));
  return 0;
}
