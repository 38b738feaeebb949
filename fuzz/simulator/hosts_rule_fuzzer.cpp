// Any bytes as a hosts file, read whole and in pieces, against a slow reading of the rule.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "network/hosts_rule.h"
#include "tests/support/naive_network.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsChanged(std::string_view file, std::size_t piece) {
  velmora::network::HostsRule rule;
  bool is_known = false;
  for (std::size_t at = 0; at < file.size(); at += piece) {
    const bool answer = rule.Read(file.substr(at, piece));
    Require(answer || !is_known);  // once known, always known
    is_known = answer;
  }
  Require(!is_known || rule.IsChanged());
  return rule.IsChanged();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string file(data, data + size);
  const bool expected = velmora::testing::NaiveHostsChanged(file);
  for (const std::size_t piece :
       {std::size_t{1}, std::size_t{2}, std::size_t{7}, std::max<std::size_t>(size, 1)}) {
    Require(IsChanged(file, piece) == expected);
  }
  return 0;
}
